// SPDX-License-Identifier: MIT
#include "vrl/tracking/NoticeParser.h"

#include "support/CapturedTrace.h"
#include "support/ImportHook.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/tracking/TrackingTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One queued job, watched at both levels, and its record.
class NoticeParserTest : public TrackingTest {
protected:
    void SetUp() override
    {
        TrackingTest::SetUp();
        SpoolerJob queued;
        queued.priority = 9;
        queued.totalPages = 8;
        queued.pagesPrinted = 5;
        queued.startTime = 600;
        queued.untilTime = 700;
        queued.reportedSize = 1000;
        jobId = AddJob(queued);
        job = OpenJob(jobId);
        xPrinter = XPrinterRef::Acquire(OString(printerName));
        record = XJobRef::Acquire(*xPrinter, jobId);
        connection = Watch(*job.Get(), "job");
    }

    void TearDown() override
    {
        connection.Close();
        record.Release();
        xPrinter.Release();
        job.Reset();
        TrackingTest::TearDown();
    }

    DWORD jobId = 0;
    ComPtr<PrintJob> job;
    XPrinterRef xPrinter;
    XJobRef record;
    Connection connection;
};

struct NumberFieldRow {
    const char* name;
    WORD field;
    DWORD (XJob::*get)() const;
    DWORD before;
    const char* trace;
    const char* event; ///< empty: none
};

// clang-format off
const NumberFieldRow numberFieldRows[] = {
    {"Priority",     JOB_NOTIFY_FIELD_PRIORITY,      &XJob::GetPriority,     9,    "Job Priority",   "OnJobPriorityChanged(job 1, 9, 77)"},
    {"Position",     JOB_NOTIFY_FIELD_POSITION,      &XJob::GetPosition,     0,    "Job Position",   "OnJobPositionChanged(job 1, 0, 77)"},
    {"StartTime",    JOB_NOTIFY_FIELD_START_TIME,    &XJob::GetStartTime,    600,  "Job Start Time", ""},
    {"UntilTime",    JOB_NOTIFY_FIELD_UNTIL_TIME,    &XJob::GetUntilTime,    700,  "Job Until Time", ""},
    {"TotalPages",   JOB_NOTIFY_FIELD_TOTAL_PAGES,   &XJob::GetTotalPages,   8,    "Total Pages",    "OnJobTotalPagesChanged(job 1, 8, 77)"},
    {"PagesPrinted", JOB_NOTIFY_FIELD_PAGES_PRINTED, &XJob::GetPagesPrinted, 5,    "Pages Printed",  "OnJobPagesPrintedChanged(job 1, 5, 77)"},
    {"TotalBytes",   JOB_NOTIFY_FIELD_TOTAL_BYTES,   &XJob::GetSize,         1000, "Total Bytes",    ""},
};
// clang-format on

/// A zone without daylight saving, or with it in force.
template <DWORD kind>
DWORD WINAPI MadeUpZone(TIME_ZONE_INFORMATION* zone)
{
    *zone = {};
    zone->Bias = -60;
    zone->DaylightBias = -60;
    return kind;
}

class JobNumberField : public NoticeParserTest, public testing::WithParamInterface<NumberFieldRow> {
    const ImportHook<decltype(::GetTimeZoneInformation)> _standardTime{"GetTimeZoneInformation",
                                                                       MadeUpZone<TIME_ZONE_ID_STANDARD>};
};

TEST_P(JobNumberField, ThatChangedGoesIntoTheRecordAndIsTraced)
{
    const NumberFieldRow& row = GetParam();
    ASSERT_EQ(((*record).*row.get)(), row.before);
    const CapturedTrace trace;
    const Lines told = Tell({ScriptedEntry::Job(jobId, row.field, 77)});
    EXPECT_EQ(((*record).*row.get)(), 77u);
    EXPECT_EQ(told, *row.event ? Lines{std::string("job: ") + row.event} : Lines{});
    EXPECT_TRUE(trace.Has(std::string("jobID = 1 \t") + row.trace + " = 77\n"));
}

TEST_P(JobNumberField, ThatIsKnownIsNoEvent)
{
    const NumberFieldRow& row = GetParam();
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, row.field, row.before)}), IsEmpty());
    EXPECT_EQ(((*record).*row.get)(), row.before);
}

