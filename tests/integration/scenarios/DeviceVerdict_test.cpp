// SPDX-License-Identifier: MIT
// The final word on a job comes from the device: what a client hears from its submission on.

#include "labelprinter/LabelPrinterControl.h"
#include "support/product/JobClientTest.h"
#include "support/product/LabelPrinterSetup.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

constexpr std::string_view threeLabels = "LABEL 100x60\nTEXT 1,1,\"Pallet\"\nPRINT 3\n";

using Lines = std::vector<std::string>;

Lines operator+(Lines left, const Lines& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A batch as the sinks hear of it: all of it for the job's, then all of it for the queue's.
Lines BothHear(const Lines& events)
{
    Lines lines;
    for (const char* const sink : {"job: ", "queue: "}) {
        for (const std::string& event : events) lines.push_back(sink + event);
    }
    return lines;
}

/// "Label" prints a step at a time on a virtual label printer with a verifier; a client watches its queue.
class DeviceVerdict : public JobClientTest {
protected:
    void Furnish() override
    {
        ASSERT_EQ(::SpoolerAddPort({.name = L"NET1", .device = L"labelprinter.dll"}), 0u);
        AddLabelPrinter(printerName);
    }

    void SetUp() override
    {
        JobClientTest::SetUp();
        ::SpoolerRemoveJob(printerName, jobId);
        ::SpoolerSetNextJobId(1);
        printer = BoundPrinter();
        queue = QueueOf(*printer.Get());
        queueSink = Watch(*queue.Get(), "queue");
    }

    void TearDown() override
    {
        jobSink.Close();
        queueSink.Close();
        job.Reset();
        queue.Reset();
        printer.Reset();
        JobClientTest::TearDown();
        ::LabelPrinterReset();
    }

    static void AddLabelPrinter(const wchar_t* name)
    {
        SpoolerPrinter label = LabelPrinter();
        label.printerName = name;
        label.shareName = L"";
        label.portName = L"NET1";
        label.startTime = label.untilTime = 0; // prints all day
        label.pace = SpoolerPace::Stepped;
        AddPrinter(label);
        ASSERT_EQ(SetUpLabelPrinter(name), 0u);
        SetDevice(L"verifier", L"yes", name);
    }

    static void SetDevice(const wchar_t* property, const wchar_t* value, const wchar_t* name = printerName)
    {
        EXPECT_EQ(::LabelPrinterSet(name, property, value), 0u) << property << " = " << value;
    }

    static void SetDriverPath(const std::wstring& path)
    {
        SpoolerDriver driver;
        driver.name = L"Label Driver";
        driver.driverPath = path.c_str();
        ASSERT_EQ(::SpoolerAddDriver(driver), 0u);
    }

    /// Queues a job of three labels and watches it.
    void QueueJob(std::string_view bytes = threeLabels)
    {
        jobId = AddJob(
            {.document = L"Pallet labels", .bytes = bytes.data(), .byteCount = static_cast<DWORD>(bytes.size())});
        job = OpenJob(jobId);
        jobSink = Watch(*job.Get(), "job");
        Heard();
    }

    static DWORD Step(DWORD steps = 1, const wchar_t* name = printerName)
    {
        DWORD done = 0;
        EXPECT_EQ(::SpoolerStep(name, steps, &done), 0u);
        return done;
    }

    /// Goes on step by step until nothing more can be printed; gives what was told.
    Lines Print()
    {
        Lines all;
        for (DWORD done = 1; done > 0;) {
            done = Step();
            for (std::string& line : Heard()) all.push_back(std::move(line));
        }
        return all;
    }

    /// Prints all labels of the job; gives what was told.
    Lines TakenLabels()
    {
        Lines all;
        while (LabelsPrinted() < 3) all = all + (Step() == 1 ? Heard() : Lines{"nothing to print"});
        return all;
    }

    /// Prints until the device has put out so many labels of the job.
    void PrintLabels(DWORD labels)
    {
        while (LabelsPrinted() < labels) ASSERT_EQ(Step(), 1u);
        Heard();
    }

    LabelPrinterJobRecord AtDevice() const
    {
        LabelPrinterJobRecord record{};
        ::LabelPrinterJob(printerName, jobId, &record);
        return record;
    }

    DWORD LabelsPrinted() const { return AtDevice().labelsPrinted; }
    LabelPrinterVerdict Verdict() const { return AtDevice().verdict; }

    /// Prints a job on the printer "Gate", watched by a client of its own; gives what that was told.
    static Lines PrintAtTheGate()
    {
        const auto gate = BoundPrinter(L"Gate");
        const auto gateQueue = QueueOf(*gate.Get());
        EventLog gateLog;
        const Connection sink = Connect(*gateQueue.Get(), EventSink::Create(gateLog, "gate").Get());
        const SpoolerJob pallet{.bytes = threeLabels.data(), .byteCount = static_cast<DWORD>(threeLabels.size())};
        EXPECT_EQ(::SpoolerAddJob(L"Gate", pallet, nullptr), 0u);
        EXPECT_TRUE(gateLog.WaitFor(1)) << "the job is not seen";
        Step(spoolerAllSteps, L"Gate");
        Lines told;
        const auto isFinal = [&] {
            told = told + gateLog.Take();
            return !told.empty() && told.back().find("OnJobFinalized") != std::string::npos;
        };
        EXPECT_TRUE(Eventually(isFinal));
        return told;
    }

    static void Command(DWORD id, DWORD command)
    {
        OHandle<::ClosePrinter> handle;
        ASSERT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), handle.Receive(), nullptr));
        EXPECT_TRUE(::SetJobW(handle.Get(), id, 0, nullptr, command));
    }

    std::wstring StatusText() { return Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text); }
    std::wstring JobStatusText() { return Text(*StatusOf(*job.Get()).Get(), &IPrintJobStatus::get_Text); }

    bool Has(HRESULT (STDMETHODCALLTYPE IPrinterStatus::*get)(VARIANT_BOOL*))
    {
        return Bool(*StatusOf(*printer.Get()).Get(), get) == VARIANT_TRUE;
    }

    ComPtr<IPrinter> printer;
    ComPtr<IPrintQueue> queue;
    ComPtr<IPrintJob> job;
    Connection queueSink;
    Connection jobSink;
};

