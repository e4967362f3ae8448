// SPDX-License-Identifier: MIT
#include "support/com/LateBound.h"
#include "support/product/JobClientTest.h"

#include <string>

// What the class does is held by tests/vrl/classes/PrintQueue_test.cpp. Here: what it takes the module for.

namespace {

class QueueObject : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        queue = QueueOf(*BoundPrinter().Get()); // whose printer object goes
        jobs = Create<IPrintJobs>(__uuidof(PrintJobs));
    }

    void TearDown() override
    {
        queue.Reset();
        jobs.Reset();
        JobClientTest::TearDown();
    }

    LateBound Late() const { return LateBound(queue.Get()); }
    _variant_t Jobs() const { return _variant_t(static_cast<IDispatch*>(jobs.Get())); }

    /// The job numbers in the collection, in its order.
    std::vector<long> JobNumbers()
    {
        std::vector<long> numbers;
        long count = 0;
        EXPECT_EQ(jobs->get_Count(&count), S_OK);
        for (long i = 1; i <= count; ++i) {
            ComPtr<IPrintJob> job;
            EXPECT_EQ(jobs->get_Item(i, &job), S_OK);
            long number = 0;
            EXPECT_EQ(job->get_JobId(&number), S_OK);
            numbers.push_back(number);
        }
        return numbers;
    }

    ComPtr<IPrintQueue> queue;
    ComPtr<IPrintJobs> jobs;
    std::vector<BYTE> buffer;
};

TEST_F(QueueObject, EnumeratesItsJobsLateBoundWithOrWithoutAFilter)
{
    AddJob(QueuedJob());
    EXPECT_EQ(Late().Call("EnumerateJobs", {Jobs()}).result, S_OK);
    EXPECT_EQ(JobNumbers(), (std::vector<long>{1, 2}));
    AddJob(QueuedJob());
    const auto filter = Create<IPrintJobsFilter>(__uuidof(PrintJobsFilter));
    for (const _variant_t& any : {_variant_t(static_cast<IDispatch*>(filter.Get())), _variant_t(L"no jobs, please"),
                                  _variant_t(7L), _variant_t()}) {
        EXPECT_EQ(Late().Call("EnumerateJobs", {Jobs(), any}).result, S_OK);
        EXPECT_EQ(JobNumbers(), (std::vector<long>{1, 2, 3})) << "nothing is emptied, and nothing stands there twice";
    }
}

TEST_F(QueueObject, EmptyQueueIsAnEmptyCollection)
{
    ::SpoolerRemoveJob(printerName, jobId);
    EXPECT_EQ(Late().Call("EnumerateJobs", {Jobs()}).result, S_OK);
    EXPECT_EQ(JobNumbers(), std::vector<long>{});
}

TEST_F(QueueObject, IsPausedResumedAndPurgedLateBound)
{
    EXPECT_EQ(Late().Call("Pause", {}).result, S_OK);
    EXPECT_EQ(Peek(buffer).Status, static_cast<DWORD>(PRINTER_STATUS_PAUSED));
    EXPECT_EQ(Late().Call("Resume", {}).result, S_OK);
    EXPECT_EQ(Peek(buffer).Status, 0u);
    EXPECT_EQ(Late().Call("Purge", {}).result, S_OK);
    EXPECT_EQ(Peek(buffer).cJobs, 0u);
}

TEST_F(QueueObject, WithoutTheRightToAdministerItChangesNothingAndSaysYes)
{
    queue.Reset();
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    queue = QueueOf(*BoundPrinter().Get());
    for (const char* const command : {"Pause", "Resume", "Purge"}) {
        EXPECT_EQ(Late().Call(command, {}).result, S_OK) << command;
        EXPECT_EQ(LastCall(SpoolerCall::SetPrinterW).result, static_cast<DWORD>(ERROR_ACCESS_DENIED)) << command;
    }
    EXPECT_EQ(Peek(buffer).cJobs, 1u);
}

TEST_F(QueueObject, NullCollectionFailsForAScript)
{
    const LateResult listed = Late().Call("EnumerateJobs", {_variant_t(static_cast<IDispatch*>(nullptr))});
    EXPECT_EQ(listed.result, DISP_E_EXCEPTION);
    EXPECT_EQ(listed.code, invalidArgument.result);
    EXPECT_EQ(listed.description, L"Invalid argument");
    EXPECT_EQ(listed.source, L"Vorlane.PrinterQueue.1");
}

// Deliberate: `Pause` leaves no error information, the others do.
TEST_F(QueueObject, UnboundFailsForAScript)
{
    const auto unbound = QueueOf(*CreatePrinter().Get());
    const LateBound late(unbound.Get());
    for (const char* const command : {"Resume", "Purge"}) {
        const LateResult failed = late.Call(command, {});
        EXPECT_EQ(failed.code, invalidPrinter.result) << command;
        EXPECT_EQ(failed.description, L"Invalid printer") << command;
        EXPECT_EQ(failed.source, L"Vorlane.PrinterQueue.1") << command;
    }
    EXPECT_EQ(late.Call("EnumerateJobs", {Jobs()}).code, invalidPrinter.result);
    const LateResult paused = late.Call("Pause", {});
    EXPECT_TRUE(FAILED(paused.result));
    EXPECT_EQ(paused.description, L"");
    EXPECT_EQ(AnswerOf(unbound->Pause()), (Answer{E_POINTER, ""}));
}

TEST_F(QueueObject, KeepsTheModuleInUse)
{
    jobs.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
}

} // namespace