TEST_P(JobNumberField, OfAJobThatHasGoneIsDroppedAlone)
{
    const NumberFieldRow& row = GetParam();
    const auto gone = OpenJob(4711);
    const Connection sink = Watch(*gone.Get(), "gone");
    const CapturedTrace trace;
    EXPECT_THAT(Tell({ScriptedEntry::Job(4711, row.field, 77), Status(4711, JOB_STATUS_DELETED),
                      ScriptedEntry::Job(4711, row.field, 78), Status(jobId, JOB_STATUS_PAUSED)}),
                ElementsAre("gone: OnJobSent(job 4711)", "gone: OnJobCompleted(job 4711)",
                            "gone: OnJobStatusChanged(job 4711, status '')", "gone: OnJobFinalized(job 4711)",
                            "job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')"));
    const std::string dropped = "jobID = 4711 \tInvalid job: field " + std::to_string(row.field) + " dropped\n";
    EXPECT_THAT(trace.Lines("jobID = 4711 \tInvalid job"), ElementsAre(dropped, dropped));
}

INSTANTIATE_TEST_SUITE_P(Row, JobNumberField, testing::ValuesIn(numberFieldRows),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- times ----

class DaylightTime : public NoticeParserTest {
protected:
    DWORD StartTimeAfter(DWORD told)
    {
        Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_START_TIME, told)});
        return record->GetStartTime();
    }

    const ImportHook<decltype(::GetTimeZoneInformation)> _daylightTime{"GetTimeZoneInformation",
                                                                       MadeUpZone<TIME_ZONE_ID_DAYLIGHT>};
};

TEST_F(DaylightTime, MovesTheTimesThatAreTold)
{
    EXPECT_EQ(StartTimeAfter(660), 600u);
    EXPECT_EQ(StartTimeAfter(61), 1u);
    EXPECT_EQ(StartTimeAfter(60), 0u);
    EXPECT_EQ(StartTimeAfter(59), 1439u);
    EXPECT_EQ(StartTimeAfter(0), 1380u);
    Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_UNTIL_TIME, 70)});
    EXPECT_EQ(record->GetUntilTime(), 10u);
}

TEST_F(DaylightTime, MovesNoOtherNumber)
{
    Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PRIORITY, 70),
          ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_TOTAL_BYTES, 71)});
    EXPECT_EQ(record->GetPriority(), 70u);
    EXPECT_EQ(record->GetSize(), 71u);
}

TEST_F(DaylightTime, IsNotAppliedToTheTimesOfTheFirstLoad)
{
    EXPECT_EQ(record->GetStartTime(), 600u);
    EXPECT_EQ(record->GetUntilTime(), 700u);
}

// ---- status, device mode, odometer ----

TEST_F(NoticeParserTest, StatusIsTracedAndItsEventsAreToldInOrder)
{
    const CapturedTrace trace;
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_PAUSED)}),
                ElementsAre("job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')"));
    EXPECT_TRUE(trace.Has("jobID = 1 \tJOB_NOTIFY_FIELD_STATUS \twNotifyField = 0x0001\n"));
}

TEST_F(NoticeParserTest, SeveralStatusesOfAJobInOneBatchAreAllTold)
{
    record->SetPagesPrinted(8);
    EXPECT_THAT(Tell({Status(jobId, 0x90), Status(jobId, 0x84), Status(jobId, 0x184)}),
                ElementsAre("job: OnJobStarted(job 1)", "job: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                            "job: OnJobSent(job 1)", "job: OnJobCompleted(job 1)",
                            "job: OnJobStatusChanged(job 1, status 'Sent, Completed')", "job: OnJobFinalized(job 1)"));
}

TEST_F(NoticeParserTest, EntriesAreReadInTheSpoolersOrder)
{
    // The pages of the same batch decide the verdict.
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 8), Status(jobId, JOB_STATUS_DELETED)}),
                testing::Contains("job: OnJobCompleted(job 1)"));
}

DEVMODEW TwoCopies()
{
    DEVMODEW devMode{};
    devMode.dmSize = sizeof devMode;
    devMode.dmFields = DM_COPIES | DM_PAPERLENGTH;
    devMode.dmCopies = 2;
    devMode.dmPaperLength = 1000;
    return devMode;
}

TEST_F(NoticeParserTest, OdometerIsCountedByCopiesAndPaperOnEveryEntryOfPages)
{
    record->SetPagesPrinted(0);
    Tell({ScriptedEntry::JobDevMode(jobId, TwoCopies()), ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 3)});
    EXPECT_EQ(xPrinter->GetOdometer(), Odometer(6, 600.0));
}

TEST_F(NoticeParserTest, OdometerIsCountedAlsoForAPageCountThatTheRecordKnows)
{
    Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 5)});
    EXPECT_EQ(xPrinter->GetOdometer(), Odometer(5, 0.0));
}

