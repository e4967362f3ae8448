// SPDX-License-Identifier: MIT
#include "vrl/core/XJobPool.h"

#include "foundation/threads/TickCount.h"
#include "support/CapturedTrace.h"
#include "support/com/RecordingSinkOwner.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/frame/VRException.h"

#include <atomic>
#include <thread>

namespace {

/// The job pool of an open printer, with ticks that a test sets.
class XJobPoolTest : public SpoolerTest {
protected:
    static inline std::atomic<DWORD> tick;

    void SetUp() override
    {
        SpoolerTest::SetUp();
        tick = 1000;
        SetTickCountSource([] { return tick.load(); });
        xPrinter = XPrinterRef::Acquire(OString(printerName));
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        tick = tick + XJobPool::retentionMs;
        xPrinter->PurgeJobs();
        xPrinter.Release();
        SetTickCountSource(nullptr);
        SpoolerTest::TearDown();
    }

    XJobRef Acquire(DWORD jobId) { return XJobRef::Acquire(*xPrinter, jobId); }

    XPrinterRef xPrinter;
};

TEST_F(XJobPoolTest, OneNumberHasOneRecordThatIsLoadedOnce)
{
    const DWORD jobId = AddJob({});
    const XJobRef first = Acquire(jobId);
    const XJobRef second = Acquire(jobId);
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(first->GetJobID(), jobId);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(XJobPoolTest, RecordsAreLoadedUnderThePrintersName)
{
    EXPECT_EQ(Acquire(AddJob({}))->GetPrinterName(), "Label");
}

TEST_F(XJobPoolTest, UnknownNumberHasARecordThatIsNotLoadedLater)
{
    const XJobRef unknown = Acquire(1);
    EXPECT_THROW(unknown->GetName(), InvalidJob_E);
    ASSERT_EQ(AddJob({}), 1u);
    EXPECT_THROW(Acquire(1)->GetName(), InvalidJob_E);
}

TEST_F(XJobPoolTest, ControlGoesToThePrintersDriver)
{
    const XJobRef job = Acquire(AddJob({}));
    job->Pause();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 1u);
}

TEST_F(XJobPoolTest, DriverIsStoredOnlyAfterTheFirstLoad)
{
    // A job found deleted is not asked of the device: it counts by what the spooler says.
    SpoolerJob deleted;
    deleted.status = JOB_STATUS_DELETED;
    EXPECT_TRUE(Acquire(AddJob(deleted))->IsCompleted());
}

TEST_F(XJobPoolTest, PrinterThatCannotBeOpenedLeavesNoRecord)
{
    const DWORD jobId = AddJob({});
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_THROW(Acquire(jobId), CouldNotOpenPrinter_E);
    EXPECT_NO_THROW(Acquire(jobId)->GetName());
}

// ---- retention ----

TEST_F(XJobPoolTest, ReleasedRecordKeepsTheLastStateOfItsJob)
{
    const DWORD jobId = AddJob({});
    {
        const XJobRef job = Acquire(jobId);
        OTypedArray<int> events;
        job->UpdateStatus(JOB_STATUS_DELETED, events);
    }
    ::SpoolerRemoveJob(printerName, jobId);
    tick = tick + XJobPool::retentionMs - 1;
    xPrinter->PurgeJobs();
    EXPECT_EQ(Acquire(jobId)->GetStatusText(), "Sent, Completed");
}

TEST_F(XJobPoolTest, NumberThatIsUsedAgainGetsTheOldRecordUntilThePurge)
{
    SpoolerJob job;
    job.jobId = 7;
    job.document = L"Old";
    AddJob(job);
    Acquire(7).Release();
    ::SpoolerRemoveJob(printerName, 7);
    job.document = L"New";
    AddJob(job);
    EXPECT_EQ(Acquire(7)->GetName(), "Old");
    tick = tick + XJobPool::retentionMs;
    xPrinter->PurgeJobs();
    EXPECT_EQ(Acquire(7)->GetName(), "New");
}

/// Counts how often a job number has been loaded: a record that was purged is loaded once more.
class PurgeTest : public XJobPoolTest {
protected:
    bool IsKept(DWORD jobId)
    {
        const DWORD before = SpoolerCalls(SpoolerCall::OpenPrinterW);
        Acquire(jobId).Release();
        return SpoolerCalls(SpoolerCall::OpenPrinterW) == before;
    }
};

TEST_F(PurgeTest, TakesARecordAfterAMinuteAndNotBefore)
{
    Acquire(1).Release();
    tick = tick + 59999;
    xPrinter->PurgeJobs();
    EXPECT_TRUE(IsKept(1)); // and released once more
    tick = tick + 60000;
    xPrinter->PurgeJobs();
    EXPECT_FALSE(IsKept(1));
}

TEST_F(PurgeTest, SparesARecordThatIsHeld)
{
    const XJobRef held = Acquire(1);
    Acquire(1).Release();
    tick = tick + 600000;
    xPrinter->PurgeJobs();
    EXPECT_TRUE(IsKept(1));
}

TEST_F(PurgeTest, CountsFromTheLastRelease)
{
    XJobRef first = Acquire(1);
    XJobRef second = Acquire(1);
    first.Release();
    tick = tick + 59999;
    second.Release();
    tick = tick + 59999;
    xPrinter->PurgeJobs();
    EXPECT_TRUE(IsKept(1));
}

TEST_F(PurgeTest, BearsAWrapOfTheTicks)
{
    tick = 0xFFFFFFFF;
    Acquire(1).Release();
    tick = tick + 59999;
    xPrinter->PurgeJobs();
    EXPECT_TRUE(IsKept(1));
    tick = tick + 60000;
    xPrinter->PurgeJobs();
    EXPECT_FALSE(IsKept(1));
}

TEST_F(PurgeTest, TakesAllThatAreDueInOneWalkFromTheLastToTheFirst)
{
    const CapturedTrace trace;
    Acquire(1).Release();
    const XJobRef held = Acquire(2);
    Acquire(3).Release();
    tick = tick + 60000;
    xPrinter->PurgeJobs();
    EXPECT_EQ(trace.Lines("PrintJob with"),
              (std::vector<std::string>{"PrintJob with JobID = 3 is getting purged at location 2\n",
                                        "PrintJob with JobID = 1 is getting purged at location 0\n"}));
    EXPECT_EQ(trace.Lines("Deleting").size(), 2u);
    EXPECT_TRUE(IsKept(2));
}

// ---- the list of objects with sinks ----

TEST_F(XJobPoolTest, LastReleaseTakesTheObjectOutOfTheRecordsList)
{
    RecordingSinkOwner owner;
    XJobRef other = Acquire(1);
    XJobRef owners = Acquire(1);
    other->AddJobReference(owner);
    owners.Release(&owner);
    EXPECT_TRUE(other->HasJobReferences()) << "there is another holder";
    owners = Acquire(1);
    XJob* const record = other.Get();
    other.Release();
    owners.Release(&owner);
    EXPECT_FALSE(record->HasJobReferences());
}

TEST_F(XJobPoolTest, LastReleaseWithoutAnObjectLeavesTheListAlone)
{
    RecordingSinkOwner owner;
    XJobRef job = Acquire(1);
    XJob* const record = job.Get();
    record->AddJobReference(owner);
    job.Release();
    EXPECT_TRUE(record->HasJobReferences());
}

TEST_F(XJobPoolTest, CountsFromManyThreadsBalance)
{
    std::vector<std::jthread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([this] {
            for (DWORD i = 0; i < 400; ++i) Acquire(i % 7).Release();
        });
    }
    threads.clear();
    const CapturedTrace trace;
    tick = tick + 60000;
    xPrinter->PurgeJobs();
    EXPECT_EQ(trace.Lines("Deleting").size(), 7u);
}

} // namespace
