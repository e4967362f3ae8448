// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterStatus.h"

#include "support/com/ErrorInformation.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/Bstr.h"
#include "vrl/classes/Printer.h"
#include "vrl/core/XPrinterPool.h"

namespace {

using Microsoft::WRL::ComPtr;

struct ConditionRow {
    const char* name;
    HRESULT (IPrinterStatus::*get)(VARIANT_BOOL*);
    DWORD bit;
};

const ConditionRow spoolerConditions[] = {
    {"Paused",                   &IPrinterStatus::get_Paused,                   0x00000001},
    {"PaperJam",                 &IPrinterStatus::get_PaperJam,                 0x00000008},
    {"PaperOut",                 &IPrinterStatus::get_PaperOut,                 0x00000010},
    {"ManualFeed",               &IPrinterStatus::get_ManualFeed,               0x00000020},
    {"PaperProblem",             &IPrinterStatus::get_PaperProblem,             0x00000040},
    {"Offline",                  &IPrinterStatus::get_Offline,                  0x00000080},
    {"IOActive",                 &IPrinterStatus::get_IOActive,                 0x00000100},
    {"Busy",                     &IPrinterStatus::get_Busy,                     0x00000200},
    {"Printing",                 &IPrinterStatus::get_Printing,                 0x00000400},
    {"OutputFull",               &IPrinterStatus::get_OutputFull,               0x00000800},
    {"NotAvailable",             &IPrinterStatus::get_NotAvailable,             0x00001000},
    {"Waiting",                  &IPrinterStatus::get_Waiting,                  0x00002000},
    {"Processing",               &IPrinterStatus::get_Processing,               0x00004000},
    {"Initializing",             &IPrinterStatus::get_Initializing,             0x00008000},
    {"WarmingUp",                &IPrinterStatus::get_WarmingUp,                0x00010000},
    {"TonerLow",                 &IPrinterStatus::get_TonerLow,                 0x00020000},
    {"NoToner",                  &IPrinterStatus::get_NoToner,                  0x00040000},
    {"UserInterventionRequired", &IPrinterStatus::get_UserInterventionRequired, 0x00100000},
    {"OutOfMemory",              &IPrinterStatus::get_OutOfMemory,              0x00200000},
    {"DoorOpen",                 &IPrinterStatus::get_DoorOpen,                 0x00400000},
    {"PowerSave",                &IPrinterStatus::get_PowerSave,                0x01000000},
};

const ConditionRow extendedConditions[] = {
    {"LabelPresent",    &IPrinterStatus::get_LabelPresent,    0},
    {"PrinterPaused",   &IPrinterStatus::get_PrinterPaused,   0},
    {"BatteryLow",      &IPrinterStatus::get_BatteryLow,      0},
    {"BatteryCharging", &IPrinterStatus::get_BatteryCharging, 0},
    {"RibbonLow",       &IPrinterStatus::get_RibbonLow,       0},
    {"RibbonOut",       &IPrinterStatus::get_RibbonOut,       0},
    {"RibbonError",     &IPrinterStatus::get_RibbonError,     0},
    {"PaperLow",        &IPrinterStatus::get_PaperLow,        0},
    {"HeadOpen",        &IPrinterStatus::get_HeadOpen,        0},
    {"HeadError",       &IPrinterStatus::get_HeadError,       0},
    {"CutterError",     &IPrinterStatus::get_CutterError,     0},
};

const ConditionRow severities[] = {
    {"Warning", &IPrinterStatus::get_Warning, 0},
    {"Error",   &IPrinterStatus::get_Error,   0},
};

class PrinterStatusTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ComPtr<Printer> printer;
        ASSERT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        const OBstr name = ToBstr(OString(printerName));
        ASSERT_EQ(printer->Initialize(name.Get()), S_OK);
        ASSERT_EQ(printer->get_Status(&status), S_OK);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        status.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        SpoolerTest::TearDown();
    }

    VARIANT_BOOL Read(const ConditionRow& row)
    {
        VARIANT_BOOL value = 99;
        EXPECT_EQ((status.Get()->*row.get)(&value), S_OK) << row.name;
        return value;
    }

    OString Text()
    {
        OBstr text;
        EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
        return FromBstr(text.Get());
    }

    ComPtr<IPrinterStatus> status;
};

TEST_F(PrinterStatusTest, ConditionReadsItsBitAsMinusOneOrZero)
{
    for (const ConditionRow& row : spoolerConditions) {
        ::SpoolerSetPrinterStatus(printerName, row.bit);
        EXPECT_EQ(Read(row), -1) << row.name;
        ::SpoolerSetPrinterStatus(printerName, ~row.bit);
        EXPECT_EQ(Read(row), 0) << row.name;
    }
}

TEST_F(PrinterStatusTest, ConditionCostsOneReadOfLevel6)
{
    for (const ConditionRow& row : spoolerConditions) {
        ::SpoolerClearLog();
        Read(row);
        EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterW, 6, printerName), 2u) << row.name;
        EXPECT_EQ(::SpoolerLogLength(), 2u) << row.name;
    }
}

TEST_F(PrinterStatusTest, ExtendedConditionOfAPlainPrinterIsFalseWithoutASpoolerCall)
{
    ::SpoolerSetPrinterStatus(printerName, 0xFFFFFFFF);
    for (const ConditionRow& row : extendedConditions) EXPECT_EQ(Read(row), 0) << row.name;
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterStatusTest, PlainErrorHasNeitherTextNorCondition)
{
    ::SpoolerSetPrinterStatus(printerName, 0x00000002);
    EXPECT_TRUE(Text().IsEmpty());
    EXPECT_EQ(Read(severities[1]), -1);
    for (const ConditionRow& row : spoolerConditions) EXPECT_EQ(Read(row), 0) << row.name;
    for (const ConditionRow& row : extendedConditions) EXPECT_EQ(Read(row), 0) << row.name;
}

