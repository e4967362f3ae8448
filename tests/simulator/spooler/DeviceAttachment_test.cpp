// SPDX-License-Identifier: MIT
#include "DeviceTest.h"

#include <filesystem>
#include <fstream>

namespace {

class DeviceAttachmentTest : public DeviceTest {
protected:
    BOOL SetPort(const wchar_t* ports)
    {
        PRINTER_INFO_5W info = {};
        info.pPrinterName = const_cast<wchar_t*>(L"Label");
        info.pPortName = const_cast<wchar_t*>(ports);
        return ::SetPrinterW(printer.Get(), 5, reinterpret_cast<BYTE*>(&info), 0);
    }
};

TEST_F(DeviceAttachmentTest, APrinterStandsBeforeItsDeviceUntilItIsRemoved)
{
    SpoolerAddPrinter({.printerName = L"Other", .portName = L"net1"});
    EXPECT_EQ(device.TakeCalls(), (Calls{"attach Other"}));
    SpoolerSetPrinterStatus(L"Other", PRINTER_STATUS_PAUSED);
    EXPECT_EQ(device.TakeCalls(), Calls{}) << "a change that is none of the device's";
    SpoolerRemovePrinter(L"Other");
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Other"}));
}

TEST_F(DeviceAttachmentTest, AResetTakesAllPrintersFromTheirDevices)
{
    SpoolerReset();
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label"}));
}

TEST_F(DeviceAttachmentTest, APrinterOfAnotherPortHasNoDevice)
{
    SpoolerAddPrinter({.printerName = L"Other", .portName = L"NET2"});
    EXPECT_EQ(device.TakeCalls(), Calls{});
}

TEST_F(DeviceAttachmentTest, ItsPrintersFollowAPortThatGetsAndLosesADevice)
{
    SpoolerAddPort({.name = L"NET1"});
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label"}));
    AddPort(L"NET1");
    EXPECT_EQ(device.TakeCalls(), (Calls{"attach Label"}));
    SpoolerRemovePort(L"NET1");
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label"}));
}

TEST_F(DeviceAttachmentTest, APrinterThatMovesToAnotherPortLeavesItsDevice)
{
    SpoolerAddPort({.name = L"NET2"});
    EXPECT_TRUE(SetPort(L"NET2"));
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label"}));
    EXPECT_TRUE(SetPort(L"NET1"));
    EXPECT_EQ(device.TakeCalls(), (Calls{"attach Label"}));
}

TEST_F(DeviceAttachmentTest, TwoPortsWithOneDeviceAttachOnce)
{
    AddPort(L"NET2");
    EXPECT_TRUE(SetPort(L"NET1,NET2"));
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_TRUE(SetPort(L"NET2"));
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_TRUE(SetPort(L"NET1,NET2"));
    SpoolerRemovePrinter(L"Label");
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label"}));
    SpoolerAddPrinter({.printerName = L"Label", .portName = L"NET1,NET2"});
    EXPECT_EQ(device.TakeCalls(), (Calls{"attach Label"}));
}

TEST_F(DeviceAttachmentTest, ARenamedPrinterHasADeviceOfItsNewName)
{
    SpoolerRenamePrinter(L"Label", L"Gate");
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label", "attach Gate"}));
}

TEST_F(DeviceAttachmentTest, AFileThatIsNoDeviceChangesNothing)
{
    EXPECT_EQ(AddPort(L"NET1", L"no_such_device.dll"), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(AddPort(L"NET1", L"winspool.drv"), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_EQ(AddPort(L"NET1", L"short_device.dll"), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_EQ(AddPort(L"NET2", L"no_such_device.dll"), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_EQ(ReadPorts<PORT_INFO_1W>(1).count, 1u);
    EXPECT_EQ(::GetModuleHandleW(L"short_device.dll"), nullptr) << "it was left loaded";
    Print(printer, L"1", "x");
    Step(2);
    EXPECT_EQ(device.Taken(), "x") << "the port still has its device";
}

TEST_F(DeviceAttachmentTest, AFileWithAPathIsTakenFromThere)
{
    wchar_t module[MAX_PATH] = {};
    ::GetModuleFileNameW(::GetModuleHandleW(L"scripted_device.dll"), module, MAX_PATH);
    EXPECT_EQ(AddPort(L"NET2", module), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(AddPort(L"NET3", L"C:\\nowhere\\scripted_device.dll"), DWORD{ERROR_MOD_NOT_FOUND});
}

/// Devices by configuration.
class ConfiguredDeviceTest : public DeviceTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        std::filesystem::create_directories(folder);
    }

    void TearDown() override
    {
        std::filesystem::remove_all(folder);
        DeviceTest::TearDown();
    }

    DWORD Load(const std::string& text) const
    {
        std::ofstream(folder / "devices.ini", std::ios::binary) << text;
        return SpoolerLoadConfig((folder / "devices.ini").c_str());
    }

    /// Without the path of the file.
    static std::wstring Message()
    {
        wchar_t text[512] = {};
        SpoolerConfigError(text, 512);
        const std::wstring_view whole = text;
        return std::wstring(whole.substr(std::min(whole.size(), whole.rfind(L'('))));
    }

    std::filesystem::path folder = std::filesystem::temp_directory_path() / "vorlane_configured_device_test";
};

TEST_F(ConfiguredDeviceTest, SettingsAreMadeInTheOrderOfTheFile)
{
    ASSERT_EQ(Load("[printer Label]\n"
                   "port = NET1\n"
                   "device ribbon = 2 labels\n"
                   "device on error = cancel\n"
                   "device Ribbon = out\n"
                   "[port NET1]\n"
                   "device = scripted_device.dll\n"),
              DWORD{ERROR_SUCCESS});
    const Calls settings{"configure Label ribbon=2 labels", "configure Label on error=cancel",
                         "configure Label ribbon=out"};
    Calls expected{"attach Label"};
    expected.insert(expected.end(), settings.begin(), settings.end()); // tried
    expected.push_back("detach Label");
    expected.push_back("attach Label");
    expected.insert(expected.end(), settings.begin(), settings.end());
    EXPECT_EQ(device.TakeCalls(), expected);

    SpoolerRenamePrinter(L"Label", L"Gate");
    EXPECT_EQ(device.TakeCalls(), (Calls{"detach Label", "attach Gate", "configure Gate ribbon=2 labels",
                                         "configure Gate on error=cancel", "configure Gate ribbon=out"}));
}

TEST_F(ConfiguredDeviceTest, StatusOfTheDeviceIsThePrintersFromTheBeginning)
{
    device.SetStatus(PRINTER_STATUS_TONER_LOW);
    ASSERT_EQ(Load("[port NET1]\ndevice = scripted_device.dll\n[printer Label]\nport = NET1\npace = stepped\n"),
              DWORD{ERROR_SUCCESS});
    printer = Open(L"Label");
    EXPECT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_TONER_LOW});
}

TEST_F(ConfiguredDeviceTest, ThePortMayBeThereAlready)
{
    ASSERT_EQ(AddPort(L"NET1"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Load("[printer Label]\nport = NET1\ndevice ribbon = out\n"), DWORD{ERROR_SUCCESS}) << Message();
}

TEST_F(ConfiguredDeviceTest, WhatIsWrongIsToldWithItsLine)
{
    static constexpr struct {
        const char* text;
        const wchar_t* message;
    } rows[] = {
        {"[port NET1]\ndevice = no_such_device.dll\n",                                                                  L"(2): there is no device in no_such_device.dll, error 126"},
        {"[port NET1]\ndevice = short_device.dll\n",                                                                    L"(2): there is no device in short_device.dll, error 127"  },
        {"[port NET1]\ndevice = sub\\dir.dll\n",                                                                        L"(2): there is no device in sub\\dir.dll, error 126"      },
        {"[printer Label]\nport = NET2\ndevice ribbon = out\n",                                                         L"(3): the printer's port has no device"                   },
        {"[port NET1]\ndevice = scripted_device.dll\n[printer Label]\nport = NET1\ndevice speed = 5\ndevice bad = 1\n",
         L"(6): the device doesn't take \"bad = 1\""                                                                                                                               },
    };
    device.Refuse(L"bad");
    for (const auto& row : rows) {
        EXPECT_EQ(Load(row.text), DWORD{ERROR_BAD_CONFIGURATION}) << row.text;
        EXPECT_EQ(Message(), row.message);
        EXPECT_EQ(ReadPorts<PORT_INFO_1W>(1).count, 0u) << row.text;
    }
    EXPECT_EQ(device.TakeCalls(),
              (Calls{"attach Label", "configure Label speed=5", "configure Label bad=1", "detach Label"}));
}

} // namespace