TEST_F(NoticeParserTest, OdometerIsCountedForAJobThatHasGone)
{
    Tell({ScriptedEntry::Job(4711, JOB_NOTIFY_FIELD_PAGES_PRINTED, 5)});
    EXPECT_EQ(xPrinter->GetOdometer(), Odometer(5, 0.0));
}

TEST_F(NoticeParserTest, OdometerIsToldAheadOfTheEventsOfItsBatch)
{
    const auto printer = OpenPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 6)}),
                ElementsAre("printer: OnOdometerChanged(printer Label)", "job: OnJobPagesPrintedChanged(job 1, 5, 6)"));
}

TEST_F(NoticeParserTest, OdometerIsLookedAtForPagesOnly)
{
    Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 6)});
    const auto printer = OpenPrinter();
    const Connection sink = Watch(*printer.Get(), "printer"); // has not heard of these pages
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PRIORITY, 50)}),
                ElementsAre("job: OnJobPriorityChanged(job 1, 9, 50)"));
}

TEST_F(NoticeParserTest, NullDeviceModeLeavesTheRecordAloneAndItsBatchToo)
{
    record->SetDevMode(TwoCopies());
    EXPECT_THAT(Tell({ScriptedEntry::JobNull(jobId, JOB_NOTIFY_FIELD_DEVMODE), Status(jobId, JOB_STATUS_PAUSED)}),
                ElementsAre("job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')"));
    EXPECT_EQ(record->GetDevMode()->copies, 2);
}

// ---- acquisitions ----

/// Each release of a record reads the ticks once, and nothing else does in a batch without events.
TEST_F(NoticeParserTest, EntriesOfOneJobSideBySideShareOneAcquisition)
{
    const XJobRef other = XJobRef::Acquire(*xPrinter, 2);
    const auto size = [](DWORD id) { return ScriptedEntry::Job(id, JOB_NOTIFY_FIELD_DATATYPE, 0); };
    static std::atomic<int> releases;
    releases = 0;
    SetTickCountSource([] {
        ++releases;
        return tick.load();
    });
    Tell({size(jobId), size(jobId), size(2), size(jobId)});
    EXPECT_EQ(releases, 3);
    SetTickCountSource([] { return tick.load(); });
}

TEST_F(NoticeParserTest, RecordsAreReleasedAtTheEndOfABatch)
{
    Tell({ScriptedEntry::Job(4711, JOB_NOTIFY_FIELD_DATATYPE, 0)});
    tick = tick + XJobPool::retentionMs;
    const CapturedTrace trace;
    notices.PassQuietSecond();
    EXPECT_THAT(trace.Lines("Deleting"), ElementsAre("Deleting job with jobID = 4711\n"));
}

// ---- malformed notices ----

TEST_F(NoticeParserTest, UnknownFieldsAreIgnored)
{
    for (const WORD field : std::initializer_list<WORD>{0, 1, 8, 11, 12, 13, 19, 23, 24, 0xFFFF}) {
        EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, field, 77), ScriptedEntry::JobNull(jobId, field)}), IsEmpty())
            << field;
    }
}

TEST_F(NoticeParserTest, EntryOfAnUnknownTypeIsIgnoredAndTheRestIsRead)
{
    ScriptedEntry odd = Status(jobId, JOB_STATUS_ERROR);
    odd.type = 7;
    EXPECT_THAT(Tell({odd, Status(jobId, JOB_STATUS_PAUSED), odd}),
                ElementsAre("job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(NoticeParserTest, JobNumber0IsAJobThatHasGone)
{
    EXPECT_THAT(Tell({ScriptedEntry::Job(0, JOB_NOTIFY_FIELD_PRIORITY, 1), Status(0, JOB_STATUS_PAUSED),
                      Status(jobId, JOB_STATUS_PAUSED)}),
                ElementsAre("job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(NoticeParserTest, NullStatusTextIsStatus0)
{
    EXPECT_THAT(Tell({ScriptedEntry::JobNull(jobId, JOB_NOTIFY_FIELD_STATUS)}), IsEmpty());
    EXPECT_EQ(record->GetStatusText(), "Waiting");
}

TEST_F(NoticeParserTest, PrinterEntriesAreDroppedWhileNoPrinterObjectListens)
{
    const CapturedTrace trace;
    EXPECT_THAT(Tell({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}}), IsEmpty());
    EXPECT_THAT(trace.Lines("PRINTER_NOTIFY_FIELD_"), IsEmpty());
}

} // namespace
