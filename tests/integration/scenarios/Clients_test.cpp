// SPDX-License-Identifier: MIT
// What clients do to the product, rightly or wrongly.

#include "integration/scenarios/ScenarioTest.h"
#include "support/com/JobEvents.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ClientScenario : public ScenarioTest {
protected:
    /// The job that an event speaks of.
    static ComPtr<IPrintJob> JobIn(const DISPPARAMS& parameters)
    {
        ComPtr<IPrintJob> job;
        ComPtr<IDispatch>(parameters.rgvarg[parameters.cArgs - 1].pdispVal).As(&job);
        return job;
    }
};

// ---- clients that forget ----

TEST_F(ClientScenario, WhoForgetsToUnadviseTheQueueLosesTheSinkWithTheQueue)
{
    Watch(*queue.Get(), "queue").Forget();
    SpoolPage();
    EXPECT_THAT(Step(), SizeIs(10));
    LetGo();
    EXPECT_EQ(EventSink::Living(), 0);
}

TEST_F(ClientScenario, WhoForgetsToUnadviseThePrinterLosesTheSinkWithThePrinter)
{
    Watch(*printer.Get(), "printer").Forget();
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    EXPECT_THAT(Heard(), ElementsAre("printer: OnStatusChanged(printer Label)"));
    LetGo();
    EXPECT_EQ(EventSink::Living(), 0);
}

TEST_F(ClientScenario, WhoForgetsToUnadviseAJobLosesTheSinkWithTheJob)
{
    SpoolPage();
    {
        const auto job = OpenJob(1);
        Watch(*job.Get(), "job").Forget();
        EXPECT_THAT(Step(1), SizeIs(2));
    }
    EXPECT_EQ(EventSink::Living(), 0);
    EXPECT_THAT(Step(), IsEmpty());
}

TEST_F(ClientScenario, WhoForgetsTheQueueAmongOthersDisturbsNobody)
{
    const auto other = BoundPrinter();
    const auto otherQueue = QueueOf(*other.Get());
    const Connection sink = Watch(*otherQueue.Get(), "other");
    Watch(*queue.Get(), "forgotten").Forget();
    queue.Reset();
    printer.Reset();
    SpoolPage();
    EXPECT_THAT(Step(), testing::AllOf(SizeIs(10), testing::Each(testing::StartsWith("other: "))));
}

// ---- work in handlers ----

TEST_F(ClientScenario, JobThatIsOpenedInItsFirstEventIsHeardFromTheNextBatchOn)
{
    ComPtr<IPrintJob> job;
    Connection jobSink;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID event, DISPPARAMS* parameters) {
        if (event != onJobNew) return S_OK;
        job = JobIn(*parameters);
        jobSink = Watch(*job.Get(), "job");
        return S_OK;
    };
    const Connection queueSink = Connect(*queue.Get(), sink.Get());
    SpoolPage();
    EXPECT_THAT(Heard(),
                ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)",
                            "job: OnJobTotalPagesChanged(job 1, 0, 1)", "queue: OnJobTotalPagesChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(1),
                ElementsAre("job: OnJobStarted(job 1)", "job: OnJobStatusChanged(job 1, status 'Printing')",
                            "queue: OnJobStarted(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')"));
    jobSink.Close();
    job.Reset();
    EXPECT_THAT(Step(), SizeIs(5));
}

TEST_F(ClientScenario, JobCanBeCancelledInAHandler)
{
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID event, DISPPARAMS* parameters) {
        return event == onJobStarted ? JobIn(*parameters)->Cancel() : S_OK;
    };
    const Connection queueSink = Connect(*queue.Get(), sink.Get());
    SpoolPage();
    EXPECT_THAT(Step(),
                ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)",
                            "queue: OnJobTotalPagesChanged(job 1, 0, 1)", "queue: OnJobStarted(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Printing')", "queue: OnJobCancelled(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Printing, Cancelled')",
                            "queue: OnJobFinalized(job 1)"));
}

TEST_F(ClientScenario, ClientMayEndInTheHandlerOfTheFinalEvent)
{
    Connection queueSink;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID event, DISPPARAMS*) {
        if (event != onJobFinalized) return S_OK;
        queueSink.Close();
        queue.Reset();
        printer.Reset();
        return S_OK;
    };
    queueSink = Connect(*queue.Get(), sink.Get());
    SpoolPage();
    EXPECT_THAT(Step(), SizeIs(10));
    EXPECT_TRUE(Eventually([] { return Product().CanUnloadNow() == S_OK; }));
    EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
}

TEST_F(ClientScenario, ClientThatStopsListeningInMidJobLeavesThePrinterWatched)
{
    auto queueSink = Watch(*queue.Get(), "queue");
    SpoolPage();
    Heard();
    queueSink.Close();
    queue.Reset();
    printer.Reset();
    EXPECT_THAT(Step(), IsEmpty());
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    EXPECT_EQ(::SpoolerOpenNotifications(), 1u);

    printer = BoundPrinter();
    queue = QueueOf(*printer.Get());
    queueSink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({Status(1, JOB_STATUS_RESTART | JOB_STATUS_DELETED)}, 0),
                testing::Contains("queue: OnJobFinalized(job 1)"));
}

} // namespace
