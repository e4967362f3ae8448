// SPDX-License-Identifier: MIT
#include "support/ImportHook.h"
#include "support/com/LateBound.h"
#include "support/product/JobClientTest.h"

#include <string>

// What the class does is held by tests/vrl/classes/PrintJobSchedule_test.cpp, what texts are times by DayTime_test.cpp
// there. Here: what they take the module for.

namespace {

/// The module believes that it is in a zone which is UTC.
class ScheduleObject : public JobClientTest {
protected:
    void TearDown() override
    {
        schedule.Reset();
        JobClientTest::TearDown();
    }

    void OpenOfJob() { schedule = ScheduleOf(*OpenJob(jobId).Get()); }
    void OpenOfPrinter() { EXPECT_EQ(BoundPrinter()->get_DefaultSchedule(&schedule), S_OK); }

    LateBound Late() const { return LateBound(schedule.Get()); }

    HRESULT PutStartTime(const wchar_t* text) { return schedule->put_StartTime(NewBstr(text).Get()); }

    ComPtr<IPrintJobSchedule> schedule;
    std::vector<BYTE> buffer;

private:
    const ImportHook<decltype(::GetTimeZoneInformation)> _utc{"GetTimeZoneInformation",
                                                              [](TIME_ZONE_INFORMATION* zone) -> DWORD {
                                                                  *zone = {};
                                                                  return TIME_ZONE_ID_UNKNOWN;
                                                              },
                                                              Product().Handle()};
};

TEST_F(ScheduleObject, OfAJobComesLateBound)
{
    OpenOfJob();
    EXPECT_EQ(Late().Get("Priority").value, _variant_t(9L));
    EXPECT_EQ(Late().Get("StartTime").value, _variant_t(L"10:00"));
    EXPECT_EQ(Late().Get("UntilTime").value, _variant_t(L"11:40"));
}

TEST_F(ScheduleObject, OfAPrinterComesLateBound)
{
    OpenOfPrinter();
    EXPECT_EQ(Late().Get("Priority").value, _variant_t(7L));
    EXPECT_EQ(Late().Get("StartTime").value, _variant_t(L"01:00"));
    EXPECT_EQ(Late().Get("UntilTime").value, _variant_t(L"02:00"));
}

TEST_F(ScheduleObject, OfAJobIsChangedInTheSpoolerAndThenFollowsIt)
{
    OpenOfJob();
    EXPECT_EQ(Late().Put("Priority", 50L).result, S_OK);
    EXPECT_EQ(Late().Put("StartTime", L"8:30").result, S_OK);
    EXPECT_EQ(Late().Put("UntilTime", L"8 p.m.").result, S_OK);
    const JOB_INFO_2W& now = *PeekJob(buffer, printerName, jobId);
    EXPECT_EQ(now.Priority, 50u);
    EXPECT_EQ(now.StartTime, 510u);
    EXPECT_EQ(now.UntilTime, 1200u);
    Heard(); // the spooler has told of it
    EXPECT_EQ(Late().Get("Priority").value, _variant_t(50L));
    EXPECT_EQ(Late().Get("StartTime").value, _variant_t(L"08:30"));
    EXPECT_EQ(Late().Get("UntilTime").value, _variant_t(L"20:00"));
}

TEST_F(ScheduleObject, OfAPrinterIsChangedInTheSpooler)
{
    OpenOfPrinter();
    EXPECT_EQ(Late().Put("Priority", 50L).result, S_OK);
    EXPECT_EQ(Late().Put("StartTime", L"8:30").result, S_OK);
    EXPECT_EQ(Late().Put("UntilTime", L"20:15").result, S_OK);
    const PRINTER_INFO_2W& now = Peek(buffer);
    EXPECT_EQ(now.DefaultPriority, 50u);
    EXPECT_EQ(now.StartTime, 510u);
    EXPECT_EQ(now.UntilTime, 1215u);
}

TEST_F(ScheduleObject, EmptyTextClearsTheWindowForAScript)
{
    OpenOfJob();
    EXPECT_EQ(Late().Put("StartTime", L"").result, S_OK);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId)->StartTime, 0u);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId)->UntilTime, 0u);
    Heard();
    EXPECT_EQ(Late().Get("StartTime").value, _variant_t(L"00:00"));
}

TEST_F(ScheduleObject, TextThatIsNoTimeFailsForAScriptAndChangesNothing)
{
    OpenOfJob();
    for (const char* const time : {"StartTime", "UntilTime"}) {
        const LateResult put = Late().Put(time, L"13 PM");
        EXPECT_EQ(put.result, DISP_E_EXCEPTION);
        EXPECT_EQ(put.code, invalidArgument.result);
        EXPECT_EQ(put.description, L"Invalid argument");
        EXPECT_EQ(put.source, L"Vorlane.PrintJobSchedule.1");
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 0u);
}

TEST_F(ScheduleObject, NeedsAnOutPointer)
{
    for (const bool ofJob : {true, false}) {
        if (ofJob) OpenOfJob();
        if (!ofJob) OpenOfPrinter();
        EXPECT_EQ(AnswerOf(schedule->get_Priority(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(schedule->get_StartTime(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(schedule->get_UntilTime(nullptr)), invalidArgument);
    }
}

TEST_F(ScheduleObject, UnboundFailsInEveryMemberBeforeAnythingElse)
{
    schedule = Create<IPrintJobSchedule>(__uuidof(PrintJobSchedule));
    EXPECT_EQ(AnswerOf(schedule->get_Priority(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->get_StartTime(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->get_UntilTime(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->put_Priority(1)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->put_StartTime(nullptr)), jobScheduleNotInitialized);
    EXPECT_EQ(AnswerOf(schedule->put_UntilTime(NewBstr(L"no time").Get())), jobScheduleNotInitialized);
}

TEST_F(ScheduleObject, UnboundFailsForAScriptWithCodeTextAndSource)
{
    schedule = ScheduleOf(*Create<IPrintJob>(__uuidof(PrintJob)).Get());
    const LateResult read = Late().Get("Priority");
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, jobScheduleNotInitialized.result);
    EXPECT_EQ(read.description, L"JobSchedule object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.PrintJobSchedule.1");
}

TEST_F(ScheduleObject, OfAJobThatIsNotThereFailsForAScriptAsAnInvalidJob)
{
    schedule = ScheduleOf(*OpenJob(4711).Get());
    EXPECT_EQ(Late().Get("Priority").code, invalidJob.result);
    EXPECT_EQ(Late().Put("Priority", 1L).result, S_OK);
}

TEST_F(ScheduleObject, OutlivesItsParent)
{
    OpenOfPrinter(); // whose printer object has gone
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    EXPECT_EQ(Late().Get("Priority").value, _variant_t(7L));
    OpenOfJob();
    EXPECT_EQ(PutStartTime(L"8:30"), S_OK);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId)->StartTime, 510u);
}

} // namespace