TEST_F(PrinterStatusTest, TextAndSeverityFollowTheStatusWord)
{
    static constexpr struct {
        DWORD word;
        const char* text;
        VARIANT_BOOL warning;
        VARIANT_BOOL error;
    } rows[] = {
        {0x00000000, "Ready",                0,  0 },
        {0x00000018, "Paper Jam, Paper Out", 0,  -1},
        {0x00000402, "Printing",             0,  -1},
        {0x00020000, "Toner Low",            -1, 0 },
        {0x00020008, "Paper Jam, Toner Low", 0,  -1},
        {0x01000000, "Power Save",           -1, 0 },
    };
    for (const auto& row : rows) {
        ::SpoolerSetPrinterStatus(printerName, row.word);
        EXPECT_EQ(Text(), row.text);
        EXPECT_EQ(Read(severities[0]), row.warning) << row.text;
        EXPECT_EQ(Read(severities[1]), row.error) << row.text;
    }
}

TEST_F(PrinterStatusTest, FirstJobsTextIsTheText)
{
    SpoolerJob job;
    job.statusText = L"Waiting for labels";
    AddJob(job);
    EXPECT_EQ(Text(), "Waiting for labels");
}

TEST_F(PrinterStatusTest, PrinterThatCannotBeAskedReadsAsReady)
{
    ::SpoolerSetPrinterStatus(printerName, 0xFFFFFFFF);
    for (const ConditionRow& row : spoolerConditions) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_EQ(Read(row), 0) << row.name;
    }
    for (const ConditionRow& row : severities) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_EQ(Read(row), 0) << row.name;
    }
    FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Text(), "Ready");
}

TEST_F(PrinterStatusTest, OdometerIsTheStoredOne)
{
    SpoolerSetNumberData(printerName, L"Gantry", L"Odometer Pages", 0xFFFFFFFE);
    const double distance = 1234.5;
    ::SpoolerSetData(printerName, L"Gantry", L"Odometer Distance", REG_BINARY, &distance, sizeof distance);

    unsigned long pages = 0;
    float millimetres = 0;
    EXPECT_EQ(status->get_OdometerPages(&pages), S_OK);
    EXPECT_EQ(status->get_OdometerDistance(&millimetres), S_OK);
    EXPECT_EQ(pages, 0xFFFFFFFEul);
    EXPECT_EQ(millimetres, 1234.5f);
}

TEST_F(PrinterStatusTest, PrinterWithoutStoredOdometerShowsNothing)
{
    unsigned long pages = 99;
    float millimetres = 99;
    EXPECT_EQ(status->get_OdometerPages(&pages), S_OK);
    EXPECT_EQ(status->get_OdometerDistance(&millimetres), S_OK);
    EXPECT_EQ(pages, 0ul);
    EXPECT_EQ(millimetres, 0.0f);
}

TEST_F(PrinterStatusTest, OutlivesItsPrinterObject)
{
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(Text(), "Ready");
}

TEST_F(PrinterStatusTest, FailedBindingLeavesTheObjectUnbound)
{
    ASSERT_EQ(static_cast<PrinterStatus*>(status.Get())->Initialize(nullptr), E_INVALIDARG);
    EXPECT_EQ(TakeErrorInformation().description, "Invalid argument");
    VARIANT_BOOL value = 0;
    EXPECT_EQ(status->get_Paused(&value), static_cast<HRESULT>(0x80042100));
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

class UnboundPrinterStatusTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(CreateInstance(status.GetAddressOf()), S_OK); }

    static void ExpectFailure(HRESULT result, HRESULT expected, const char* text, const char* member)
    {
        EXPECT_EQ(result, expected) << member;
        EXPECT_EQ(TakeErrorInformation().description, text) << member;
    }

    ComPtr<PrinterStatus> status;
};

constexpr HRESULT notInitialized = static_cast<HRESULT>(0x80042100);
constexpr const char* notInitializedText = "PrinterStatus object not initialized";

TEST_F(UnboundPrinterStatusTest, EveryMemberSaysThatItIsNotInitialized)
{
    VARIANT_BOOL value = 0;
    BSTR text = nullptr;
    unsigned long pages = 0;
    float distance = 0;
    const auto expect = [&](HRESULT result, const char* member) {
        ExpectFailure(result, notInitialized, notInitializedText, member);
    };
    for (const ConditionRow& row : spoolerConditions) expect((status.Get()->*row.get)(&value), row.name);
    for (const ConditionRow& row : extendedConditions) expect((status.Get()->*row.get)(&value), row.name);
    for (const ConditionRow& row : severities) expect((status.Get()->*row.get)(&value), row.name);
    expect(status->get_Text(&text), "Text");
    expect(status->get_OdometerPages(&pages), "OdometerPages");
    expect(status->get_OdometerDistance(&distance), "OdometerDistance");
}

TEST_F(UnboundPrinterStatusTest, NullOutPointerIsTestedFirst)
{
    const auto expect = [&](HRESULT result, const char* member) {
        ExpectFailure(result, E_INVALIDARG, "Invalid argument", member);
    };
    for (const ConditionRow& row : spoolerConditions) expect((status.Get()->*row.get)(nullptr), row.name);
    for (const ConditionRow& row : extendedConditions) expect((status.Get()->*row.get)(nullptr), row.name);
    for (const ConditionRow& row : severities) expect((status.Get()->*row.get)(nullptr), row.name);
    expect(status->get_Text(nullptr), "Text");
    expect(status->get_OdometerPages(nullptr), "OdometerPages");
    expect(status->get_OdometerDistance(nullptr), "OdometerDistance");
}

} // namespace
