// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/com/Getters.h"
#include "support/com/LateBound.h"
#include "support/product/JobClientTest.h"
#include "support/product/ProductHeap.h"

#include <string>

// What the class does is held by tests/vrl/classes/PrintJob_test.cpp. Here: what it takes the module for.

namespace {

class JobObject : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        job = OpenJob(jobId);
    }

    void TearDown() override
    {
        job.Reset();
        JobClientTest::TearDown();
    }

    static constexpr size_t rounds = 20; ///< in which something that stays behind adds up

    ComPtr<IPrintJob> job;
    std::vector<BYTE> buffer;
};

// One pass over the properties

struct JobProperty : Getter<IPrintJob> {
    const wchar_t* text; ///< null: it is a number
    long number = 0;
};

constexpr auto boundFirst = Getter<IPrintJob>::First::Binding;

// clang-format off
const JobProperty properties[] = {
    {{"JobId",          reader<&IPrintJob::get_JobId>,           boundFirst}, nullptr, 1},
    {{"PrinterName",    reader<&IPrintJob::get_PrinterName>,     boundFirst}, L"Label"},
    {{"Name",           reader<&IPrintJob::get_Name>,            boundFirst}, L"Pallet 7"},
    {{"MachineName",    reader<&IPrintJob::get_MachineName>,     boundFirst}, L"\\\\DESK"},
    {{"UserName",       reader<&IPrintJob::get_UserName>,        boundFirst}, L"Ida"},
    {{"TotalPages",     reader<&IPrintJob::get_TotalPages>,      boundFirst}, nullptr, 5},
    {{"PagesPrinted",   reader<&IPrintJob::get_PagesPrinted>,    boundFirst}, nullptr, 2},
    {{"Size",           reader<&IPrintJob::get_Size>,            boundFirst}, nullptr, 4096},
    {{"DataType",       reader<&IPrintJob::get_DataType>,        boundFirst}, L"RAW"},
    {{"NotifyUser",     reader<&IPrintJob::get_NotifyUser>,      boundFirst}, L"Otto"},
    {{"PrintProcessor", reader<&IPrintJob::get_PrintProcessor>,  boundFirst}, L"winprint"},
};
// clang-format on

class JobProperties : public JobObject, public ::testing::WithParamInterface<JobProperty> {
protected:
    static _variant_t Expected()
    {
        return GetParam().text ? _variant_t(GetParam().text) : _variant_t(GetParam().number);
    }
};

TEST_P(JobProperties, ComeLateBound)
{
    const LateResult read = LateBound(job.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, S_OK);
    EXPECT_EQ(read.value, Expected());
}

TEST_P(JobProperties, FailUnboundForAScriptWithCodeTextAndSource)
{
    const auto unbound = Create<IPrintJob>(__uuidof(PrintJob));
    const LateResult read = LateBound(unbound.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, jobNotInitialized.result);
    EXPECT_EQ(read.description, L"Job object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.Job.1");
}

TEST_P(JobProperties, NeedABindingAndThenAnOutPointer)
{
    EXPECT_EQ(AnswerOf(GetParam().call(*Create<IPrintJob>(__uuidof(PrintJob)).Get(), nullptr)), jobNotInitialized);
    EXPECT_EQ(AnswerOf(GetParam().call(*job.Get(), nullptr)), invalidArgument);
}

INSTANTIATE_TEST_SUITE_P(Each, JobProperties, ::testing::ValuesIn(properties), rowName);

TEST_F(JobObject, SubmittedTimeComesLateBoundAsADate)
{
    SYSTEMTIME local{};
    DATE expected = 0;
    const SYSTEMTIME utc = QueuedJob().submitted;
    ASSERT_TRUE(::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local));
    ASSERT_TRUE(::SystemTimeToVariantTime(&local, &expected));
    const LateResult read = LateBound(job.Get()).Get("SubmittedTime");
    ASSERT_EQ(read.value.vt, VT_DATE);
    EXPECT_EQ(read.value.date, expected);
}

TEST_F(JobObject, SubmittedTimeNeedsABindingAndThenAnOutPointer)
{
    EXPECT_EQ(AnswerOf(Create<IPrintJob>(__uuidof(PrintJob))->get_SubmittedTime(nullptr)), jobNotInitialized);
    EXPECT_EQ(AnswerOf(job->get_SubmittedTime(nullptr)), invalidArgument);
}

