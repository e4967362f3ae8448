// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/product/JobClientTest.h"
#include "support/product/ProductTrace.h"

#include <gmock/gmock.h>

#include <algorithm>

// The spooler fails in a call that a job, a queue or their watching needs: what the caller is told.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::ValuesIn;

class JobSpoolerFailures : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        queue = QueueOf(*BoundPrinter().Get());
        jobs = Create<IPrintJobs>(__uuidof(PrintJobs));
    }

    void TearDown() override
    {
        LetGo();
        JobClientTest::TearDown();
    }

    void LetGo()
    {
        job.Reset();
        queue.Reset();
        jobs.Reset();
    }

    /// Calls that match fail from the nth on, so many of them.
    static void Fail(SpoolerCall call, DWORD nth, DWORD count = 1)
    {
        SpoolerFailure failure;
        failure.call = call;
        failure.error = ERROR_ACCESS_DENIED;
        failure.nth = nth;
        failure.count = count;
        ::SpoolerInject(failure);
    }

    long JobCount()
    {
        long count = -1;
        EXPECT_EQ(jobs->get_Count(&count), S_OK);
        return count;
    }

    Answer ReadName()
    {
        OwnedBstr name;
        return AnswerOf(job->get_Name(name.Receive()));
    }

    ComPtr<IPrintQueue> queue;
    ComPtr<IPrintJob> job;
    ComPtr<IPrintJobs> jobs;
    std::vector<BYTE> buffer;
};

const Answer denied = SystemAnswer(ERROR_ACCESS_DENIED);

// Binding a job of a printer that is open

struct BindingFailure {
    const char* name;
    SpoolerCall call;
    DWORD nth;
    DWORD count;
    Answer bound;
    Answer read; ///< of the job's name afterwards
    bool watched;

    friend std::ostream& operator<<(std::ostream& stream, const BindingFailure& row) { return stream << row.name; }
};

// The job's record opens the printer with all access, then for use; the notification thread opens it for use.
const BindingFailure bindingFailures[] = {
    {"AllAccess",    SpoolerCall::OpenPrinterW,                       1, 1, succeeded,           succeeded,         true },
    {"AnyAccess",    SpoolerCall::OpenPrinterW,                       1, 2, couldNotOpenPrinter, jobNotInitialized, false},
    {"JobSize",      SpoolerCall::GetJobW,                            1, 1, succeeded,           invalidJob,        true },
    {"JobRead",      SpoolerCall::GetJobW,                            2, 1, succeeded,           invalidJob,        true },
    {"ThreadsOpen",  SpoolerCall::OpenPrinterW,                       2, 1, succeeded,           succeeded,         false},
    {"Notification", SpoolerCall::FindFirstPrinterChangeNotification, 1, 1, succeeded,           succeeded,         false},
};

class JobBinding : public JobSpoolerFailures, public ::testing::WithParamInterface<BindingFailure> {};

TEST_P(JobBinding, AnswersAsItIsTo)
{
    job = Create<IPrintJob>(__uuidof(PrintJob));
    Fail(GetParam().call, GetParam().nth, GetParam().count);
    EXPECT_EQ(AnswerOf(Bind(*job.Get(), jobId)), GetParam().bound);
    EXPECT_EQ(ReadName(), GetParam().read);
    EXPECT_EQ(::SpoolerOpenNotifications(), GetParam().watched ? 1u : 0u);
}

TEST_P(JobBinding, CanBeDoneAgain)
{
    job = Create<IPrintJob>(__uuidof(PrintJob));
    Fail(GetParam().call, GetParam().nth, GetParam().count);
    AnswerOf(Bind(*job.Get(), jobId));
    EXPECT_EQ(AnswerOf(Bind(*job.Get(), AddJob(QueuedJob()))), succeeded);
    EXPECT_EQ(ReadName(), succeeded);
}

INSTANTIATE_TEST_SUITE_P(Each, JobBinding, ValuesIn(bindingFailures), rowName);

TEST_F(JobSpoolerFailures, JobOfAPrinterThatCannotBeOpenedIsNotBound)
{
    LetGo();
    Fail(SpoolerCall::OpenPrinterW, 1, 2);
    job = Create<IPrintJob>(__uuidof(PrintJob));
    EXPECT_EQ(AnswerOf(Bind(*job.Get(), jobId)), couldNotOpenPrinter);
    EXPECT_EQ(ReadName(), jobNotInitialized);
}

