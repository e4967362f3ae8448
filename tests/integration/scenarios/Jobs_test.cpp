// SPDX-License-Identifier: MIT
// What jobs in the field do, from their first notice to their last.

#include "integration/scenarios/ScenarioTest.h"

#include "spooler/SpoolerConstants.h"
#include "support/TemporaryDirectory.h"
#include "support/com/LateBound.h"
#include "support/product/ProductTicks.h"
#include "support/product/ProductTrace.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD retentionMs = 60000; // of the record of a job that nobody holds

class JobScenario : public ScenarioTest {
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

    /// A label goes through spooler and printer before anybody looks.
    void SendLabelAndPrintIt()
    {
        const TemporaryDirectory folder;
        const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
        EXPECT_EQ(printer->SendFile(NewBstr(file).Get(), NewBstr(L"Label").Get()), S_OK);
        ::SpoolerStep(printerName, spoolerAllSteps, nullptr);
    }

    static void Command(DWORD jobId, DWORD command)
    {
        HANDLE handle = nullptr;
        EXPECT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), &handle, nullptr));
        EXPECT_TRUE(::SetJobW(handle, jobId, 0, nullptr, command));
        EXPECT_TRUE(::ClosePrinter(handle));
    }

    std::wstring NameOf(DWORD jobId) { return Text(*OpenJob(jobId).Get(), &IPrintJob::get_Name); }

    std::wstring StatusTextOf(IPrintJob& job)
    {
        ComPtr<IPrintJobStatus> status;
        EXPECT_EQ(job.get_Status(&status), S_OK);
        return Text(*status.Get(), &IPrintJobStatus::get_Text);
    }

    Connection queueSink;
};

TEST_F(JobScenario, LabelIsFollowedFromItsSubmissionToItsEnd)
{
    SpoolPage();
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)",
                                     "queue: OnJobTotalPagesChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobStarted(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')",
                                    "queue: OnJobPagesPrintedChanged(job 1, 0, 1)", "queue: OnJobSent(job 1)",
                                    "queue: OnJobCompleted(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                                    "queue: OnJobFinalized(job 1)"));
}

// ---- jobs that are quicker than their notices ----