TEST_F(JobObject, NotifyUserReachesTheSpoolerLateBound)
{
    EXPECT_EQ(LateBound(job.Get()).Put("NotifyUser", L"Eva \u8FD4\u54C1").result, S_OK);
    EXPECT_STREQ(PeekJob(buffer, printerName, jobId)->pNotifyName, L"Eva \u8FD4\u54C1");
    EXPECT_EQ(LateBound(job.Get()).Get("NotifyUser").value, _variant_t(L"Eva \u8FD4\u54C1"));
}

TEST_F(JobObject, NotifyUserThatTheSpoolerRefusesFailsForAScript)
{
    FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
    const LateResult put = LateBound(job.Get()).Put("NotifyUser", L"Eva");
    EXPECT_EQ(put.result, DISP_E_EXCEPTION);
    EXPECT_EQ(put.code, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_EQ(put.source, L"Vorlane.Job.1");
}

// Binding

TEST_F(JobObject, IsBoundLateBound)
{
    const auto other = Create<IPrintJob>(__uuidof(PrintJob));
    EXPECT_EQ(LateBound(other.Get()).Call("Initialize", {printerName, static_cast<long>(jobId)}).result, S_OK);
    EXPECT_EQ(Text(*other.Get(), &IPrintJob::get_Name), L"Pallet 7");
}

TEST_F(JobObject, PrinterThatIsNotThereFailsForAScript)
{
    const LateResult bound = LateBound(job.Get()).Call("Initialize", {L"No such printer", 1L});
    EXPECT_EQ(bound.result, DISP_E_EXCEPTION);
    EXPECT_EQ(bound.code, couldNotOpenPrinter.result);
    EXPECT_EQ(bound.description, L"Could not open printer");
    EXPECT_EQ(bound.source, L"Vorlane.Job.1");
}

TEST_F(JobObject, JobThatIsNotThereFailsForAScriptWhenItIsAsked)
{
    const auto unknown = OpenJob(4711);
    EXPECT_EQ(LateBound(unknown.Get()).Get("JobId").value, _variant_t(4711L));
    const LateResult read = LateBound(unknown.Get()).Get("Name");
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, invalidJob.result);
    EXPECT_EQ(read.description, L"Invalid job");
    EXPECT_EQ(read.source, L"Vorlane.Job.1");
}

// Control

TEST_F(JobObject, ControlsReachTheSpoolerLateBound)
{
    const LateBound late(job.Get());
    EXPECT_EQ(late.Call("Pause", {}).result, S_OK);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId)->Status, static_cast<DWORD>(JOB_STATUS_PAUSED));
    EXPECT_EQ(late.Call("Resume", {}).result, S_OK);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId)->Status, 0u);
    EXPECT_EQ(late.Call("Restart", {}).result, S_OK);
    EXPECT_EQ(LastCall(SpoolerCall::SetJobW).command, static_cast<DWORD>(JOB_CONTROL_RESTART));
    EXPECT_EQ(late.Call("Cancel", {}).result, S_OK);
    EXPECT_EQ(PeekJob(buffer, printerName, jobId), nullptr);
}

TEST_F(JobObject, ControlsThatTheSpoolerRefusesAreNoFailureForAScript)
{
    for (const char* const control : {"Pause", "Resume", "Restart", "Cancel"}) {
        FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
        EXPECT_EQ(LateBound(job.Get()).Call(control, {}).result, S_OK) << control;
    }
    EXPECT_NE(PeekJob(buffer, printerName, jobId), nullptr);
}

// Parts

class JobPart : public JobObject, public ::testing::WithParamInterface<Getter<IPrintJob>> {
protected:
    static ComPtr<IDispatch> PartOf(IPrintJob& whole)
    {
        ComPtr<IDispatch> part;
        EXPECT_EQ(GetParam().call(whole, part.GetAddressOf()), S_OK);
        return part;
    }
};

