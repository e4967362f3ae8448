// SPDX-License-Identifier: MIT
// A spooler that fails, stops, comes back, drops notices, and printers that others rename and delete.

#include "integration/scenarios/ScenarioTest.h"
#include "support/com/JobEvents.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using testing::SizeIs;

class SpoolerScenario : public ScenarioTest {
protected:
    void SetUp() override
    {
        ScenarioTest::SetUp();
        if (HasFatalFailure()) return;
        queueSink = Watch(*queue.Get(), "queue");
    }

    void TearDown() override
    {
        queueSink.Close();
        ScenarioTest::TearDown();
    }

    /// The whole life of a job whose every step is seen.
    void ExpectJobIsFollowed(DWORD jobId)
    {
        const std::string job = "(job " + std::to_string(jobId);
        EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew" + job + ")", "queue: OnJobPositionChanged" + job + ", 0, 1)",
                                         "queue: OnJobTotalPagesChanged" + job + ", 0, 1)"));
        EXPECT_THAT(Step(), SizeIs(7));
    }

    Connection queueSink;
};

// ---- a spooler that stops ----

TEST_F(SpoolerScenario, WhileItIsStoppedEachCallFailsInItsOwnManner)
{
    const DWORD jobId = SpoolPage();
    Heard();
    ::SpoolerStop();
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"");
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Local), VARIANT_FALSE);
    EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Ready");
    EXPECT_EQ(AnswerOf(Initialize(*CreatePrinter().Get(), L"Other")), couldNotOpenPrinter);
    EXPECT_EQ(AnswerOf(Create<IPrintJob>(__uuidof(PrintJob))->Initialize(NewBstr(printerName).Get(), 99)),
              couldNotOpenPrinter);
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(LR"(C:\windows\win.ini)").Get(), nullptr)), saysFalse);
    EXPECT_EQ(queue->Pause(), S_OK);
    const auto job = OpenJob(jobId);
    EXPECT_EQ(job->Cancel(), S_OK);
    EXPECT_EQ(AnswerOf(job->put_NotifyUser(NewBstr(L"somebody").Get())), couldNotOpenPrinter);
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Pallet label") << "the record is there";
    ::SpoolerStart();
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
    EXPECT_THAT(Step(), SizeIs(7));
}

TEST_F(SpoolerScenario, JobGoesOnToItsFinalEventWhenTheSpoolerComesBack)
{
    SpoolPage();
    Step(2);
    ::SpoolerStop();
    EXPECT_THAT(Step(), IsEmpty());
    ::SpoolerStart();
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobPagesPrintedChanged(job 1, 0, 1)", "queue: OnJobSent(job 1)",
                                    "queue: OnJobCompleted(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                                    "queue: OnJobFinalized(job 1)"));
}

TEST_F(SpoolerScenario, WhatWaitedWhenTheSpoolerStoppedIsFetchedWhenItIsBack)
{
    FieldDocument document(printerName);
    EXPECT_THAT(Heard(), SizeIs(2));
    queueSink.Close();
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID event, DISPPARAMS*) {
        if (event != onJobTotalPagesChanged) return S_OK;
        document.End(); // while the notification thread is here, the next batch waits
        ::SpoolerStop();
        return S_OK;
    };
    const Connection connection = Connect(*queue.Get(), sink.Get());
    const DWORD fetched = SpoolerCalls(SpoolerCall::FindNextPrinterChangeNotification);
    const DWORD start = ::GetTickCount();
    document.StartPage();
    const auto refused = [&] { return SpoolerCalls(SpoolerCall::FindNextPrinterChangeNotification) - fetched; };
    EXPECT_TRUE(Eventually([&] { return refused() > 4; }));
    EXPECT_GE(::GetTickCount() - start, 250u) << "it asks without a pause";
    ::SpoolerStart();
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobTotalPagesChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(), Contains("queue: OnJobFinalized(job 1)"));
}

TEST_F(SpoolerScenario, ClientCanEndWhileTheSpoolerIsStopped)
{
    ::SpoolerStop();
    queueSink.Close();
    LetGo();
    EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
    ::SpoolerStart();
}

// ---- failures on the notification thread ----

TEST_F(SpoolerScenario, FailureCostsItsBatchAndTheFinalEventsAreHeard)
{
    {
        const HeldCall fetch(SpoolerCall::FindNextPrinterChangeNotification);
        SpoolPageUnseen();
        ASSERT_TRUE(fetch.WaitUntilMade());
        FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE); // for all access, to load the job
        FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE); // and for what there is
    }
    EXPECT_THAT(Heard(), IsEmpty());
    EXPECT_EQ(::SpoolerUnfreedNotifyBlocks(), 0u);
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobPagesPrintedChanged(job 1, 0, 1)", "queue: OnJobSent(job 1)",
                                    "queue: OnJobCompleted(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                                    "queue: OnJobFinalized(job 1)"));
}

TEST_F(SpoolerScenario, FailureOfOneJobCostsAlsoTheOthersOfItsBatchAndNoLaterOnes)
{
    const DWORD known = SpoolPage();
    Heard();
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    FailNext(SpoolerCall::OpenPrinterW, RPC_S_SERVER_UNAVAILABLE);
    EXPECT_THAT(Tell({Status(known, JOB_STATUS_PAUSED), Status(99, JOB_STATUS_PRINTING)}), IsEmpty());
    EXPECT_THAT(Tell({Status(known, JOB_STATUS_PRINTING)}),
                ElementsAre("queue: OnJobResumed(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')"));
    EXPECT_THAT(Step(), Contains("queue: OnJobFinalized(job 1)"));
}