TEST_F(JobScenario, LabelThatIsGoneBeforeItsFirstNoticeIsReadStillBringsItsVerdict)
{
    EXPECT_THAT(InOneBatch([&] { SendLabelAndPrintIt(); }),
                ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobStarted(job 1)",
                            "queue: OnJobStatusChanged(job 1, status '')", "queue: OnJobSent(job 1)",
                            "queue: OnJobCompleted(job 1)", "queue: OnJobStatusChanged(job 1, status '')",
                            "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, LabelThatIsGoneBeforeItsFirstNoticeIsReadTellsItsNumberOnly)
{
    queueSink.Close();
    ComPtr<IDispatch> told;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        told = parameters->rgvarg[parameters->cArgs - 1].pdispVal;
        return S_OK;
    };
    const Connection connection = Connect(*queue.Get(), sink.Get());
    EXPECT_THAT(InOneBatch([&] { SendLabelAndPrintIt(); }), testing::SizeIs(7));
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(LateBound(told.Get()).Get("JobId").value, _variant_t(1L));
    EXPECT_EQ(LateBound(told.Get()).Get("Name").description, L"Invalid job");
}

TEST_F(JobScenario, EntriesOfALabelThatIsGoneAreTracedAndDropped)
{
    const ProductTrace trace(Product());
    EXPECT_THAT(InOneBatch([&] { SendLabelAndPrintIt(); }), testing::SizeIs(7));
    EXPECT_EQ(trace.Count("jobID = 1 \tInvalid job: field 20 dropped"), 1u); // its pages
    EXPECT_EQ(trace.Count(" dropped"), 7u);                                  // all but status and device mode
}

TEST_F(JobScenario, EntriesOfALabelThatIsGoneCostNothingOfTheJobBesideIt)
{
    const DWORD beside = SpoolPage();
    Command(beside, JOB_CONTROL_PAUSE);
    Heard();
    EXPECT_THAT(InOneBatch([&] {
                    SendLabelAndPrintIt();
                    ::SpoolerSetJobPages(printerName, beside, 3, 0);
                }),
                ElementsAre("queue: OnJobNew(job 2)", "queue: OnJobStarted(job 2)",
                            "queue: OnJobStatusChanged(job 2, status '')", "queue: OnJobSent(job 2)",
                            "queue: OnJobCompleted(job 2)", "queue: OnJobStatusChanged(job 2, status '')",
                            "queue: OnJobFinalized(job 2)", "queue: OnJobTotalPagesChanged(job 1, 1, 3)"));
    Command(beside, JOB_CONTROL_DELETE);
    EXPECT_THAT(Step(), testing::Contains("queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, DeletingPrintedAndDeletedInOneBatchAreOneVerdict)
{
    const DWORD jobId = SpoolPage();
    Heard();
    EXPECT_THAT(InOneBatch([&] {
                    Command(jobId, jobControlRelease);
                    ::SpoolerStep(printerName, spoolerAllSteps, nullptr);
                }),
                ElementsAre("queue: OnJobCancelled(job 1)", "queue: OnJobStatusChanged(job 1, status 'Cancelled')",
                            "queue: OnJobFinalized(job 1)"));
}

// ---- what the spooler tells late, or never ----

TEST_F(JobScenario, RawJobWithoutPagesIsDeliveredAtZeroPages)
{
    FieldDocument document(printerName);
    Settle();
    document.Write("TEXT 1,1");
    document.End();
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobStarted(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')",
                                    "queue: OnJobSent(job 1)", "queue: OnJobCompleted(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                                    "queue: OnJobFinalized(job 1)"));
}

class LateNameScenario : public JobScenario {
protected:
    void Furnish() override
    {
        SpoolerPrinter label = LabelPrinter();
        label.lateNames = true;
        AddPrinter(label);
    }
};

TEST_F(LateNameScenario, NameThatComesOnlyAfterSpoolingIsNotSeen)
{
    FieldDocument document(printerName);
    Settle();
    const auto job = OpenJob(document.JobId());
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Local Downlevel Document");
    document.End();
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)"));
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Local Downlevel Document");
    EXPECT_EQ(NameOf(1), L"Local Downlevel Document") << "there is one record";
    ::SpoolerDeliverJob(printerName, 1);
    EXPECT_THAT(Heard(), testing::Contains("queue: OnJobFinalized(job 1)"));
}

TEST_F(LateNameScenario, NameThatComesBeforeTheFirstNoticeIsReadIsTheRightOne)
{
    InOneBatch([] { FieldDocument(printerName).End(); });
    EXPECT_EQ(NameOf(1), L"Pallet label");
    ::SpoolerDeliverJob(printerName, 1);
    EXPECT_THAT(Heard(), testing::Contains("queue: OnJobFinalized(job 1)"));
}

// ---- numbers ----

TEST_F(JobScenario, NumberThatIsUsedAgainWithinTheMinuteIsStillTheOldJob)
{
    SpoolPage();
    Step();
    ::SpoolerSetNextJobId(1);
    EXPECT_EQ(SpoolPage(L"Second"), 1u);
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobTotalPagesChanged(job 1, 1, 0)",
                                     "queue: OnJobPagesPrintedChanged(job 1, 1, 0)",
                                     "queue: OnJobTotalPagesChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobPagesPrintedChanged(job 1, 0, 1)")) << "the old record is final";
    EXPECT_EQ(NameOf(1), L"Pallet label");
    EXPECT_EQ(StatusTextOf(*OpenJob(1).Get()), L"Sent, Completed");
    Tell({Status(1, JOB_STATUS_RESTART | JOB_STATUS_DELETED)}, 0); // or the queue's job would stay for good
}

TEST_F(JobScenario, NumberThatIsUsedAgainAfterTheMinuteIsANewJob)
{
    const ProductTicks ticks(Product());
    SpoolPage();
    Step();
    ProductTicks::Advance(retentionMs);
    EXPECT_TRUE(waits.PassQuietSecond());
    ::SpoolerSetNextJobId(1);
    EXPECT_EQ(SpoolPage(), 1u);
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)",
                                     "queue: OnJobTotalPagesChanged(job 1, 0, 1)"));
    EXPECT_THAT(Step(), testing::SizeIs(7));
}