// Writing

struct JobWrite {
    const char* name;
    HRESULT (*put)(IPrintJob& job);
    SpoolerCall call;
    DWORD nth;
    DWORD count;
    Answer answer;

    friend std::ostream& operator<<(std::ostream& stream, const JobWrite& row) { return stream << row.name; }
};

Microsoft::WRL::ComPtr<IPrintJobSchedule> ScheduleIn(IPrintJob& job)
{
    Microsoft::WRL::ComPtr<IPrintJobSchedule> schedule;
    EXPECT_EQ(job.get_Schedule(&schedule), S_OK);
    return schedule;
}

HRESULT PutNotifyUser(IPrintJob& job)
{
    return job.put_NotifyUser(NewBstr(L"Eva").Get());
}

HRESULT Pause(IPrintJob& job)
{
    return job.Pause();
}

HRESULT Cancel(IPrintJob& job)
{
    return job.Cancel();
}

HRESULT PutPriority(IPrintJob& job)
{
    return ScheduleIn(job)->put_Priority(50);
}

HRESULT PutStartTime(IPrintJob& job)
{
    return ScheduleIn(job)->put_StartTime(NewBstr(L"8:30").Get());
}

// Deliberate: only a refused notify name is a failure; what can't be read isn't written, and nobody is told.
const JobWrite jobWrites[] = {
    {"NotifyUserAllAccess", PutNotifyUser, SpoolerCall::OpenPrinterW, 1, 1, succeeded          },
    {"NotifyUserAnyAccess", PutNotifyUser, SpoolerCall::OpenPrinterW, 1, 2, couldNotOpenPrinter},
    {"NotifyUserSize",      PutNotifyUser, SpoolerCall::GetJobW,      1, 1, succeeded          },
    {"NotifyUserRead",      PutNotifyUser, SpoolerCall::GetJobW,      2, 1, succeeded          },
    {"NotifyUserWrite",     PutNotifyUser, SpoolerCall::SetJobW,      1, 1, denied             },
    {"Pause",               Pause,         SpoolerCall::SetJobW,      1, 1, succeeded          },
    {"Cancel",              Cancel,        SpoolerCall::SetJobW,      1, 1, succeeded          },
    {"PrioritySize",        PutPriority,   SpoolerCall::GetJobW,      1, 1, succeeded          },
    {"PriorityRead",        PutPriority,   SpoolerCall::GetJobW,      2, 1, succeeded          },
    {"PriorityWrite",       PutPriority,   SpoolerCall::SetJobW,      1, 1, succeeded          },
    {"StartTimeSize",       PutStartTime,  SpoolerCall::GetJobW,      1, 1, succeeded          },
    {"StartTimeRead",       PutStartTime,  SpoolerCall::GetJobW,      2, 1, succeeded          },
    {"StartTimeWrite",      PutStartTime,  SpoolerCall::SetJobW,      1, 1, succeeded          },
};

class FailedJobWrite : public JobSpoolerFailures, public ::testing::WithParamInterface<JobWrite> {
protected:
    /// What the spooler has of the job that the writes here change.
    std::wstring InTheSpooler()
    {
        const JOB_INFO_2W& now = *PeekJob(buffer, printerName, jobId);
        return std::wstring(now.pNotifyName) + L' ' + std::to_wstring(now.Status) + L' ' +
               std::to_wstring(now.Priority) + L' ' + std::to_wstring(now.StartTime);
    }
};

TEST_P(FailedJobWrite, AnswersAsTheMemberIsToAnswer)
{
    job = OpenJob(jobId);
    Fail(GetParam().call, GetParam().nth, GetParam().count);
    EXPECT_EQ(AnswerOf(GetParam().put(*job.Get())), GetParam().answer);
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_DataType), L"RAW");
}

TEST_P(FailedJobWrite, CanBeDoneAgain)
{
    job = OpenJob(jobId);
    Fail(GetParam().call, GetParam().nth, GetParam().count);
    AnswerOf(GetParam().put(*job.Get()));
    EXPECT_EQ(AnswerOf(GetParam().put(*job.Get())), succeeded);
}

INSTANTIATE_TEST_SUITE_P(Each, FailedJobWrite, ValuesIn(jobWrites), rowName);

class LostJobWrite : public FailedJobWrite {};

