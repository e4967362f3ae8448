// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

class GetPrinterDriverTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerAddDriver({
            .name = L"Label Driver",
            .version = 3,
            .driverPath = L"C:\\drivers\\3\\label.dll",
            .dataFile = L"C:\\drivers\\3\\gnt42.gpd",
            .configFile = L"C:\\drivers\\3\\labelui.dll",
            .helpFile = L"C:\\drivers\\3\\label.hlp",
            .dependentFiles = L"C:\\drivers\\3\\a.dll\0C:\\drivers\\3\\b.dll\0",
            .monitorName = L"Label Monitor",
            .defaultDataType = L"RAW",
            .previousNames = L"Old Driver\0",
            .driverDate = {5, 6},
            .driverVersion = 0x0001000200030004,
            .manufacturer = L"Gantry",
            .oemUrl = L"http://example.com",
            .hardwareId = L"GNT42",
            .provider = L"Marrowfield",
            .driverAttributes = 4
        });
        SpoolerAddPrinter({.printerName = L"Label", .driverName = L"Label Driver"});
        printer = Open(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    DWORD Error(const wchar_t* environment, DWORD level)
    {
        DWORD needed = 0;
        return ErrorOf(
            ::GetPrinterDriverW(printer.Get(), const_cast<wchar_t*>(environment), level, nullptr, 0, &needed));
    }

    PrinterHandle printer;
};

std::vector<std::wstring> List(const wchar_t* list)
{
    std::vector<std::wstring> texts;
    for (; *list; list += texts.back().size() + 1) texts.emplace_back(list);
    return texts;
}

TEST_F(GetPrinterDriverTest, Level1TellsTheName)
{
    EXPECT_EQ(Text(ReadDriver<DRIVER_INFO_1W>(printer, 1)->pName), L"Label Driver");
}

TEST_F(GetPrinterDriverTest, Level2TellsTheFiles)
{
    const auto info = ReadDriver<DRIVER_INFO_2W>(printer, 2);
    EXPECT_EQ(info->cVersion, 3u);
    EXPECT_EQ(Text(info->pName), L"Label Driver");
    EXPECT_EQ(Text(info->pEnvironment), L"Windows x64");
    EXPECT_EQ(Text(info->pDriverPath), L"C:\\drivers\\3\\label.dll");
    EXPECT_EQ(Text(info->pDataFile), L"C:\\drivers\\3\\gnt42.gpd");
    EXPECT_EQ(Text(info->pConfigFile), L"C:\\drivers\\3\\labelui.dll");
}

TEST_F(GetPrinterDriverTest, Level3TellsHelpDependentFilesAndMonitor)
{
    const auto info = ReadDriver<DRIVER_INFO_3W>(printer, 3);
    EXPECT_EQ(Text(info->pHelpFile), L"C:\\drivers\\3\\label.hlp");
    EXPECT_EQ(List(info->pDependentFiles),
              (std::vector<std::wstring>{L"C:\\drivers\\3\\a.dll", L"C:\\drivers\\3\\b.dll"}));
    EXPECT_EQ(Text(info->pMonitorName), L"Label Monitor");
    EXPECT_EQ(Text(info->pDefaultDataType), L"RAW");
}

TEST_F(GetPrinterDriverTest, Level4TellsPreviousNames)
{
    EXPECT_EQ(List(ReadDriver<DRIVER_INFO_4W>(printer, 4)->pszzPreviousNames),
              (std::vector<std::wstring>{L"Old Driver"}));
}

TEST_F(GetPrinterDriverTest, Level5TellsAttributes)
{
    const auto info = ReadDriver<DRIVER_INFO_5W>(printer, 5);
    EXPECT_EQ(Text(info->pDriverPath), L"C:\\drivers\\3\\label.dll");
    EXPECT_EQ(info->dwDriverAttributes, 4u);
}

TEST_F(GetPrinterDriverTest, Level6TellsWhereItComesFrom)
{
    const auto info = ReadDriver<DRIVER_INFO_6W>(printer, 6);
    EXPECT_EQ(Text(info->pName), L"Label Driver");
    EXPECT_EQ(info->ftDriverDate.dwLowDateTime, 5u);
    EXPECT_EQ(info->ftDriverDate.dwHighDateTime, 6u);
    EXPECT_EQ(info->dwlDriverVersion, DWORDLONG{0x0001000200030004});
    EXPECT_EQ(Text(info->pszMfgName), L"Gantry");
    EXPECT_EQ(Text(info->pszOEMUrl), L"http://example.com");
    EXPECT_EQ(Text(info->pszHardwareID), L"GNT42");
    EXPECT_EQ(Text(info->pszProvider), L"Marrowfield");
    EXPECT_EQ(List(info->pDependentFiles).size(), 2u);
}

TEST_F(GetPrinterDriverTest, Level8TellsTheSameAndMore)
{
    const auto info = ReadDriver<DRIVER_INFO_8W>(printer, 8);
    EXPECT_EQ(Text(info->pszProvider), L"Marrowfield");
    EXPECT_EQ(info->dwPrinterDriverAttributes, 4u);
    EXPECT_EQ(info->pszInfPath, nullptr);
}

TEST_F(GetPrinterDriverTest, WithoutABufferEveryLevelFailsWithInsufficientBuffer)
{
    for (const DWORD level : {1, 2, 3, 4, 5, 6, 8})
        EXPECT_EQ(Error(nullptr, level), DWORD{ERROR_INSUFFICIENT_BUFFER}) << level;
}

TEST_F(GetPrinterDriverTest, OtherLevelsFail)
{
    for (const DWORD level : {0, 7, 9}) EXPECT_EQ(Error(nullptr, level), DWORD{ERROR_INVALID_LEVEL}) << level;
}

TEST_F(GetPrinterDriverTest, ALevelAboveTheDriversHighestFails)
{
    SpoolerAddDriver({.name = L"Label Driver", .highestLevel = 3});
    EXPECT_EQ(Error(nullptr, 6), DWORD{ERROR_INVALID_LEVEL});
    EXPECT_EQ(Error(nullptr, 3), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(GetPrinterDriverTest, EnvironmentsAreChecked)
{
    EXPECT_EQ(Error(L"windows X64", 2), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(Error(L"Windows NT x86", 2), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    EXPECT_EQ(Error(L"Abacus", 2), DWORD{ERROR_INVALID_ENVIRONMENT});
}

TEST_F(GetPrinterDriverTest, ADriverThatIsNotInstalledFails)
{
    EXPECT_EQ(SpoolerRemoveDriver(L"Label Driver"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Error(nullptr, 2), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    EXPECT_EQ(SpoolerRemoveDriver(L"Label Driver"), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
}

TEST_F(GetPrinterDriverTest, APrinterWithAnUnknownDriverBringsAPlainOne)
{
    SpoolerAddPrinter({.printerName = L"Plain", .driverName = L"Plain Driver"});
    const auto info = ReadDriver<DRIVER_INFO_6W>(Open(L"Plain"), 6);
    EXPECT_EQ(Text(info->pName), L"Plain Driver");
    EXPECT_EQ(Text(info->pDriverPath), L"");
    EXPECT_EQ(info->pDependentFiles, nullptr);
    EXPECT_EQ(info->pMonitorName, nullptr);
}

} // namespace