TEST_P(JobPart, HasAnIdentityOfItsOwn)
{
    ComPtr<IUnknown> own;
    ComPtr<IUnknown> whole;
    EXPECT_EQ(PartOf(*job.Get()).As(&own), S_OK);
    EXPECT_EQ(job.As(&whole), S_OK);
    EXPECT_NE(own.Get(), whole.Get());
}

TEST_P(JobPart, ComesLateBound)
{
    const LateResult part = LateBound(job.Get()).Get(GetParam().name);
    ASSERT_EQ(part.value.vt, VT_DISPATCH);
    EXPECT_EQ(part.value.pdispVal, PartOf(*job.Get()).Get());
}

TEST_P(JobPart, NeedsAnOutPointerAndNoBinding)
{
    const auto unbound = Create<IPrintJob>(__uuidof(PrintJob));
    EXPECT_EQ(AnswerOf(GetParam().call(*unbound.Get(), nullptr)), invalidArgument);
    EXPECT_NE(PartOf(*unbound.Get()).Get(), nullptr);
}

TEST_P(JobPart, KeepsTheModuleInUseWhenItsParentHasGone)
{
    const auto part = PartOf(*job.Get());
    job.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
}

INSTANTIATE_TEST_SUITE_P(Each, JobPart,
                         ::testing::Values(Getter<IPrintJob>{"Status", reader<&IPrintJob::get_Status>,
                                                             Getter<IPrintJob>::First::OutPointer},
                                           Getter<IPrintJob>{"Schedule", reader<&IPrintJob::get_Schedule>,
                                                             Getter<IPrintJob>::First::OutPointer}),
                         rowName);

// Lifetime

TEST_F(JobObject, BindingTakesNoReferenceOnTheObject)
{
    job->AddRef();
    EXPECT_EQ(job->Release(), 1u);
}

TEST_F(JobObject, RecordOutlivesTheJobInTheSpooler)
{
    ::SpoolerRemoveJob(printerName, jobId);
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Pallet 7");
    EXPECT_EQ(Text(*OpenJob(jobId).Get(), &IPrintJob::get_UserName), L"Ida");
}

TEST_F(JobObject, RoundsOfWholeLivesLeaveNoKernelHandle)
{
    const auto live = [this] {
        job.Reset();
        job = OpenJob(jobId);
        const Connection sink = Watch(*job.Get(), "job");
        EXPECT_EQ(Bind(*job.Get(), 4711), S_OK);
        EXPECT_EQ(Bind(*job.Get(), jobId), S_OK);
    };
    for (int round = 0; round < 2; ++round) live(); // what is made once for the process
    DWORD before = 0;
    DWORD after = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &before);
    for (size_t round = 0; round < rounds; ++round) live();
    ::GetProcessHandleCount(::GetCurrentProcess(), &after);
    EXPECT_LT(after, before + rounds); // the thread may just have some
}

/// A printer that closes leaves blocks behind on purpose, so here it stays open.
TEST_F(JobObject, RoundsOfWholeLivesLeaveNoMemory)
{
    const ProductHeap heap(Product());
    const auto queue = QueueOf(*BoundPrinter().Get());
    const auto live = [&] {
        const auto other = OpenJob(jobId);
        const auto jobs = Create<IPrintJobs>(__uuidof(PrintJobs));
        const Connection jobSink = Watch(*other.Get(), "job");
        const Connection queueSink = Watch(*queue.Get(), "queue");
        EXPECT_EQ(queue->EnumerateJobs(jobs.Get(), VARIANT{}), S_OK);
        EXPECT_EQ(other->put_NotifyUser(NewBstr(L"Eva").Get()), S_OK);
        EXPECT_EQ(ScheduleOf(*other.Get())->put_StartTime(NewBstr(L"no time").Get()), invalidArgument.result);
        EXPECT_EQ(Bind(*other.Get(), 4711), S_OK);
        AnswerOf(other->get_Name(nullptr));
        Tell({Status(jobId, JOB_STATUS_RESTART | JOB_STATUS_PAPEROUT), Status(jobId, JOB_STATUS_DELETED)});
    };
    live();
    const size_t before = heap.LiveBlocks();
    for (size_t round = 0; round < rounds; ++round) live();
    EXPECT_LT(heap.LiveBlocks(), before + rounds); // the thread may just have some
}

} // namespace
