// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobSchedule.h"

#include "support/ImportHook.h"
#include "vrl/classes/JobTest.h"
#include "vrl/classes/Printer.h"

namespace {

/// A schedule in a zone that is UTC.
class ScheduleTest : public JobTest {
protected:
    void TearDown() override
    {
        schedule.Reset();
        JobTest::TearDown();
    }

    void OpenOfJob()
    {
        ASSERT_EQ(OpenJob(jobId)->get_Schedule(&schedule), S_OK);
        ::SpoolerClearLog();
    }

    void OpenOfPrinter()
    {
        const auto printer = Make<Printer>();
        ASSERT_EQ(printer->Initialize(ToBstr(OString(printerName)).Get()), S_OK);
        ASSERT_EQ(printer->get_DefaultSchedule(&schedule), S_OK);
        ::SpoolerClearLog();
    }

    long Priority()
    {
        long priority = -1;
        EXPECT_EQ(schedule->get_Priority(&priority), S_OK);
        return priority;
    }

    std::string Time(HRESULT (IPrintJobSchedule::*get)(BSTR*))
    {
        OBstr text;
        EXPECT_EQ((schedule.Get()->*get)(text.Receive()), S_OK);
        return FromBstr(text.Get()).nstring();
    }
    std::string StartTime() { return Time(&IPrintJobSchedule::get_StartTime); }
    std::string UntilTime() { return Time(&IPrintJobSchedule::get_UntilTime); }

    Answer SetStartTime(const char* text) { return AnswerOf(schedule->put_StartTime(ToBstr(OString(text)).Get())); }
    Answer SetUntilTime(const char* text) { return AnswerOf(schedule->put_UntilTime(ToBstr(OString(text)).Get())); }

    /// Start and until times in the order in which the spooler got them.
    static std::vector<SpoolerCall> Writes()
    {
        std::vector<SpoolerCall> writes;
        for (const SpoolerCallRecord& record : SpoolerLog()) {
            if (record.call == SpoolerCall::SetJobW || record.call == SpoolerCall::SetPrinterW)
                writes.push_back(record.call);
        }
        return writes;
    }

    ComPtr<IPrintJobSchedule> schedule;

private:
    ImportHook<decltype(::GetTimeZoneInformation)> _utc{"GetTimeZoneInformation",
                                                        [](TIME_ZONE_INFORMATION* zone) -> DWORD {
                                                            *zone = {};
                                                            return TIME_ZONE_ID_UNKNOWN;
                                                        }};
};

// ---- of a job ----

class JobScheduleTest : public ScheduleTest {
protected:
    void SetUp() override
    {
        ScheduleTest::SetUp();
        OpenOfJob();
    }
};

TEST_F(JobScheduleTest, ReadsTheRecordWithoutASpoolerCall)
{
    EXPECT_EQ(Priority(), 9);
    EXPECT_EQ(StartTime(), "10:00");
    EXPECT_EQ(UntilTime(), "11:40");
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(JobScheduleTest, WritesTheSpoolerAndShowsTheOldValuesUntilItTells)
{
    EXPECT_EQ(schedule->put_Priority(50), S_OK);
    EXPECT_EQ(SetStartTime("8:30"), succeeded);
    EXPECT_EQ(SetUntilTime("8 p.m."), succeeded);
    EXPECT_EQ(PeekJob(jobId).Priority, 50u);
    EXPECT_EQ(PeekJob(jobId).StartTime, 510u);
    EXPECT_EQ(PeekJob(jobId).UntilTime, 1200u);
    EXPECT_EQ(Priority(), 9);
    EXPECT_EQ(StartTime(), "10:00");
    EXPECT_EQ(UntilTime(), "11:40");

    notices.Queue({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PRIORITY, 50),
                   ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_START_TIME, 510),
                   ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_UNTIL_TIME, 1200)});
    EXPECT_TRUE(notices.WaitUntilIdle());
    EXPECT_EQ(Priority(), 50);
    EXPECT_EQ(StartTime(), "08:30");
    EXPECT_EQ(UntilTime(), "20:00");
}

