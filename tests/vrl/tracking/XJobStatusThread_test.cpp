// SPDX-License-Identifier: MIT
#include "vrl/tracking/XJobStatusThread.h"

#include "support/BackgroundCall.h"
#include "support/CapturedTrace.h"
#include "support/ForeignThrow.h"
#include "support/spooler/HeldCall.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/tracking/TrackingTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

using XJobStatusThreadTest = OpenPrinterTest;

// ---- what the spooler is asked for ----

TEST_F(XJobStatusThreadTest, AsksForTheNineFieldsOfPrinterAndJobs)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    const auto requests = notices.Requests();
    ASSERT_THAT(requests, SizeIs(1));
    EXPECT_EQ(requests[0].filter, 0xFF00u);
    EXPECT_EQ(requests[0].options, 0u);
    EXPECT_EQ(requests[0].version, 2u);
    EXPECT_EQ(requests[0].flags, 0u);
    EXPECT_THAT(requests[0].fields, ElementsAre(Pair(WORD{0}, ElementsAre(1, 2, 3, 5, 6, 14, 16, 17, 18)),
                                                Pair(WORD{1}, ElementsAre(10, 20, 21, 22, 14, 17, 18, 15, 9))));
}

TEST_F(XJobStatusThreadTest, OpensThePrinterForItselfUnderTheSpoolersName)
{
    queue.Reset();
    printer.Reset();
    printer = OpenPrinter(L"lAbEl");
    ::SpoolerClearLog();
    const Connection sink = Watch(*QueueOf(*printer.Get()).Get(), "queue");
    const auto calls = SpoolerLog();
    const auto opened = std::ranges::find(calls, SpoolerCall::OpenPrinterW, &SpoolerCallRecord::call);
    ASSERT_NE(opened, calls.end());
    EXPECT_STREQ(opened->printer, L"Label");
    EXPECT_EQ(opened->access, 8u);
    EXPECT_EQ(notices.Requests().back().printer, opened->handle);
}

TEST_F(XJobStatusThreadTest, StartsOnceForAllThatAskForIt)
{
    const Connection printerSink = Watch(*printer.Get(), "printer");
    const Connection queueSink = Watch(*queue.Get(), "queue");
    const auto job = OpenJob(jobId);
    EXPECT_THAT(notices.Requests(), SizeIs(1));
}

TEST_F(XJobStatusThreadTest, StartsWithTheFirstJobObject)
{
    EXPECT_THAT(notices.Requests(), IsEmpty());
    const auto job = OpenJob(jobId);
    EXPECT_THAT(notices.Requests(), SizeIs(1));
}

TEST_F(XJobStatusThreadTest, LivesOnAfterTheLastSink)
{
    Watch(*queue.Get(), "queue").Close();
    EXPECT_EQ(notices.OpenNotifications(), 1);
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(notices.Requests(), SizeIs(1));
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
}

TEST_F(XJobStatusThreadTest, GivesItsHandlesBack)
{
    const DWORD before = ::SpoolerOpenHandles(printerName);
    {
        const Connection sink = Watch(*queue.Get(), "queue");
        EXPECT_EQ(::SpoolerOpenHandles(printerName), before + 1);
    }
    queue.Reset();
    printer.Reset();
    EXPECT_EQ(::SpoolerOpenHandles(printerName), before); // the printer's own stays open for good
    EXPECT_EQ(notices.OpenNotifications(), 0);
}

TEST_F(XJobStatusThreadTest, TracesItsBeginningAndItsEnd)
{
    const CapturedTrace trace;
    Watch(*queue.Get(), "queue").Close();
    Tell(NewJob(jobId));
    queue.Reset();
    printer.Reset();
    EXPECT_THAT(trace.Lines("Entering"), ElementsAre(StartsWith("Entering XJobStatusThread::TheadStart   PID = ")));
    EXPECT_THAT(trace.Lines("-----"), ElementsAre("-----XJobStatusThread::HandleNotifications-----\n"));
    EXPECT_THAT(trace.Lines("XJobStatusThread::ThreadStop"), testing::Each("XJobStatusThread::ThreadStop called\n"));
    EXPECT_FALSE(trace.Lines("XJobStatusThread::ThreadStop").empty());
    EXPECT_THAT(trace.Lines("*** Exiting"),
                ElementsAre(StartsWith("*** Exiting XJobStatusThread::TheadStart   PID = ")));
}

// ---- a printer that can't be watched ----