TEST_P(LostJobWrite, LeavesTheJobAsItWas)
{
    job = OpenJob(jobId);
    const std::wstring before = InTheSpooler();
    Fail(GetParam().call, GetParam().nth, GetParam().count);
    AnswerOf(GetParam().put(*job.Get()));
    EXPECT_EQ(InTheSpooler(), before);
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_NotifyUser), L"Otto");
}

// The first row finds the printer open for use, which is enough.
INSTANTIATE_TEST_SUITE_P(Each, LostJobWrite, ValuesIn(std::begin(jobWrites) + 1, std::end(jobWrites)), rowName);

// The queue

class FailedListing : public JobSpoolerFailures, public ::testing::WithParamInterface<DWORD> {};

TEST_P(FailedListing, AddsNothingAndSaysYes)
{
    Fail(SpoolerCall::EnumJobsW, GetParam());
    EXPECT_EQ(AnswerOf(queue->EnumerateJobs(jobs.Get(), VARIANT{})), succeeded);
    EXPECT_EQ(JobCount(), 0);
    EXPECT_EQ(AnswerOf(queue->EnumerateJobs(jobs.Get(), VARIANT{})), succeeded);
    EXPECT_EQ(JobCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Call, FailedListing, ::testing::Values(1, 2));

TEST_F(JobSpoolerFailures, JobThatCannotBeOpenedEndsTheListing)
{
    AddJob(QueuedJob());
    AddJob(QueuedJob());
    Fail(SpoolerCall::OpenPrinterW, 3, 2); // after the first job's and the thread's
    EXPECT_EQ(AnswerOf(queue->EnumerateJobs(jobs.Get(), VARIANT{})), couldNotOpenPrinter);
    EXPECT_EQ(JobCount(), 1);
}

TEST_F(JobSpoolerFailures, JobThatCannotBeReadIsListedWithoutDetails)
{
    Fail(SpoolerCall::GetJobW, 1);
    EXPECT_EQ(AnswerOf(queue->EnumerateJobs(jobs.Get(), VARIANT{})), succeeded);
    EXPECT_EQ(jobs->get_Item(1, &job), S_OK);
    EXPECT_EQ(ReadName(), invalidJob);
}

TEST_F(JobSpoolerFailures, RefusedControlOfTheQueueSaysYes)
{
    for (HRESULT (IPrintQueue::*const control)() : {&IPrintQueue::Pause, &IPrintQueue::Resume, &IPrintQueue::Purge}) {
        Fail(SpoolerCall::SetPrinterW, 1);
        EXPECT_EQ(AnswerOf((queue.Get()->*control)()), succeeded);
    }
}

// Watching

class UnwatchedPrinter : public JobSpoolerFailures, public ::testing::WithParamInterface<SpoolerCall> {};

TEST_P(UnwatchedPrinter, TakesSinksThatHearNothing)
{
    Fail(GetParam(), 1);
    const ProductTrace trace(Product());
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_EQ(sink.Result(), S_OK);
    EXPECT_TRUE(Eventually([&] { return trace.Count("*** Exiting XJobStatusThread::TheadStart ") == 1; }));
    job = OpenJob(jobId);
    EXPECT_EQ(ReadName(), succeeded) << "jobs can be read all the same";
    EXPECT_EQ(::SpoolerOpenNotifications(), 0u) << "a thread that has ended is kept";
    EXPECT_THAT(log.Take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Call, UnwatchedPrinter,
                         ::testing::Values(SpoolerCall::OpenPrinterW, SpoolerCall::FindFirstPrinterChangeNotification));

TEST_F(JobSpoolerFailures, NoticesThatCannotBeFetchedAtOnceAreHeardLater)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Heard();
    Fail(SpoolerCall::FindNextPrinterChangeNotification, 1, 3);
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_DELETED)}),
                ElementsAre("queue: OnJobCancelled(job 1)", "queue: OnJobStatusChanged(job 1, status 'Cancelled')",
                            "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobSpoolerFailures, JobWhoseRecordCannotBeLoadedCostsItsBatchOnly)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Heard();
    Fail(SpoolerCall::OpenPrinterW, 1, 2);
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_PAUSED)}, PRINTER_CHANGE_ADD_JOB), IsEmpty());
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_DELETED)}, PRINTER_CHANGE_ADD_JOB),
                ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobCancelled(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Cancelled')", "queue: OnJobFinalized(job 1)"));
}

} // namespace