TEST_F(JobScheduleTest, EmptyTextClearsTheWindow)
{
    EXPECT_EQ(SetStartTime(""), succeeded);
    EXPECT_EQ(PeekJob(jobId).StartTime, 0u);
    EXPECT_EQ(PeekJob(jobId).UntilTime, 0u);
    EXPECT_EQ(Writes().size(), 2u);
}

TEST_F(JobScheduleTest, NullTextClearsTheWindowToo)
{
    EXPECT_EQ(schedule->put_UntilTime(nullptr), S_OK);
    EXPECT_EQ(PeekJob(jobId).StartTime, 0u);
    EXPECT_EQ(PeekJob(jobId).UntilTime, 0u);
}

TEST_F(JobScheduleTest, ClearingBeginsWithTheTimeThatWasSet)
{
    FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetStartTime(""), succeeded);
    EXPECT_EQ(PeekJob(jobId).StartTime, 600u);
    EXPECT_EQ(PeekJob(jobId).UntilTime, 0u);
    FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED, 2);
    EXPECT_EQ(SetUntilTime(""), succeeded);
    EXPECT_EQ(PeekJob(jobId).StartTime, 600u);
}

TEST_F(JobScheduleTest, TextThatIsNoTimeChangesNothing)
{
    for (const char* const text : {"1:2:3:4", "13 PM", "2.30 pm", "25", "noon"}) {
        EXPECT_EQ(SetStartTime(text), invalidArgument) << text;
        EXPECT_EQ(SetUntilTime(text), invalidArgument) << text;
    }
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(JobScheduleTest, EveryAcceptedTextIsOneWrite)
{
    for (const char* const text : {"1:2:junk", "13", "24", "8:60", "12 pm", "8 a.m."}) {
        ::SpoolerClearLog();
        EXPECT_EQ(SetStartTime(text), succeeded) << text;
        EXPECT_EQ(Writes().size(), 1u) << text;
    }
}

TEST_F(JobScheduleTest, RefusedWritesLookLikeSuccess)
{
    for (int i = 0; i < 3; ++i) FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerOf(schedule->put_Priority(1)), succeeded);
    EXPECT_EQ(SetStartTime("1"), succeeded);
    EXPECT_EQ(SetUntilTime("2"), succeeded);
}

TEST_F(JobScheduleTest, AnyPriorityGoesToTheSpooler)
{
    for (const long priority : {0L, 99L, 1000L, -1L}) EXPECT_EQ(AnswerOf(schedule->put_Priority(priority)), succeeded);
    EXPECT_EQ(Writes().size(), 4u);
}

TEST_F(ScheduleTest, JobThatHasGoneIsAnInvalidJobToReadAndIsWrittenInVain)
{
    ASSERT_EQ(OpenJob(4711)->get_Schedule(&schedule), S_OK);
    long priority = 0;
    OBstr text;
    EXPECT_EQ(AnswerOf(schedule->get_Priority(&priority)), invalidJob);
    EXPECT_EQ(AnswerOf(schedule->get_StartTime(text.Receive())), invalidJob);
    EXPECT_EQ(AnswerOf(schedule->get_UntilTime(text.Receive())), invalidJob);
    EXPECT_EQ(AnswerOf(schedule->put_Priority(1)), succeeded);
    EXPECT_EQ(SetStartTime("1"), succeeded);
}

// ---- of a printer ----

class PrinterScheduleTest : public ScheduleTest {
protected:
    void SetUp() override
    {
        ScheduleTest::SetUp();
        OpenOfPrinter();
    }
};

TEST_F(PrinterScheduleTest, ReadsThePrintersDefaultsAnew)
{
    EXPECT_EQ(Priority(), 7);
    EXPECT_EQ(StartTime(), "01:00");
    EXPECT_EQ(UntilTime(), "02:00");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), 6u);
}

