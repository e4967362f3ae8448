// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"
#include "Modules.h"

#include "foundation/ImportedFunction.h"
#include "spooler/SpoolerControl.h"
#include "support/TemporaryDirectory.h"

#include <vector>

namespace {

constexpr DWORD allGroups = 0xFFFFFFFF;
constexpr const char* header = "Label printer settings 1\r\n";

class InterfaceTest : public LabelPrinterTest {
protected:
    void SetUp() override
    {
        LabelPrinterTest::SetUp();
        ::SpoolerReset();
        SpoolerPrinter printer;
        printer.printerName = printerName;
        ASSERT_EQ(::SpoolerAddPrinter(printer), 0u);
        ASSERT_TRUE(_module);
        OpenDriver();
    }

    void TearDown() override
    {
        _close(driver);
        _printer.Reset();
        ::SpoolerReset();
        LabelPrinterTest::TearDown();
    }

    /// Opens the driver, for the second time if it is open.
    void OpenDriver(DWORD access = PRINTER_ALL_ACCESS)
    {
        if (driver) _close(driver);
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
        ASSERT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), _printer.Receive(), &defaults));
        driver = _open(_printer.Get());
        ASSERT_NE(driver, nullptr);
    }

    void Import(std::string_view text, DWORD mask = allGroups)
    {
        _import(driver, folder.Make(L"in.set", text).c_str(), mask);
    }

    std::string Export(DWORD mask = allGroups)
    {
        _export(driver, folder.Path(L"out.set").c_str(), mask);
        return folder.Contents(L"out.set");
    }

    void Reset(DWORD mask = allGroups) { _reset(driver, mask); }
    void Save() { _save(driver); }

    /// What the printer's data holds; empty if nothing.
    static std::wstring Stored()
    {
        DWORD needed = 0;
        ::SpoolerPeekData(printerName, L"PrinterDriverData", L"Label Settings", nullptr, nullptr, 0, &needed);
        std::vector<wchar_t> text(needed / sizeof(wchar_t) + 1);
        ::SpoolerPeekData(printerName, L"PrinterDriverData", L"Label Settings", nullptr, text.data(), needed, &needed);
        return text.data();
    }

    template <typename Function>
    Function* Find(const char* name)
    {
        return ImportedFunction<Function>(_module.Get(), name);
    }

    TemporaryDirectory folder;
    OModuleHandle _module = LoadModule(L"labeldriver.dll");
    OHandle<::ClosePrinter> _printer;
    void* driver = nullptr;
    void* (*_open)(HANDLE) = Find<void*(HANDLE)>("VRL_Printer_Open");
    void (*_close)(void*) = Find<void(void*)>("VRL_Printer_Close");
    void (*_save)(void*) = Find<void(void*)>("VRL_Settings_Save");
    void (*_import)(void*, const wchar_t*, DWORD) = Find<void(void*, const wchar_t*, DWORD)>("VRL_Settings_Import");
    void (*_export)(void*, const wchar_t*, DWORD) = Find<void(void*, const wchar_t*, DWORD)>("VRL_Settings_Export");
    void (*_reset)(void*, DWORD) = Find<void(void*, DWORD)>("VRL_Settings_Reset");
};

/// What each bit of a mask stands for, with its defaults.
struct GroupRow {
    DWORD mask;
    std::string text;
};

const GroupRow groupRows[] = {
    {0x001, "\r\n[Stocks]\r\nShelf = 50 x 30\r\nShipping = 100 x 150\r\n"                                          },
    {0x002, "\r\n[Presets]\r\nDraft = speed 200, darkness 5\r\nSturdy = speed 50, darkness 20\r\n"                 },
    {0x004, "\r\n[UtilityFonts]\r\nDate = Line 8\r\n"                                                              },
    {0x020, "\r\n[FontSubstitutions]\r\nArial = Line 10\r\nTimes New Roman = Serif 10\r\n"                         },
    {0x040, "\r\n[DownloadedFonts]\r\n"                                                                            },
    {0x080, "\r\n[OptionalFonts]\r\n"                                                                              },
    {0x100, "\r\n[PrinterProperties]\r\nmemory = 64\r\npeeler = no\r\nverifier = no\r\n"                           },
    {0x200,
     "\r\n[PrintingPreferences]\r\ndarkness = 10\r\nlabel length = 50\r\norientation = portrait\r\nspeed = 100\r\n"},
    {0x400, "\r\n[NetworkSettings]\r\naddress = 0.0.0.0\r\nport = 9100\r\n"                                        },
};