TEST_F(JobScenario, FinalStateCanBeReadForAMinuteAfterTheEnd)
{
    const ProductTicks ticks(Product());
    SpoolPage();
    Step();
    EXPECT_EQ(StatusTextOf(*OpenJob(1).Get()), L"Sent, Completed");
    ProductTicks::Advance(retentionMs);
    EXPECT_TRUE(waits.PassQuietSecond());
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(OpenJob(1)->get_Name(name.Receive())), invalidJob);
}

// ---- cancelled ----

TEST_F(JobScenario, JobThatIsCancelledWhileItIsSpooled)
{
    FieldDocument document(printerName);
    Settle();
    document.StartPage();
    EXPECT_THAT(Heard(), testing::SizeIs(3));
    EXPECT_EQ(OpenJob(1)->Cancel(), S_OK);
    EXPECT_FALSE(document.Write("TEXT 1,1"));
    EXPECT_THAT(Heard(), IsEmpty());
    document.End();
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobCancelled(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Spooling, Cancelled')",
                                    "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, JobThatIsCancelledWhileItPrints)
{
    SpoolPage();
    Step(2);
    EXPECT_EQ(OpenJob(1)->Cancel(), S_OK);
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobCancelled(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Printing, Cancelled')",
                                    "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, JobThatIsCancelledWhileItIsPaused)
{
    SpoolPage();
    EXPECT_EQ(OpenJob(1)->Pause(), S_OK);
    Heard();
    EXPECT_EQ(OpenJob(1)->Cancel(), S_OK);
    EXPECT_THAT(Step(),
                ElementsAre("queue: OnJobPaused(job 1)", "queue: OnJobPaused(job 1)", "queue: OnJobCancelled(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Paused, Cancelled')",
                            "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, JobThatIsCancelledInError)
{
    SpoolPage();
    Step(1);
    ::SpoolerSetTrouble(printerName, {JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT, PRINTER_STATUS_PAPER_OUT, L"Paper out"});
    EXPECT_THAT(Heard(),
                ElementsAre("queue: OnJobError(job 1, printer status)",
                            "queue: OnJobStatusChanged(job 1, status 'Printing, User Intervention Required')"));
    EXPECT_EQ(OpenJob(1)->Cancel(), S_OK);
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobError(job 1, printer status)", "queue: OnJobCancelled(job 1)",
                                    "queue: OnJobError(job 1, printer status)", "queue: OnJobFinalized(job 1)"));
}

// ---- restarted ----

TEST_F(JobScenario, RestartedJobIsFollowedFromItsNewStart)
{
    SpoolPage();
    Step(4);
    EXPECT_EQ(OpenJob(1)->Restart(), S_OK);
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobStarted(job 1)", "queue: OnJobPagesPrintedChanged(job 1, 1, 0)"));
    EXPECT_THAT(Step(), ElementsAre("queue: OnJobStatusChanged(job 1, status 'Printing')",
                                    "queue: OnJobPagesPrintedChanged(job 1, 0, 1)", "queue: OnJobSent(job 1)",
                                    "queue: OnJobCompleted(job 1)",
                                    "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                                    "queue: OnJobFinalized(job 1)"));
}

TEST_F(JobScenario, FinalJobThatIsRestartedIsFollowedAgain)
{
    SpoolPage();
    Step();
    EXPECT_THAT(Tell({Status(1, JOB_STATUS_PRINTING)}), IsEmpty());
    EXPECT_THAT(Tell({Status(1, JOB_STATUS_RESTART)}), ElementsAre("queue: OnJobStarted(job 1)"));
    EXPECT_THAT(Tell({Status(1, JOB_STATUS_PRINTING)}),
                ElementsAre("queue: OnJobStatusChanged(job 1, status 'Printing')"));
    EXPECT_THAT(Tell({Status(1, JOB_STATUS_DELETED)}, PRINTER_CHANGE_DELETE_JOB),
                ElementsAre("queue: OnJobSent(job 1)", "queue: OnJobCompleted(job 1)",
                            "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                            "queue: OnJobFinalized(job 1)"));
}

} // namespace
