// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/com/Getters.h"

#include <algorithm>

namespace {

class StatusObject : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        status = StatusOf(*BoundPrinter().Get());
    }

    void TearDown() override
    {
        status.Reset();
        IntegrationTest::TearDown();
    }

    static void SetWord(DWORD word) { ASSERT_EQ(::SpoolerSetPrinterStatus(printerName, word), 0u); }

    std::wstring StatusText() const { return Text(*status.Get(), &IPrinterStatus::get_Text); }

    VARIANT_BOOL Flag(const StatusGetter& getter) const
    {
        VARIANT_BOOL value = 99;
        EXPECT_EQ(getter.call(*status.Get(), &value), S_OK);
        return value;
    }

    /// Names of the conditions that hold, in the order of their bits.
    std::vector<std::string> Conditions() const
    {
        std::vector<std::string> names;
        for (const auto& row : spoolerConditions) AddIfTrue(names, row);
        for (const auto& row : extendedConditions) AddIfTrue(names, row);
        return names;
    }

    ComPtr<IPrinterStatus> status;

private:
    void AddIfTrue(std::vector<std::string>& names, const StatusGetter& getter) const
    {
        if (Flag(getter) == VARIANT_TRUE) names.emplace_back(getter.name);
    }
};

struct WordRow {
    const char* name;
    DWORD word;
    const wchar_t* text;
    bool error;
    bool warning;

    friend std::ostream& operator<<(std::ostream& stream, const WordRow& row) { return stream << row.name; }
};

constexpr WordRow words[] = {
    {"Nothing",            0x00000000, L"Ready",                      false, false},
    {"Paused",             0x00000001, L"Paused",                     false, false},
    {"PlainError",         0x00000002, L"",                           true,  false},
    {"PendingDeletion",    0x00000004, L"",                           false, false},
    {"PaperJam",           0x00000008, L"Paper Jam",                  true,  false},
    {"PaperOut",           0x00000010, L"Paper Out",                  true,  false},
    {"ManualFeed",         0x00000020, L"Manual Feed",                false, false},
    {"PaperProblem",       0x00000040, L"Paper Problem",              true,  false},
    {"Offline",            0x00000080, L"Offline",                    false, false},
    {"IOActive",           0x00000100, L"IO Active",                  false, false},
    {"Busy",               0x00000200, L"Busy",                       false, false},
    {"Printing",           0x00000400, L"Printing",                   false, false},
    {"OutputBinFull",      0x00000800, L"Output Bin Full",            true,  false},
    {"NotAvailable",       0x00001000, L"Not Available",              true,  false},
    {"Waiting",            0x00002000, L"Waiting",                    false, false},
    {"Processing",         0x00004000, L"Processing",                 false, false},
    {"Initializing",       0x00008000, L"Initializing",               false, false},
    {"WarmingUp",          0x00010000, L"Warming Up",                 false, false},
    {"TonerLow",           0x00020000, L"Toner Low",                  false, true },
    {"NoToner",            0x00040000, L"No Toner",                   true,  false},
    {"PagePunt",           0x00080000, L"Page Punt",                  true,  false},
    {"UserIntervention",   0x00100000, L"User Intervention Required", true,  false},
    {"OutOfMemory",        0x00200000, L"Out Of Memory",              true,  false},
    {"DoorOpen",           0x00400000, L"Door Open",                  true,  false},
    {"ServerUnknown",      0x00800000, L"",                           true,  false},
    {"PowerSave",          0x01000000, L"Power Save",                 false, true },
    {"JamAndOut",          0x00000018, L"Paper Jam, Paper Out",       true,  false},
    {"PrintingAndError",   0x00000402, L"Printing",                   true,  false},
    {"WarningAndError",    0x00020008, L"Paper Jam, Toner Low",       true,  false},
    {"BitWithoutMeaning",  0x80000000, L"",                           false, false},
    {"ReadyIsOnlyForZero", 0x00800004, L"",                           true,  false},
};

class StatusWord : public StatusObject, public ::testing::WithParamInterface<WordRow> {};

