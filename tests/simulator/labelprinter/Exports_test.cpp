// SPDX-License-Identifier: MIT
#include "Device.h"
#include "LabelPrinterTest.h"
#include "Modules.h"

#include "foundation/ImportedFunction.h"
#include "support/ThreadIndexes.h"

#include <process.h>

#include <initializer_list>

namespace {

TEST(LabelPrinterModules, ExportWhatTheirCallersLookFor)
{
    static constexpr struct {
        const wchar_t* module;
        std::initializer_list<const char*> names;
    } rows[] = {
        {L"labelprinter.dll", {"SpoolerDeviceFunctions"}                                                        },
        {L"kvnetmon.d64",     {"SendQRMLRequest", "HTTPResponse_Size", "HTTPResponse_Data", "HTTPResponse_Free"}},
        {L"labeldriver.dll",
         {"VRL_Printer_Open", "VRL_Printer_Close", "VRL_Settings_Save", "VRL_Settings_Import", "VRL_Settings_Export",
          "VRL_Settings_Reset"}                                                                                 },
    };
    for (const auto& row : rows) {
        const OModuleHandle module = LoadModule(row.module);
        ASSERT_TRUE(module) << row.module;
        for (const char* const name : row.names) EXPECT_TRUE(::GetProcAddress(module.Get(), name)) << name;
    }
}

TEST(LabelPrinterModules, DeviceStaysWhenTheMonitorGoes)
{
    const std::wstring probe = ModulePath(L"label_printer_probe.exe");
    EXPECT_EQ(::_wspawnl(_P_WAIT, probe.c_str(), L"label_printer_probe.exe", nullptr), 0);
}

/// As programs do it: the monitor for each request, the driver for each printer.
void LoadAndAsk(const wchar_t* printerName)
{
    const OModuleHandle monitor = LoadModule(L"kvnetmon.d64");
    const OModuleHandle driver = LoadModule(L"labeldriver.dll");
    void* response = nullptr;
    ImportedFunction<DWORD(const wchar_t*, const char*, void**)>(monitor.Get(), "SendQRMLRequest")(
        printerName, "<port action='get' name='disconnected' />;", &response);
    ASSERT_TRUE(response);
    ImportedFunction<void(void*)>(monitor.Get(), "HTTPResponse_Free")(response);
    ImportedFunction<void(void*)>(driver.Get(), "VRL_Printer_Close")(nullptr);
}

using ReleasedModules = LabelPrinterTest;

TEST_F(ReleasedModules, GiveBackAllThatTheyTook)
{
    LoadAndAsk(printerName); // the device stays
    const size_t before = FreeThreadIndexes();
    LoadAndAsk(printerName);
    EXPECT_EQ(FreeThreadIndexes(), before);
    EXPECT_FALSE(::GetModuleHandleW(L"kvnetmon.d64"));
    EXPECT_FALSE(::GetModuleHandleW(L"labeldriver.dll"));
}

TEST(LabelPrinterModules, TableOfDeviceFunctionsTellsItsSize)
{
    EXPECT_EQ(Device().size, sizeof(SpoolerDevice));
}

} // namespace
