// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterStatus.h"

#include "support/com/Answer.h"
#include "support/com/BstrText.h"
#include "support/com/Getters.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/Printer.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Module.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

/// A driver interface with answers of the test's own, which notes the conditions that it is asked for.
class MadeUpDriver final : public DriverInterface {
public:
    void Attach(const OString&, HANDLE) override {}
    bool TestStatusFlag(int condition) override
    {
        asked.push_back(condition);
        return condition == holding;
    }
    int GetStatusSeverity() override { return severity; }
    Odometer GetOdometer() override { return odometer; }
    void SetOdometer(const Odometer&) override {}

    std::vector<int> asked;
    int holding = 0; ///< the one condition that holds
    int severity = StatusSeverityNormal;
    Odometer odometer;
};

class PrinterStatusTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ASSERT_EQ(CreateInstance(status.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        status.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        SpoolerTest::TearDown();
    }

    static ComPtr<Printer> Open(const wchar_t* name)
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        EXPECT_EQ(printer->Initialize(NewBstr(name).Get()), S_OK);
        return printer;
    }

    /// Binds the object to "Label" with the made-up driver in the place of the printer's own.
    void BindMadeUp()
    {
        PrinterDriverRef ref(XPrinterRef::Acquire(OString(printerName)));
        ref.driver = &driver;
        status->Bind(std::move(ref));
        ::SpoolerClearLog();
    }

    VARIANT_BOOL Read(const StatusGetter& getter)
    {
        VARIANT_BOOL value = 99;
        EXPECT_EQ(getter.call(*status.Get(), &value), S_OK) << getter;
        return value;
    }

    static std::vector<StatusCondition> Conditions()
    {
        std::vector<StatusCondition> conditions(std::begin(spoolerConditions), std::end(spoolerConditions));
        conditions.insert(conditions.end(), std::begin(extendedConditions), std::end(extendedConditions));
        return conditions;
    }

    static std::vector<StatusGetter> Getters()
    {
        std::vector<StatusGetter> getters(std::begin(statusSummary), std::end(statusSummary));
        for (const StatusCondition& condition : Conditions()) getters.push_back(condition);
        return getters;
    }

    MadeUpDriver driver;
    ComPtr<PrinterStatus> status;
};

// Members

TEST_F(PrinterStatusTest, EachConditionAsksTheDriverForItsNumberOnly)
{
    BindMadeUp();
    for (const StatusCondition& condition : Conditions()) {
        driver.asked.clear();
        driver.holding = condition.number;
        EXPECT_EQ(Read(condition), -1) << condition;
        EXPECT_EQ(driver.asked, std::vector{condition.number}) << condition;
        driver.holding = 0;
        EXPECT_EQ(Read(condition), 0) << condition;
    }
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterStatusTest, WarningAndErrorAreSeveritiesAndAnyOtherNumberIsNeither)
{
    static constexpr struct {
        int severity;
        VARIANT_BOOL warning;
        VARIANT_BOOL error;
    } rows[] = {
        {0,  0,  0 },
        {1,  0,  0 },
        {2,  0,  -1},
        {3,  -1, 0 },
        {4,  0,  0 },
        {-1, 0,  0 },
    };
    BindMadeUp();
    for (const auto& row : rows) {
        driver.severity = row.severity;
        VARIANT_BOOL warning = 99;
        VARIANT_BOOL error = 99;
        EXPECT_EQ(status->get_Warning(&warning), S_OK);
        EXPECT_EQ(status->get_Error(&error), S_OK);
        EXPECT_EQ(warning, row.warning) << row.severity;
        EXPECT_EQ(error, row.error) << row.severity;
    }
}

TEST_F(PrinterStatusTest, OdometerIsTheDrivers)
{
    BindMadeUp();
    driver.odometer = Odometer(0xFFFFFFFE, 1234.5);
    unsigned long pages = 0;
    float millimetres = 0;
    EXPECT_EQ(status->get_OdometerPages(&pages), S_OK);
    EXPECT_EQ(status->get_OdometerDistance(&millimetres), S_OK);
    EXPECT_EQ(pages, 0xFFFFFFFEul);
    EXPECT_EQ(millimetres, 1234.5F);
}

TEST_F(PrinterStatusTest, TextIsThePrinters)
{
    SpoolerJob job;
    job.statusText = L"Waiting for labels";
    AddJob(job);
    ASSERT_EQ(status->Initialize(Open(printerName).Get()), S_OK);
    OwnedBstr text;
    EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
    EXPECT_EQ(TextOf(text.Get()), L"Waiting for labels");
}

// Checks

TEST_F(PrinterStatusTest, EveryMemberTestsItsOutPointerFirst)
{
    for (const StatusGetter& getter : Getters()) {
        EXPECT_EQ(AnswerOf(getter.call(*status.Get(), nullptr)), invalidArgument) << getter;
    }
    BindMadeUp();
    for (const StatusGetter& getter : Getters()) {
        EXPECT_EQ(AnswerOf(getter.call(*status.Get(), nullptr)), invalidArgument) << getter;
    }
}

TEST_F(PrinterStatusTest, EveryMemberSaysThatAnUnboundObjectIsNotInitialized)
{
    for (const StatusGetter& getter : Getters()) {
        BYTE out[16] = {};
        EXPECT_EQ(AnswerOf(getter.call(*status.Get(), out)), statusNotInitialized) << getter;
    }
}

// Binding

TEST_F(PrinterStatusTest, IsBoundToThePrinterAndItsDriver)
{
    ASSERT_EQ(status->Initialize(Open(printerName).Get()), S_OK);
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    VARIANT_BOOL out = 0;
    EXPECT_EQ(status->get_PaperOut(&out), S_OK);
    EXPECT_EQ(out, -1);
}

TEST_F(PrinterStatusTest, OutlivesItsPrinterObject)
{
    auto printer = Open(printerName);
    ComPtr<IPrinterStatus> part;
    ASSERT_EQ(printer->get_Status(&part), S_OK);
    printer.Reset();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    OwnedBstr text;
    EXPECT_EQ(part->get_Text(text.Receive()), S_OK);
    EXPECT_EQ(TextOf(text.Get()), L"Ready");
}

TEST_F(PrinterStatusTest, FailedBindingLeavesTheObjectUnbound)
{
    ASSERT_EQ(status->Initialize(Open(printerName).Get()), S_OK);
    ASSERT_EQ(AnswerOf(status->Initialize(nullptr)), invalidArgument);
    VARIANT_BOOL paused = 0;
    EXPECT_EQ(AnswerOf(status->get_Paused(&paused)), statusNotInitialized);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

} // namespace