// ---- dropped notices ----

TEST_F(SpoolerScenario, WatchedPrinterIsSilentAfterNoticesWereDropped)
{
    EXPECT_EQ(::SpoolerLoseNotifications(printerName), 0u);
    Settle();
    SpoolPage();
    EXPECT_THAT(Step(), IsEmpty());
    const auto another = BoundPrinter();
    const auto anotherQueue = QueueOf(*another.Get());
    const Connection sink = Watch(*anotherQueue.Get(), "another");
    SpoolPage();
    EXPECT_THAT(Step(), IsEmpty()) << "it is the same printer";
}

TEST_F(SpoolerScenario, SilentPrinterIsHeardAgainOnceAllItsObjectsWereReleased)
{
    EXPECT_EQ(::SpoolerLoseNotifications(printerName), 0u);
    Settle();
    queueSink.Close();
    LetGo();
    printer = BoundPrinter();
    queue = QueueOf(*printer.Get());
    queueSink = Watch(*queue.Get(), "queue");
    ExpectJobIsFollowed(SpoolPage());
}

TEST_F(SpoolerScenario, SilentPrinterStaysSilentIfQueueSinksKnowAJobThatDidNotEnd)
{
    const DWORD jobId = SpoolPage();
    Heard();
    EXPECT_EQ(::SpoolerLoseNotifications(printerName), 0u);
    Settle();
    queueSink.Close();
    queue.Reset();
    printer.Reset();
    printer = BoundPrinter();
    queue = QueueOf(*printer.Get());
    queueSink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Step(), IsEmpty());
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_DELETED)}, 0), Contains("queue: OnJobFinalized(job 1)"));
}

TEST_F(SpoolerScenario, SinkThatIsFarTooSlowLosesNotices)
{
    queueSink.Close();
    ::SpoolerSetNotificationLimit(20);
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID event, DISPPARAMS*) {
        if (event != onJobNew) return S_OK;
        for (int i = 0; i < 30; ++i) FieldDocument(printerName).End();
        return S_OK;
    };
    const Connection connection = Connect(*queue.Get(), sink.Get());
    FieldDocument(printerName).End();
    EXPECT_THAT(Heard(), SizeIs(Gt(0u)));
    EXPECT_THAT(Step(), IsEmpty());
    Tell({Status(1, JOB_STATUS_DELETED)}, 0); // or the queue's job would stay for good
}

// ---- printers that others change ----

TEST_F(SpoolerScenario, RenamedPrinterTellsItsNamesAndItsKnownJobsGoOn)
{
    const Connection printerSink = Watch(*printer.Get(), "printer");
    SpoolPage();
    Heard();
    EXPECT_EQ(::SpoolerRenamePrinter(printerName, L"Dock 3"), 0u);
    EXPECT_THAT(Heard(), ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Dock 3')"));
    EXPECT_THAT(Step(spoolerAllSteps, L"Dock 3"),
                ElementsAre("queue: OnJobStarted(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')",
                            "printer: OnOdometerChanged(printer Label)", "queue: OnJobPagesPrintedChanged(job 1, 0, 1)",
                            "queue: OnJobSent(job 1)", "queue: OnJobCompleted(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                            "queue: OnJobFinalized(job 1)"));
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
}

TEST_F(SpoolerScenario, JobsThatComeToARenamedPrinterAreHeardByClientsOfTheNewNameOnly)
{
    EXPECT_EQ(::SpoolerRenamePrinter(printerName, L"Dock 3"), 0u);
    Settle();
    const auto renamed = BoundPrinter(L"Dock 3");
    const auto renamedQueue = QueueOf(*renamed.Get());
    const Connection sink = Watch(*renamedQueue.Get(), "renamed");
    FieldDocument(L"Dock 3").End();
    EXPECT_THAT(Heard(), ElementsAre("renamed: OnJobNew(job 1)", "renamed: OnJobPositionChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(spoolerAllSteps, L"Dock 3"),
                testing::AllOf(SizeIs(6), testing::Each(testing::StartsWith("renamed: "))));
}

TEST_F(SpoolerScenario, DeletedPrinterIsSilentAndLeavesNothingBehind)
{
    EXPECT_EQ(::SpoolerRemovePrinter(printerName), 0u);
    EXPECT_THAT(Heard(), IsEmpty());
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"");
    EXPECT_EQ(AnswerOf(Create<IPrintJob>(__uuidof(PrintJob))->Initialize(NewBstr(printerName).Get(), 1)),
              couldNotOpenPrinter);
    queueSink.Close();
    LetGo();
    EXPECT_EQ(AnswerOf(Initialize(*CreatePrinter().Get(), printerName)), couldNotOpenPrinter);
}

TEST_F(SpoolerScenario, JobOfADeletedPrinterKeepsItsLastState)
{
    queueSink.Close();
    SpoolPage();
    auto job = OpenJob(1);
    const Connection jobSink = Watch(*job.Get(), "job");
    EXPECT_THAT(Step(1), SizeIs(2));
    EXPECT_EQ(::SpoolerRemovePrinter(printerName), 0u);
    EXPECT_THAT(Heard(), IsEmpty());
    ComPtr<IPrintJobStatus> status;
    EXPECT_EQ(job->get_Status(&status), S_OK);
    EXPECT_EQ(Text(*status.Get(), &IPrintJobStatus::get_Text), L"Printing");
    EXPECT_EQ(job->Cancel(), S_OK);
}

} // namespace