TEST_F(XJobStatusThreadTest, PrinterThatCannotBeOpenedAgainIsNotWatchedAndNobodyIsTold)
{
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    const CapturedTrace trace;
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_EQ(sink.Result(), S_OK);
    EXPECT_THAT(notices.Requests(), IsEmpty());
    EXPECT_TRUE(Eventually([&] { return !trace.Lines("*** Exiting").empty(); }));
    const auto job = OpenJob(jobId);
    OBstr name;
    EXPECT_EQ(job->get_Name(name.Receive()), S_OK);
    EXPECT_THAT(notices.Requests(), IsEmpty()) << "the dead thread is kept";
}

TEST_F(XJobStatusThreadTest, PrinterThatCannotBeWatchedIsAPrinterWithoutEvents)
{
    notices.RefuseWatching();
    const CapturedTrace trace;
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_EQ(sink.Result(), S_OK);
    EXPECT_TRUE(Eventually([&] { return !trace.Lines("*** Exiting").empty(); }));
    const Connection another = Watch(*printer.Get(), "printer");
    EXPECT_EQ(another.Result(), S_OK);
    EXPECT_THAT(notices.Requests(), SizeIs(1)) << "the dead thread is kept";
}

// ---- the wait ----

TEST_F(XJobStatusThreadTest, WaitsForASecondAtATime)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    notices.PassQuietSecond();
    EXPECT_EQ(notices.WaitTimeout(), 1000u);
}

TEST_F(XJobStatusThreadTest, QuietSecondPurgesOldJobs)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Tell(NewJob(jobId));
    Tell({Status(jobId, JOB_STATUS_DELETED)});
    tick = tick + XJobPool::retentionMs - 1;
    const CapturedTrace trace;
    notices.PassQuietSecond();
    EXPECT_THAT(trace.Lines("Deleting"), IsEmpty());
    tick = tick + 1;
    notices.PassQuietSecond();
    EXPECT_THAT(trace.Lines("Deleting"), ElementsAre("Deleting job with jobID = 1\n"));
}

TEST_F(XJobStatusThreadTest, NoticesPurgeNothing)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Tell({Status(jobId, JOB_STATUS_DELETED)});
    tick = tick + XJobPool::retentionMs;
    const CapturedTrace trace;
    Tell({Status(2, 0)});
    EXPECT_THAT(trace.Lines("Deleting"), IsEmpty());
}

class BrokenWait : public XJobStatusThreadTest, public testing::WithParamInterface<DWORD> {};

TEST_P(BrokenWait, EndsTheThreadForGood)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    notices.WaitUntilIdle();
    const CapturedTrace trace;
    notices.EndWait(GetParam());
    EXPECT_TRUE(Eventually([&] { return !trace.Lines("*** Exiting").empty(); }));
    EXPECT_EQ(notices.OpenNotifications(), 0);
    const Connection another = Watch(*printer.Get(), "printer");
    EXPECT_EQ(another.Result(), S_OK);
    EXPECT_THAT(notices.Requests(), SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(Result, BrokenWait, testing::Values(WAIT_FAILED, WAIT_ABANDONED_0, 2, 4711));

// ---- batches ----

TEST_F(XJobStatusThreadTest, NewJobIsTheOneOfTheFirstEntry)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({
                    PRINTER_CHANGE_ADD_JOB, {Status(7, 0), Status(8, 0)}
    }),
                ElementsAre("queue: OnJobNew(job 7)"));
}

TEST_F(XJobStatusThreadTest, NewJobOfABatchThatBeginsWithThePrinterIsNotSeen)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({
                    PRINTER_CHANGE_ADD_JOB, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 0), Status(7, 0)}
    }),
                IsEmpty());
}

TEST_F(XJobStatusThreadTest, NewJobWithoutEntriesIsNotSeen)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    const CapturedTrace trace;
    EXPECT_THAT(Tell({PRINTER_CHANGE_ADD_JOB, {}}), IsEmpty());
    ScriptedBatch bare;
    bare.change = PRINTER_CHANGE_ADD_JOB;
    bare.hasInfo = false;
    EXPECT_THAT(Tell(bare), IsEmpty());
    EXPECT_THAT(trace.Lines("PRINTER_CHANGE"), ElementsAre("PRINTER_CHANGE_ADD_JOB\n", "PRINTER_CHANGE_ADD_JOB\n"));
}

TEST_F(XJobStatusThreadTest, NewJobThatQueueSinksKnowIsNotNewAgain)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
    EXPECT_THAT(Tell(NewJob(jobId)), IsEmpty());
}

TEST_F(XJobStatusThreadTest, NewJobIsToldAheadOfItsBatch)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({PRINTER_CHANGE_ADD_JOB, {Status(jobId, JOB_STATUS_PAUSED)}}),
                ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPaused(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(XJobStatusThreadTest, ChangeWithoutABlockIsHarmless)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    ScriptedBatch bare;
    bare.change = PRINTER_CHANGE_WRITE_JOB;
    bare.hasInfo = false;
    EXPECT_THAT(Tell(bare), IsEmpty());
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
}