TEST_P(StatusWord, GivesItsText)
{
    SetWord(GetParam().word);
    EXPECT_EQ(StatusText(), GetParam().text);
}

TEST_P(StatusWord, GivesItsSeverity)
{
    SetWord(GetParam().word);
    EXPECT_EQ(Bool(*status.Get(), &IPrinterStatus::get_Error), GetParam().error ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ(Bool(*status.Get(), &IPrinterStatus::get_Warning), GetParam().warning ? VARIANT_TRUE : VARIANT_FALSE);
}

INSTANTIATE_TEST_SUITE_P(Each, StatusWord, ::testing::ValuesIn(words),
                         [](const auto& row) { return std::string(row.param.name); });

class StatusBit : public StatusObject, public ::testing::WithParamInterface<StatusCondition> {};

TEST_P(StatusBit, IsTheOnlyConditionThatHolds)
{
    SetWord(GetParam().bit);
    EXPECT_EQ(Conditions(), std::vector<std::string>{GetParam().name});
}

TEST_P(StatusBit, IsTheOnlyConditionThatDoesNotHold)
{
    SetWord(~GetParam().bit);
    EXPECT_EQ(Flag(GetParam()), VARIANT_FALSE);
    EXPECT_EQ(Conditions().size(), std::size(spoolerConditions) - 1);
}

TEST_P(StatusBit, IsReadLateBound)
{
    SetWord(GetParam().bit);
    EXPECT_EQ(LateBound(status.Get()).Get(GetParam().name).value, _variant_t(true));
}

INSTANTIATE_TEST_SUITE_P(Each, StatusBit, ::testing::ValuesIn(spoolerConditions),
                         [](const auto& row) { return std::string(row.param.name); });

class ExtendedStatusBit : public StatusObject, public ::testing::WithParamInterface<StatusGetter> {};

TEST_P(ExtendedStatusBit, IsFalseOnAPlainPrinterWithoutAWordToTheSpooler)
{
    SetWord(0xFFFFFFFF);
    const auto calls = ::SpoolerLogLength();
    EXPECT_EQ(Flag(GetParam()), VARIANT_FALSE);
    EXPECT_EQ(::SpoolerLogLength(), calls);
}

INSTANTIATE_TEST_SUITE_P(Each, ExtendedStatusBit, ::testing::ValuesIn(extendedConditions),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(StatusObject, HoldsNoSnapshot)
{
    EXPECT_EQ(StatusText(), L"Ready");
    SetWord(PRINTER_STATUS_OFFLINE);
    EXPECT_EQ(StatusText(), L"Offline");
    SetWord(0);
    EXPECT_EQ(StatusText(), L"Ready");
}

TEST_F(StatusObject, TextOfTheFirstJobOutranksThePrinters)
{
    SetWord(PRINTER_STATUS_PAUSED);
    AddJob({.statusText = L"Cleaning the head"});
    AddJob({.statusText = L"Never seen"});
    EXPECT_EQ(StatusText(), L"Cleaning the head");
}

TEST_F(StatusObject, FirstJobWithoutTextLeavesThePrinters)
{
    SetWord(PRINTER_STATUS_PAUSED);
    AddJob({});
    AddJob({.statusText = L"Never seen"});
    EXPECT_EQ(StatusText(), L"Paused");
}

TEST_F(StatusObject, OdometerOfAPlainPrinterIsZero)
{
    unsigned long pages = 99;
    float distance = 99;
    EXPECT_EQ(status->get_OdometerPages(&pages), S_OK);
    EXPECT_EQ(status->get_OdometerDistance(&distance), S_OK);
    EXPECT_EQ(pages, 0u);
    EXPECT_EQ(distance, 0.0F);
}

TEST_F(StatusObject, UnboundFailsForAScriptWithCodeAndText)
{
    const LateResult read = LateBound(StatusOf(*CreatePrinter().Get()).Get()).Get("Text");
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, statusNotInitialized.result);
    EXPECT_EQ(read.description, L"PrinterStatus object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.PrinterStatus.1");
}

} // namespace