TEST_F(InterfaceTest, ExportsTheGroupsOfTheMask)
{
    std::string all = header;
    for (const GroupRow& row : groupRows) {
        EXPECT_EQ(Export(row.mask), header + row.text) << row.mask;
        all += row.text;
    }
    EXPECT_EQ(Export(allGroups), all);
    EXPECT_EQ(Export(0x401), header + groupRows[0].text + groupRows[8].text);
    EXPECT_EQ(Export(0x818), header) << "bits that name no group";
}

TEST_F(InterfaceTest, ImportsWhatWasExported)
{
    const std::string changed =
        std::string(header) + "[Stocks]\r\nGate = 80 x 40\r\n[NetworkSettings]\r\nport = 9101\r\n";
    Import(changed);
    EXPECT_EQ(Export(0x401), std::string(header) + "\r\n[Stocks]\r\nGate = 80 x 40\r\n\r\n[NetworkSettings]\r\n"
                                                   "address = 0.0.0.0\r\nport = 9101\r\n");
    const std::string exported = Export();
    Reset();
    Import(exported);
    EXPECT_EQ(Export(), exported);
}

TEST_F(InterfaceTest, ImportTakesOnlyTheGroupsOfTheMask)
{
    Import(std::string(header) + "[Stocks]\nGate = 80 x 40\n[NetworkSettings]\nport = 9101\n", 0x400);
    EXPECT_EQ(Export(0x001), header + groupRows[0].text);
    EXPECT_EQ(Export(0x400), std::string(header) + "\r\n[NetworkSettings]\r\naddress = 0.0.0.0\r\nport = 9101\r\n");
}

TEST_F(InterfaceTest, GroupsThatTheFileDoesNotHaveStay)
{
    Import(std::string(header) + "[NetworkSettings]\nport = 9101\n");
    EXPECT_EQ(Export(0x001), header + groupRows[0].text);
}

TEST_F(InterfaceTest, ListOfAFileReplacesTheWholeList)
{
    Import(std::string(header) + "[Stocks]\n");
    EXPECT_EQ(Export(0x001), std::string(header) + "\r\n[Stocks]\r\n");
}

TEST_F(InterfaceTest, FileMayBeWrittenByHand)
{
    Import("\xEF\xBB\xBFLabel printer settings 1\n\n; a comment\n[printerPROPERTIES]\n  Memory=128  \n"
           "[Stocks]\nR\xC3\xA9gal = 40 x 20\n");
    EXPECT_EQ(Export(0x101), std::string(header) +
                                 "\r\n[Stocks]\r\nR\xC3\xA9gal = 40 x 20\r\n\r\n[PrinterProperties]\r\n"
                                 "memory = 128\r\npeeler = no\r\nverifier = no\r\n");
}

TEST_F(InterfaceTest, NumbersReachFromTheirLeastToTheirMost)
{
    for (const char* const line : {"[NetworkSettings]\nport = 1\n", "[NetworkSettings]\nport = 65535\n",
                                   "[PrintingPreferences]\ndarkness = 0\n", "[PrintingPreferences]\ndarkness = 30\n"}) {
        Import(header + std::string(line));
        const std::string value = std::string(line).substr(std::string(line).find('\n') + 1);
        EXPECT_NE(Export().find(value.substr(0, value.size() - 1) + "\r\n"), std::string::npos) << line;
    }
}

TEST_F(InterfaceTest, FileWithAnErrorChangesNothing)
{
    const std::string before = Export();
    for (const char* const text :
         {"", "Label printer settings 2\n[Stocks]\n", "[Stocks]\n", "Label printer settings 1\nGate = 1 x 1\n",
          "Label printer settings 1\n[Colours]\n", "Label printer settings 1\n[Stocks]\nGate\n",
          "Label printer settings 1\n[Stocks]\n = 1 x 1\n", "Label printer settings 1\n[Stocks\n",
          "Label printer settings 1\n[NetworkSettings]\nport = 0\n",
          "Label printer settings 1\n[NetworkSettings]\nport = 65536\n",
          "Label printer settings 1\n[NetworkSettings]\nport = \n",
          "Label printer settings 1\n[NetworkSettings]\ngate = 1\n",
          "Label printer settings 1\n[PrinterProperties]\npeeler = maybe\n",
          "Label printer settings 1\n[PrintingPreferences]\norientation = up\n",
          "Label printer settings 1\n[Stocks]\nGate = 1 x 1\n[PrintingPreferences]\nspeed = fast\n"}) {
        Import(text);
        EXPECT_EQ(Export(), before) << text;
    }
}

TEST_F(InterfaceTest, MissingFileChangesNothing)
{
    const std::string before = Export();
    _import(driver, folder.Path(L"missing.set").c_str(), allGroups);
    _import(driver, L"", allGroups);
    EXPECT_EQ(Export(), before);
}

