// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

namespace {

class JobOrderTest : public PrintingTest {
protected:
    /// Documents in the order in which they are printed when everything is.
    static std::vector<std::wstring> Printed()
    {
        SpoolerStep(L"Label", spoolerAllSteps, nullptr);
        std::vector<std::wstring> documents;
        SpoolerDelivery delivery = {};
        for (DWORD index = 0; SpoolerDeliveryAt(L"Label", index, &delivery) == ERROR_SUCCESS; ++index)
            documents.emplace_back(delivery.document);
        return documents;
    }
};

using Order = std::vector<std::wstring>;

TEST_F(JobOrderTest, JobsPrintInTheOrderOfTheQueue)
{
    for (const wchar_t* const name : {L"1", L"2", L"3"}) Print(printer, name, "x");
    EXPECT_EQ(Printed(), (Order{L"1", L"2", L"3"}));
}

TEST_F(JobOrderTest, AHigherPriorityComesFirst)
{
    QueueJob(L"Label", {.document = L"low", .priority = 1});
    QueueJob(L"Label", {.document = L"high", .priority = 99});
    QueueJob(L"Label", {.document = L"also high", .priority = 99});
    EXPECT_EQ(Printed(), (Order{L"high", L"also high", L"low"}));
}

TEST_F(JobOrderTest, AMovedJobPrintsAtItsNewPlace)
{
    QueueJob(L"Label", {.document = L"1"});
    const DWORD jobId = QueueJob(L"Label", {.document = L"2"});
    auto info = ReadJob<JOB_INFO_1W>(printer, jobId, 1);
    info.Get()->Position = 1;
    ASSERT_TRUE(::SetJobW(printer.Get(), jobId, 1, info.Data(), 0));
    EXPECT_EQ(Printed(), (Order{L"2", L"1"}));
}

TEST_F(JobOrderTest, OneThatIsHeldLetsOthersPass)
{
    QueueJob(L"Label", {.document = L"1", .status = JOB_STATUS_PAUSED});
    QueueJob(L"Label", {.document = L"2"});
    EXPECT_EQ(Printed(), (Order{L"2"}));
}

TEST_F(JobOrderTest, AJobWaitsForItsTime)
{
    static constexpr struct {
        DWORD start;
        DWORD until;
        DWORD now;
        bool prints;
    } rows[] = {
        {0,    0,   700,  true },
        {600,  600, 700,  true },
        {600,  800, 599,  false},
        {600,  800, 600,  true },
        {600,  800, 799,  true },
        {600,  800, 800,  false},
        {1380, 120, 1379, false},
        {1380, 120, 1380, true },
        {1380, 120, 0,    true },
        {1380, 120, 119,  true },
        {1380, 120, 120,  false},
    };
    for (const auto& row : rows) {
        SpoolerSetClock(row.now);
        const DWORD jobId = QueueJob(L"Label", {.startTime = row.start, .untilTime = row.until});
        EXPECT_EQ(Step() > 0, row.prints) << row.start << " to " << row.until << " at " << row.now;
        SpoolerRemoveJob(L"Label", jobId);
    }
}

TEST_F(JobOrderTest, APrinterKeepsItsOwnTimes)
{
    SpoolerAddPrinter({.printerName = L"Night", .startTime = 1320, .untilTime = 360, .pace = SpoolerPace::AtOnce});
    SpoolerSetClock(720);
    QueueJob(L"Night");
    EXPECT_EQ(SpoolerDeliveryCount(L"Night"), 0u);
    SpoolerSetClock(1320);
    EXPECT_EQ(SpoolerDeliveryCount(L"Night"), 1u);
}

TEST_F(JobOrderTest, WithoutASetClockTheRealTimeOfDayCounts)
{
    SYSTEMTIME now = {};
    ::GetSystemTime(&now);
    const DWORD minute = now.wHour * 60U + now.wMinute;
    SpoolerSetClock(minute);
    SpoolerSetClock(spoolerRealClock);
    QueueJob(L"Label", {.startTime = (minute + 720) % 1440, .untilTime = (minute + 780) % 1440});
    EXPECT_EQ(Step(), 0u);
    QueueJob(L"Label", {.startTime = (minute + 1430) % 1440, .untilTime = (minute + 60) % 1440});
    EXPECT_EQ(Step(), 1u);
}

TEST_F(JobOrderTest, ALinkedJobFollowsTheOneThatItIsLinkedTo)
{
    const DWORD first = QueueJob(L"Label", {.document = L"1", .priority = 99});
    QueueJob(L"Label", {.document = L"2", .priority = 50});
    const DWORD third = QueueJob(L"Label", {.document = L"3", .priority = 1});
    JOB_INFO_3 link = {first, third, 0};
    ASSERT_TRUE(::SetJobW(printer.Get(), first, 3, reinterpret_cast<BYTE*>(&link), 0));
    EXPECT_EQ(Printed(), (Order{L"1", L"3", L"2"}));
}

TEST_F(JobOrderTest, ALinkToAJobThatIsGoneHasNoEffect)
{
    const DWORD first = QueueJob(L"Label", {.document = L"1"});
    const DWORD second = QueueJob(L"Label", {.document = L"2"});
    QueueJob(L"Label", {.document = L"3"});
    JOB_INFO_3 link = {first, second, 0};
    ASSERT_TRUE(::SetJobW(printer.Get(), first, 3, reinterpret_cast<BYTE*>(&link), 0));
    SpoolerRemoveJob(L"Label", second);
    EXPECT_EQ(Printed(), (Order{L"1", L"3"}));
}

TEST_F(JobOrderTest, EachPortOfAPoolTakesAJob)
{
    SpoolerAddPrinter(
        {.printerName = L"Pool", .portName = L"NET1,NET2", .attributes = attributes, .pace = SpoolerPace::Stepped});
    const PrinterHandle pool = Open(L"Pool");
    for (const wchar_t* const name : {L"1", L"2", L"3"}) QueueJob(L"Pool", {.document = name, .byteCount = 0});
    const Watch watch(pool, watched, {JOB_NOTIFY_FIELD_PORT_NAME});
    for (const DWORD jobId : {1U, 2U, 3U}) ::SetJobW(pool.Get(), jobId, 0, nullptr, JOB_CONTROL_PAUSE);
    watch.Next();
    for (const DWORD jobId : {1U, 2U}) {
        ::SetJobW(pool.Get(), jobId, 0, nullptr, JOB_CONTROL_RESUME);
        SpoolerStep(L"Pool", 1, nullptr);
        ::SetJobW(pool.Get(), jobId, 0, nullptr, JOB_CONTROL_PAUSE);
    }
    EXPECT_EQ(watch.Next(), "0x200 J1.PORT_NAME='NET1' J2.PORT_NAME='NET2'");
    ::SetJobW(pool.Get(), 3, 0, nullptr, JOB_CONTROL_RESUME);
    DWORD done = 0;
    SpoolerStep(L"Pool", 1, &done);
    EXPECT_EQ(done, 0u) << "both ports are taken";
}

TEST_F(JobOrderTest, APrinterWithOnePortTakesOneJob)
{
    const DWORD first = Print(printer, L"1", "x");
    const DWORD second = Print(printer, L"2", "x");
    Step(2);
    EXPECT_EQ(StatusOf(first), 0x2010u);
    EXPECT_EQ(StatusOf(second), 0u);
}

// Numbers.

TEST_F(JobOrderTest, AJobNumberCanBeUsedAgain)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    const Watch watch = WatchStatus();
    EXPECT_EQ(SpoolerSetNextJobId(jobId), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Print(printer, L"2", "y"), jobId);
    EXPECT_EQ(watch.Next(), "0xB00 J1.STATUS=0x8 J1.STATUS=0x0");
    EXPECT_EQ(Text(ReadJob<JOB_INFO_1W>(printer, jobId, 1)->pDocument), L"2");
}

TEST_F(JobOrderTest, NumbersInUseAreLeftOut)
{
    AddAndOpen(L"Other");
    QueueJob(L"Other", {.jobId = 11});
    QueueJob(L"Label", {.jobId = 12});
    SpoolerSetNextJobId(10);
    EXPECT_EQ(QueueJob(L"Label"), 10u);
    EXPECT_EQ(QueueJob(L"Label"), 13u);
}

TEST_F(JobOrderTest, NumbersBeginAgainAfterTheLast)
{
    SpoolerSetNextJobId(0xFFFFFFFF);
    EXPECT_EQ(QueueJob(L"Label"), 0xFFFFFFFFu);
    EXPECT_EQ(QueueJob(L"Label"), 1u);
}

TEST_F(JobOrderTest, NoJobHasTheNumber0)
{
    EXPECT_EQ(SpoolerSetNextJobId(0), DWORD{ERROR_INVALID_PARAMETER});
}

} // namespace