TEST_F(PrinterScheduleTest, WritesShowAtOnce)
{
    EXPECT_EQ(schedule->put_Priority(50), S_OK);
    EXPECT_EQ(SetStartTime("8:30"), succeeded);
    EXPECT_EQ(SetUntilTime("20:15"), succeeded);
    EXPECT_EQ(Priority(), 50);
    EXPECT_EQ(StartTime(), "08:30");
    EXPECT_EQ(UntilTime(), "20:15");
}

TEST_F(PrinterScheduleTest, EmptyTextClearsTheWindowAndIsNotGivenBack)
{
    EXPECT_EQ(SetUntilTime(""), succeeded);
    EXPECT_EQ(StartTime(), "00:00");
    EXPECT_EQ(UntilTime(), "00:00");
}

TEST_F(PrinterScheduleTest, PrinterThatCannotBeReadHasPriority1AndMidnight)
{
    for (int i = 0; i < 3; ++i) FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Priority(), 1);
    EXPECT_EQ(StartTime(), "00:00");
    EXPECT_EQ(UntilTime(), "00:00");
}

TEST_F(PrinterScheduleTest, RefusedWritesLookLikeSuccess)
{
    for (int i = 0; i < 3; ++i) FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerOf(schedule->put_Priority(1)), succeeded);
    EXPECT_EQ(SetStartTime("1"), succeeded);
    EXPECT_EQ(SetUntilTime("2"), succeeded);
}

TEST_F(PrinterScheduleTest, TextThatIsNoTimeChangesNothing)
{
    EXPECT_EQ(SetStartTime("13 PM"), invalidArgument);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

// ---- checks and binding ----

TEST_F(ScheduleTest, ObjectThatIsNotBoundSaysSoBeforeAnythingElse)
{
    schedule = Make<PrintJobSchedule>();
    EXPECT_EQ(AnswerOf(schedule->get_Priority(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->get_StartTime(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->get_UntilTime(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->put_Priority(1)), jobScheduleNotInitialized);
    EXPECT_EQ(SetStartTime("no time"), jobScheduleNotInitialized);
    EXPECT_EQ(SetUntilTime("no time"), jobScheduleNotInitialized);
}

TEST_F(JobScheduleTest, NullOutPointerIsAnInvalidArgument)
{
    EXPECT_EQ(AnswerOf(schedule->get_Priority(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(schedule->get_StartTime(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(schedule->get_UntilTime(nullptr)), invalidArgument);
}

TEST_F(PrinterScheduleTest, NullOutPointerIsAnInvalidArgument)
{
    EXPECT_EQ(AnswerOf(schedule->get_Priority(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(schedule->get_StartTime(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(schedule->get_UntilTime(nullptr)), invalidArgument);
}

TEST_F(ScheduleTest, BoundToAJobFirstThenToAPrinterSpeaksOfThePrinter)
{
    const auto both = Make<PrintJobSchedule>();
    const auto printer = Make<Printer>();
    ASSERT_EQ(printer->Initialize(ToBstr(OString(printerName)).Get()), S_OK);
    ASSERT_EQ(both->Initialize(OpenJob(jobId).Get()), S_OK);
    schedule = both;
    EXPECT_EQ(Priority(), 9);
    ASSERT_EQ(both->Initialize(printer.Get()), S_OK);
    EXPECT_EQ(Priority(), 7);
    ASSERT_EQ(both->Initialize(OpenJob(jobId).Get()), S_OK);
    EXPECT_EQ(Priority(), 9);
}

TEST_F(ScheduleTest, FailedBindingToAJobLeavesThePrinter)
{
    const auto both = Make<PrintJobSchedule>();
    schedule = both;
    ASSERT_EQ(both->Initialize(OpenJob(jobId).Get()), S_OK);
    EXPECT_EQ(AnswerOf(both->Initialize(Make<PrintJob>().Get())), jobNotInitialized);
    EXPECT_EQ(Priority(), 7);
    EXPECT_EQ(AnswerOf(both->Initialize(static_cast<IPrintJob*>(nullptr))), invalidArgument);
}

} // namespace