TEST_F(InterfaceTest, FileThatCannotBeWrittenDoesNoHarm)
{
    _export(driver, folder.Path(L"no\\such\\folder.set").c_str(), allGroups);
    _export(driver, L"", allGroups);
}

TEST_F(InterfaceTest, ResetPutsTheDefaultsOfTheMaskBack)
{
    Import(std::string(header) + "[Stocks]\nGate = 80 x 40\n[NetworkSettings]\nport = 9101\n");
    Reset(0x001);
    EXPECT_EQ(Export(0x001), header + groupRows[0].text);
    EXPECT_NE(Export(0x400), header + groupRows[8].text);
    Reset();
    EXPECT_EQ(Export(0x400), header + groupRows[8].text);
}

TEST_F(InterfaceTest, OnlySavedSettingsOutliveTheDriver)
{
    Import(std::string(header) + "[NetworkSettings]\nport = 9101\n");
    EXPECT_EQ(Stored(), L"");
    OpenDriver();
    EXPECT_EQ(Export(0x400), header + groupRows[8].text);

    Import(std::string(header) + "[NetworkSettings]\nport = 9101\n");
    Save();
    EXPECT_NE(Stored().find(L"port = 9101"), std::wstring::npos);
    OpenDriver();
    EXPECT_EQ(Export(0x400), std::string(header) + "\r\n[NetworkSettings]\r\naddress = 0.0.0.0\r\nport = 9101\r\n");
}

TEST_F(InterfaceTest, UserWhoMayNotChangeThePrinterSavesNothing)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    OpenDriver(PRINTER_ACCESS_USE);
    Import(std::string(header) + "[NetworkSettings]\nport = 9101\n");
    Save();
    EXPECT_EQ(Stored(), L"");
}

TEST_F(InterfaceTest, StoredSettingsThatMakeNoSenseAreTheDefaults)
{
    for (const wchar_t* const text : {L"", L"nonsense", L"Label printer settings 1\n[Colours]\n"}) {
        ::SpoolerSetTextData(printerName, L"PrinterDriverData", L"Label Settings", text);
        OpenDriver();
        EXPECT_EQ(Export(0x400), header + groupRows[8].text) << text;
    }
    constexpr wchar_t valid[] = L"Label printer settings 1\n[NetworkSettings]\nport = 7\n";
    ::SpoolerSetData(printerName, L"PrinterDriverData", L"Label Settings", REG_BINARY, valid, sizeof valid);
    OpenDriver();
    EXPECT_EQ(Export(0x400), header + groupRows[8].text);
}

TEST_F(InterfaceTest, DeviceFollowsWhatIsSaved)
{
    Import(std::string(header) + "[PrintingPreferences]\nspeed = 150\nlabel length = 75\n"
                                 "[PrinterProperties]\nverifier = yes\npeeler = yes\n");
    EXPECT_EQ(Get(L"speed"), L"100");
    Save();
    EXPECT_EQ(Get(L"speed"), L"150");
    EXPECT_EQ(Get(L"label length"), L"75");
    EXPECT_EQ(Get(L"verifier"), L"yes");
    EXPECT_EQ(Get(L"peeler"), L"yes");
    Reset();
    Save();
    EXPECT_EQ(Get(L"speed"), L"100");
    EXPECT_EQ(Get(L"verifier"), L"no");
}

TEST_F(InterfaceTest, SettingsOfAPrinterWithoutADeviceAreKept)
{
    ::LabelPrinterRemove(printerName);
    Reset();
    Save();
    EXPECT_NE(Stored(), L"");
}

TEST_F(InterfaceTest, EachDriverHasItsOwnSettings)
{
    void* const other = _open(_printer.Get());
    EXPECT_NE(other, driver);
    Import(std::string(header) + "[NetworkSettings]\nport = 9101\n");
    _export(other, folder.Path(L"other.set").c_str(), 0x400);
    EXPECT_EQ(folder.Contents(L"other.set"), header + groupRows[8].text);
    _close(other);
}

TEST_F(InterfaceTest, HandleThatIsNotOpenDoesNothing)
{
    _close(driver);
    for (void* const handle : {driver, static_cast<void*>(nullptr), static_cast<void*>(this)}) {
        _save(handle);
        _import(handle, L"x", 1);
        _export(handle, folder.Path(L"never.set").c_str(), 1);
        _reset(handle, 1);
        _close(handle);
    }
    EXPECT_FALSE(folder.Has(L"never.set"));
    EXPECT_EQ(_open(nullptr), nullptr);
}

} // namespace
