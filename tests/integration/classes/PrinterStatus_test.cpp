// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/Getters.h"
#include "support/com/LateBound.h"

#include <string>

// What the class does is held by tests/vrl/classes/PrinterStatus_test.cpp. Here: what it takes the module for.

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

    /// Names of the conditions that hold, in the order of their bits.
    std::vector<std::string> Conditions() const
    {
        std::vector<std::string> names;
        for (const StatusCondition& condition : spoolerConditions) AddIfTrue(names, condition);
        for (const StatusCondition& condition : extendedConditions) AddIfTrue(names, condition);
        return names;
    }

    ComPtr<IPrinterStatus> status;

private:
    void AddIfTrue(std::vector<std::string>& names, const StatusCondition& condition) const
    {
        if (LateBound(status.Get()).Get(condition.name).value == _variant_t(true)) names.emplace_back(condition.name);
    }
};

TEST_F(StatusObject, EachConditionComesLateBoundFromItsBitAlone)
{
    for (const StatusCondition& condition : spoolerConditions) {
        SetWord(condition.bit);
        EXPECT_EQ(Conditions(), std::vector<std::string>{condition.name});
        SetWord(~condition.bit);
        EXPECT_EQ(Conditions().size(), std::size(spoolerConditions) - 1) << condition;
    }
}

TEST_F(StatusObject, SummaryComesLateBound)
{
    SetWord(PRINTER_STATUS_PAPER_JAM | PRINTER_STATUS_TONER_LOW);
    const LateBound late(status.Get());
    EXPECT_EQ(late.Get("Text").value, _variant_t(L"Paper Jam, Toner Low"));
    EXPECT_EQ(late.Get("Error").value, _variant_t(true));
    EXPECT_EQ(late.Get("Warning").value, _variant_t(false));
    EXPECT_EQ(late.Get("OdometerPages").value, _variant_t(0ul));
    EXPECT_EQ(late.Get("OdometerDistance").value, _variant_t(0.0F));
}

TEST_F(StatusObject, UnboundFailsForAScriptWithCodeTextAndSource)
{
    const LateResult read = LateBound(StatusOf(*CreatePrinter().Get()).Get()).Get("Text");
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, statusNotInitialized.result);
    EXPECT_EQ(read.description, L"PrinterStatus object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.PrinterStatus.1");
}

TEST_F(StatusObject, MadeByItsClassIdentifierIsUnbound)
{
    const auto made = Create<IPrinterStatus>(__uuidof(PrinterStatus));
    OwnedBstr text;
    EXPECT_EQ(AnswerOf(made->get_Text(text.Receive())), statusNotInitialized);
}

} // namespace