// ---- the word of the device ----

TEST_F(DeviceVerdict, VerifiedJobIsSentPrintedAndCompleted)
{
    QueueJob();
    EXPECT_EQ(TakenLabels(),
              BothHear({"OnJobStarted(job 1)", "OnJobStatusChanged(job 1, status 'Printing')"}) +
                  BothHear({"OnJobTotalPagesChanged(job 1, 0, 3)", "OnJobPagesPrintedChanged(job 1, 0, 1)"}) +
                  BothHear({"OnJobPagesPrintedChanged(job 1, 1, 2)"}) +
                  BothHear({"OnJobPagesPrintedChanged(job 1, 2, 3)"}));
    EXPECT_EQ(Print(),
              BothHear({"OnJobSent(job 1)", "OnJobPrinted(job 1)", "OnJobCompleted(job 1)",
                        "OnJobStatusChanged(job 1, status 'Sent, Printed, Completed')", "OnJobFinalized(job 1)"}));
    EXPECT_EQ(JobStatusText(), L"Sent, Printed, Completed");
}

TEST_F(DeviceVerdict, CompletedJobIsNotSaidToBePrinted)
{
    SetDevice(L"verifier", L"no");
    QueueJob();
    TakenLabels();
    EXPECT_EQ(Print(), BothHear({"OnJobSent(job 1)", "OnJobCompleted(job 1)",
                                 "OnJobStatusChanged(job 1, status 'Sent, Completed')", "OnJobFinalized(job 1)"}));
}

TEST_F(DeviceVerdict, JobThatIsDeletedAtTheDeviceIsCancelled)
{
    QueueJob();
    PrintLabels(1);
    Command(jobId, JOB_CONTROL_DELETE);
    EXPECT_EQ(Print(), BothHear({"OnJobCancelled(job 1)", "OnJobStatusChanged(job 1, status 'Printing, Cancelled')",
                                 "OnJobFinalized(job 1)"}));
    EXPECT_EQ(Verdict(), LabelPrinterVerdict::Failed);
}

TEST_F(DeviceVerdict, DeviceIsBelievedWhenThePrinterIsNotBidirectional)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL);
    QueueJob();
    EXPECT_THAT(Print(), Contains("queue: OnJobPrinted(job 1)"));
}

TEST_F(DeviceVerdict, DeviceIsAskedOnceWhenTheJobLeaves)
{
    QueueJob();
    PrintLabels(3);
    const DWORD before = ::LabelPrinterRequests(printerName);
    Print();
    EXPECT_EQ(::LabelPrinterRequests(printerName), before + 1);
}

TEST_F(DeviceVerdict, RestartedJobIsPrintedAndVerifiedAgain)
{
    QueueJob();
    PrintLabels(2);
    Command(jobId, JOB_CONTROL_RESTART);
    EXPECT_THAT(Print(), AllOf(Contains("job: OnJobStarted(job 1)"), Contains("job: OnJobPrinted(job 1)"),
                               Not(Contains("job: OnJobCancelled(job 1)"))));
    EXPECT_EQ(::LabelPrinterGet(printerName, L"pages"), L"5");
}

// ---- no word ----