TEST_F(XJobStatusThreadTest, BatchWithTheDiscardedFlagIsHandledLikeAnyOther)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    ScriptedBatch batch = NewJob(jobId);
    batch.flags = PRINTER_NOTIFY_INFO_DISCARDED;
    EXPECT_THAT(Tell(batch), ElementsAre("queue: OnJobNew(job 1)"));
    ScriptedBatch empty;
    empty.flags = PRINTER_NOTIFY_INFO_DISCARDED;
    EXPECT_THAT(Tell(empty), IsEmpty());
    EXPECT_EQ(notices.Fetches(), 2); // a refresh would fail in the script
}

TEST_F(XJobStatusThreadTest, BlockIsFreedBeforeTheSinksAreCalled)
{
    int unfreed = -1;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        unfreed = notices.UnfreedBlocks();
        return S_OK;
    };
    const Connection connection = Connect(*queue.Get(), sink.Get());
    Tell(NewJob(jobId));
    EXPECT_EQ(unfreed, 0);
}

TEST_F(XJobStatusThreadTest, SinksAreCalledOnTheThread)
{
    DWORD thread = 0;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        thread = ::GetCurrentThreadId();
        return S_OK;
    };
    const Connection connection = Connect(*queue.Get(), sink.Get());
    Tell(NewJob(jobId));
    EXPECT_NE(thread, 0u);
    EXPECT_NE(thread, ::GetCurrentThreadId());
}

// ---- what goes wrong ----

TEST_F(XJobStatusThreadTest, FetchThatFailsEndsNothing)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    ScriptedBatch failing;
    failing.fails = true;
    for (int i = 0; i < 3; ++i) EXPECT_THAT(Tell(failing), IsEmpty());
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
}

TEST_F(XJobStatusThreadTest, FailureCostsItsBatchAndNotTheThread)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    const Lines told = Tell({PRINTER_CHANGE_ADD_JOB, {Status(jobId, JOB_STATUS_PAUSED)}});
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(notices.UnfreedBlocks(), 0);
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_PAUSED)}),
                ElementsAre("queue: OnJobPaused(job 1)", "queue: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(XJobStatusThreadTest, FailureInMidBatchCostsWhatTheBatchHadBroughtSoFar)
{
    const auto job = OpenJob(jobId);
    const Connection jobSink = Watch(*job.Get(), "job");
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_PAUSED), Status(2, 0)}), IsEmpty());
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_PRINTING)}),
                ElementsAre("job: OnJobResumed(job 1)", "job: OnJobStatusChanged(job 1, status 'Printing')"));
}

TEST_F(XJobStatusThreadTest, JobThatVanishedBeforeItsFirstNoticeStillBringsItsVerdict)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({
                    PRINTER_CHANGE_ADD_JOB | PRINTER_CHANGE_DELETE_JOB,
                    {ScriptedEntry::Job(99, JOB_NOTIFY_FIELD_TOTAL_PAGES, 1), Status(99, JOB_STATUS_SPOOLING),
                                                  ScriptedEntry::Job(99, JOB_NOTIFY_FIELD_PRIORITY, 1), Status(99, JOB_STATUS_DELETED)}
    }),
                ElementsAre("queue: OnJobNew(job 99)", "queue: OnJobSent(job 99)", "queue: OnJobCompleted(job 99)",
                            "queue: OnJobStatusChanged(job 99, status '')", "queue: OnJobFinalized(job 99)"));
}

class RaisingFetch : public XJobStatusThreadTest, public testing::WithParamInterface<void (*)()> {};

TEST_P(RaisingFetch, CostsItsBatchAndNotTheThread)
{
    const ImportHook<decltype(::MessageBoxA)> noDialog("MessageBoxA",
                                                       [](HWND, LPCSTR, LPCSTR, UINT) -> int { return IDOK; });
    const Connection sink = Watch(*queue.Get(), "queue");
    ScriptedBatch raising = NewJob(jobId);
    raising.action = GetParam();
    EXPECT_THAT(Tell(raising), IsEmpty());
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
}

INSTANTIATE_TEST_SUITE_P(Kind, RaisingFetch,
                         testing::Values([] { *static_cast<volatile int*>(nullptr) = 1; },
                                         [] { ::RaiseException(0xE0000001, 0, 0, nullptr); }, ThrowAsForeignCode,
                                         [] { throw std::runtime_error("from the spooler"); }));

} // namespace