TEST_F(DeviceVerdict, WithoutAnAnswerTheSpoolersWordCounts)
{
    SetDevice(L"verifier", L"no");
    SetDevice(L"monitor", L"fails");
    QueueJob();
    TakenLabels();
    EXPECT_EQ(Print(),
              BothHear({"OnJobSent(job 1)", "OnJobPrinted(job 1)", "OnJobCompleted(job 1)",
                        "OnJobStatusChanged(job 1, status 'Sent, Printed, Completed')", "OnJobFinalized(job 1)"}))
        << "all pages are out, and the printer is bidirectional";
}

TEST_F(DeviceVerdict, WithoutAnAnswerAPlainPrinterIsNotSaidToHavePrinted)
{
    AddLabelPrinter(L"Gate");
    ::SpoolerSetPrinterAttributes(L"Gate", PRINTER_ATTRIBUTE_LOCAL);
    SetDevice(L"monitor", L"fails", L"Gate");
    EXPECT_THAT(PrintAtTheGate(),
                AllOf(Contains("gate: OnJobCompleted(job 1)"), Not(Contains("gate: OnJobPrinted(job 1)"))));
}

TEST_F(DeviceVerdict, WithoutAnAnswerAJobWithPagesLeftIsCancelled)
{
    SetDevice(L"monitor", L"fails");
    QueueJob();
    PrintLabels(1);
    Command(jobId, JOB_CONTROL_DELETE);
    EXPECT_EQ(Print(), BothHear({"OnJobCancelled(job 1)", "OnJobStatusChanged(job 1, status 'Printing, Cancelled')",
                                 "OnJobFinalized(job 1)"}));
}

TEST_F(DeviceVerdict, AnswerThatIsNoVerdictIsNoAnswer)
{
    QueueJob();
    PrintLabels(3);
    ::LabelPrinterSetJob(printerName, jobId, LabelPrinterVerdict::Printing);
    SetDevice(L"connection", L"disconnected"); // then the job can't end by itself
    Command(jobId, JOB_CONTROL_LAST_PAGE_EJECTED);
    SetDevice(L"connection", L"connected");
    ::LabelPrinterSetJob(printerName, jobId, LabelPrinterVerdict::Printing);
    EXPECT_THAT(Print(), AllOf(Contains("queue: OnJobSent(job 1)"), Contains("queue: OnJobCompleted(job 1)")));
}

TEST_F(DeviceVerdict, MonitorThatGoesAwayInMidJobLeavesItToTheSpooler)
{
    const TemporaryDirectory folder;
    const std::wstring monitor = folder.Path(L"kvnetmon.d64");
    ASSERT_TRUE(::CopyFileW((ProgramFolder() / L"kvnetmon.d64").c_str(), monitor.c_str(), TRUE));
    SetDriverPath(folder.Path(L"label.dll"));
    SetDevice(L"ribbon", L"8 labels");
    QueueJob();
    PrintLabels(1);
    EXPECT_EQ(StatusText(), L"Ribbon Low");
    ASSERT_TRUE(::DeleteFileW(monitor.c_str())) << "it is loaded only while it is asked";
    EXPECT_EQ(StatusText(), L"Printing, Toner Low");
    PrintLabels(3);
    EXPECT_THAT(Print(), AllOf(Contains("job: OnJobSent(job 1)"), Contains("job: OnJobCompleted(job 1)"),
                               Contains("job: OnJobFinalized(job 1)")));
}

TEST_F(DeviceVerdict, SlowMonitorHoldsUpTheWordAndNothingElse)
{
    SetDevice(L"monitor", L"slow 200");
    QueueJob();
    PrintLabels(3);
    EXPECT_EQ(Print(),
              BothHear({"OnJobSent(job 1)", "OnJobPrinted(job 1)", "OnJobCompleted(job 1)",
                        "OnJobStatusChanged(job 1, status 'Sent, Printed, Completed')", "OnJobFinalized(job 1)"}));
}

// ---- errors on the way ----

TEST_F(DeviceVerdict, RibbonThatRunsOutInMidJobIsAnErrorUntilTheJobIsCancelled)
{
    SetDevice(L"ribbon", L"2 labels");
    QueueJob();
    PrintLabels(2);
    EXPECT_TRUE(Has(&IPrinterStatus::get_RibbonOut));
    EXPECT_EQ(Print(), BothHear({"OnJobError(job 1, printer status)",
                                 "OnJobStatusChanged(job 1, status 'Printing, User Intervention Required')"}));
    EXPECT_EQ(JobStatusText(), L"Printing, User Intervention Required");
    EXPECT_TRUE(Has(&IPrinterStatus::get_Error));
    EXPECT_EQ(StatusText(), L"Ribbon Out");

    Command(jobId, JOB_CONTROL_DELETE);
    EXPECT_EQ(Heard(), BothHear({"OnJobError(job 1, printer status)"})); // it is being deleted
    EXPECT_EQ(Print(),
              BothHear({"OnJobCancelled(job 1)", "OnJobError(job 1, printer status)", "OnJobFinalized(job 1)"}));
    EXPECT_EQ(Verdict(), LabelPrinterVerdict::Failed);
}

TEST_F(DeviceVerdict, RibbonThatIsPutInAgainLetsTheJobGoOn)
{
    SetDevice(L"ribbon", L"2 labels");
    QueueJob();
    Print();
    SetDevice(L"ribbon", L"endless");
    EXPECT_THAT(Print(),
                AllOf(Contains("job: OnJobPagesPrintedChanged(job 1, 2, 3)"), Contains("job: OnJobPrinted(job 1)"),
                      Contains("job: OnJobStatusChanged(job 1, status 'Sent, Printed, Completed')")));
}

TEST_F(DeviceVerdict, DeviceThatCancelsWithoutRibbonTellsTheErrorFirst)
{
    SetDevice(L"ribbon", L"2 labels");
    SetDevice(L"on error", L"cancel");
    QueueJob();
    PrintLabels(2);
    EXPECT_EQ(Print(),
              BothHear({"OnJobError(job 1, printer status)",
                        "OnJobStatusChanged(job 1, status 'Printing, User Intervention Required')",
                        "OnJobError(job 1, printer status)"}) + // it is being deleted
                  BothHear({"OnJobCancelled(job 1)", "OnJobError(job 1, printer status)", "OnJobFinalized(job 1)"}));
    EXPECT_EQ(JobStatusText(), L"Printing, Cancelled, User Intervention Required");
}

TEST_F(DeviceVerdict, DeviceThatIsNotConnectedHoldsUpTheJob)
{
    SetDevice(L"connection", L"disconnected");
    QueueJob();
    Print();
    EXPECT_TRUE(Has(&IPrinterStatus::get_Offline));
    SetDevice(L"connection", L"connected");
    EXPECT_THAT(Print(), Contains("job: OnJobPrinted(job 1)"));
    EXPECT_FALSE(Has(&IPrinterStatus::get_Offline));
}

// ---- the printer's own status ----

TEST_F(DeviceVerdict, SpoolersStatusWordFollowsTheDevice)
{
    static constexpr struct {
        const wchar_t* property;
        const wchar_t* value;
        const wchar_t* repaired;
        HRESULT (STDMETHODCALLTYPE IPrinterStatus::*get)(VARIANT_BOOL*);
        const wchar_t* text;
    } rows[] = {
        {L"media",        L"out",  L"endless", &IPrinterStatus::get_PaperOut,                 L"Paper Out"                 },
        {L"jam",          L"yes",  L"no",      &IPrinterStatus::get_PaperJam,                 L"Paper Jam"                 },
        {L"ribbon",       L"out",  L"endless", &IPrinterStatus::get_NoToner,                  L"No Toner"                  },
        {L"ribbon",       L"5",    L"endless", &IPrinterStatus::get_TonerLow,                 L"Toner Low"                 },
        {L"door",         L"open", L"closed",  &IPrinterStatus::get_DoorOpen,                 L"Door Open"                 },
        {L"ribbon fault", L"yes",  L"no",      &IPrinterStatus::get_UserInterventionRequired, L"User Intervention Required"},
    };
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL); // then all is the spooler's
    const Connection sink = Watch(*printer.Get(), "printer");
    for (const auto& row : rows) {
        EXPECT_FALSE(Has(row.get)) << row.text;
        SetDevice(row.property, row.value);
        Step();
        EXPECT_THAT(Heard(), Contains("printer: OnStatusChanged(printer Label)")) << row.text;
        EXPECT_TRUE(Has(row.get)) << row.text;
        EXPECT_EQ(StatusText(), row.text);
        SetDevice(row.property, row.repaired);
        Step();
        Heard();
    }
}

// ---- several printers ----

TEST_F(DeviceVerdict, EachPrinterOfADeviceModuleHasItsOwnWord)
{
    AddLabelPrinter(L"Gate");
    SetDevice(L"ribbon", L"1", L"Gate");
    SetDevice(L"on error", L"cancel", L"Gate");
    QueueJob();
    PrintLabels(2);
    EXPECT_THAT(PrintAtTheGate(),
                AllOf(Contains("gate: OnJobCancelled(job 2)"), Not(Contains("gate: OnJobSent(job 2)"))));
    EXPECT_THAT(Print(), Contains("queue: OnJobPrinted(job 1)"));
    EXPECT_EQ(::LabelPrinterGet(printerName, L"pages"), L"3");
    EXPECT_EQ(::LabelPrinterGet(L"Gate", L"pages"), L"1");
}

} // namespace
