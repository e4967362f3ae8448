// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJob.h"

#include "support/AllocationFailure.h"
#include "support/ImportHook.h"
#include "support/com/EventSink.h"
#include "support/spooler/HeldCall.h"
#include "vrl/classes/JobTest.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PrintJobTest : public JobTest {
protected:
    void SetUp() override
    {
        JobTest::SetUp();
        job = OpenJob(jobId);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        job.Reset();
        JobTest::TearDown();
    }

    ComPtr<PrintJob> job;
};

// ---- properties ----

struct TextRow {
    const char* name;
    HRESULT (IPrintJob::*get)(BSTR*);
    const char* value;
};

const TextRow textRows[] = {
    {"PrinterName",    &IPrintJob::get_PrinterName,    "Label"   },
    {"Name",           &IPrintJob::get_Name,           "Pallet 7"},
    {"MachineName",    &IPrintJob::get_MachineName,    "\\\\DESK"},
    {"UserName",       &IPrintJob::get_UserName,       "Ida"     },
    {"DataType",       &IPrintJob::get_DataType,       "RAW"     },
    {"NotifyUser",     &IPrintJob::get_NotifyUser,     "Otto"    },
    {"PrintProcessor", &IPrintJob::get_PrintProcessor, "winprint"},
};

struct NumberRow {
    const char* name;
    HRESULT (IPrintJob::*get)(long*);
    long value;
};

const NumberRow numberRows[] = {
    {"JobId",        &IPrintJob::get_JobId,        1   },
    {"TotalPages",   &IPrintJob::get_TotalPages,   5   },
    {"PagesPrinted", &IPrintJob::get_PagesPrinted, 2   },
    {"Size",         &IPrintJob::get_Size,         4096},
};

TEST_F(PrintJobTest, TextsAreThoseOfTheRecordWithoutASpoolerCall)
{
    for (const TextRow& row : textRows) {
        OBstr text;
        EXPECT_EQ((job.Get()->*row.get)(text.Receive()), S_OK) << row.name;
        EXPECT_EQ(FromBstr(text.Get()), row.value) << row.name;
    }
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrintJobTest, NumbersAreThoseOfTheRecord)
{
    for (const NumberRow& row : numberRows) {
        long number = -1;
        EXPECT_EQ((job.Get()->*row.get)(&number), S_OK) << row.name;
        EXPECT_EQ(number, row.value) << row.name;
    }
}

TEST_F(PrintJobTest, NumbersAbove31BitsAreNegative)
{
    job = OpenJob(0xFFFFFFFE);
    long number = 0;
    EXPECT_EQ(job->get_JobId(&number), S_OK);
    EXPECT_EQ(number, -2);
}

TEST_F(PrintJobTest, SubmittedTimeIsInTheCallersZone)
{
    const SYSTEMTIME utc{2024, 2, 4, 29, 23, 59, 58, 0};
    SYSTEMTIME local{};
    DATE expected = 0;
    ASSERT_TRUE(::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local));
    ASSERT_TRUE(::SystemTimeToVariantTime(&local, &expected));
    DATE submitted = 0;
    EXPECT_EQ(job->get_SubmittedTime(&submitted), S_OK);
    EXPECT_EQ(submitted, expected);
}

TEST_F(PrintJobTest, SubmittedTimeThatCannotBeConvertedIsASystemError)
{
    DATE submitted = 0;
    {
        const ImportHook<decltype(::SystemTimeToTzSpecificLocalTime)> hook(
            "SystemTimeToTzSpecificLocalTime",
            [](const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*) -> BOOL {
                ::SetLastError(ERROR_INVALID_PARAMETER);
                return FALSE;
            });
        EXPECT_EQ(AnswerOf(job->get_SubmittedTime(&submitted)), SystemAnswer(ERROR_INVALID_PARAMETER));
    }
    const ImportHook<decltype(::SystemTimeToVariantTime)> hook("SystemTimeToVariantTime",
                                                               [](SYSTEMTIME*, DOUBLE*) -> INT {
                                                                   ::SetLastError(ERROR_INVALID_DATA);
                                                                   return FALSE;
                                                               });
    EXPECT_EQ(AnswerOf(job->get_SubmittedTime(&submitted)), SystemAnswer(ERROR_INVALID_DATA));
}

TEST_F(PrintJobTest, NullOutPointerIsAnInvalidArgument)
{
    for (const TextRow& row : textRows)
        EXPECT_EQ(AnswerOf((job.Get()->*row.get)(nullptr)), invalidArgument) << row.name;
    for (const NumberRow& row : numberRows)
        EXPECT_EQ(AnswerOf((job.Get()->*row.get)(nullptr)), invalidArgument) << row.name;
    EXPECT_EQ(AnswerOf(job->get_SubmittedTime(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(job->get_Status(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(job->get_Schedule(nullptr)), invalidArgument);
}

TEST_F(PrintJobTest, ObjectThatIsNotBoundSaysSoBeforeItLooksAtTheOutPointer)
{
    const auto unbound = Make<PrintJob>();
    for (const TextRow& row : textRows)
        EXPECT_EQ(AnswerOf((unbound.Get()->*row.get)(nullptr)), jobNotInitialized) << row.name;
    for (const NumberRow& row : numberRows)
        EXPECT_EQ(AnswerOf((unbound.Get()->*row.get)(nullptr)), jobNotInitialized) << row.name;
    EXPECT_EQ(AnswerOf(unbound->get_SubmittedTime(nullptr)), jobNotInitialized);
    EXPECT_EQ(AnswerOf(unbound->put_NotifyUser(nullptr)), jobNotInitialized);
}

TEST_F(PrintJobTest, UnknownJobHasANumberAndAPrinterOnly)
{
    const auto unknown = OpenJob(4711);
    long number = 0;
    EXPECT_EQ(unknown->get_JobId(&number), S_OK);
    EXPECT_EQ(number, 4711);
    for (const TextRow& row : textRows) {
        OBstr text;
        const bool known = std::string(row.name) == "PrinterName";
        EXPECT_EQ(AnswerOf((unknown.Get()->*row.get)(text.Receive())), known ? succeeded : invalidJob) << row.name;
    }
    EXPECT_EQ(AnswerOf(unknown->get_TotalPages(&number)), invalidJob);
    DATE submitted = 0;
    EXPECT_EQ(AnswerOf(unknown->get_SubmittedTime(&submitted)), invalidJob);
    EXPECT_EQ(AnswerOf(unknown->put_NotifyUser(ToBstr(OString("Eva")).Get())), invalidJob);
}

TEST_F(PrintJobTest, NotifyUserGoesToTheSpoolerAndComesBack)
{
    EXPECT_EQ(job->put_NotifyUser(ToBstr(OString("Eva")).Get()), S_OK);
    EXPECT_STREQ(PeekJob(jobId).pNotifyName, L"Eva");
    OBstr text;
    EXPECT_EQ(job->get_NotifyUser(text.Receive()), S_OK);
    EXPECT_EQ(FromBstr(text.Get()), "Eva");
}

TEST_F(PrintJobTest, NotifyUserThatTheSpoolerRefusesIsASystemError)
{
    FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerOf(job->put_NotifyUser(ToBstr(OString("Eva")).Get())), SystemAnswer(ERROR_ACCESS_DENIED));
}

// ---- control ----

struct CommandRow {
    const char* name;
    HRESULT (IPrintJob::*run)();
    DWORD command;
};

const CommandRow commandRows[] = {
    {"Cancel",  &IPrintJob::Cancel,  5},
    {"Pause",   &IPrintJob::Pause,   1},
    {"Resume",  &IPrintJob::Resume,  2},
    {"Restart", &IPrintJob::Restart, 4},
};

TEST_F(PrintJobTest, CommandsGoToTheSpoolerAndAlwaysSucceed)
{
    for (const CommandRow& row : commandRows) {
        ::SpoolerClearLog();
        FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
        EXPECT_EQ(AnswerOf((job.Get()->*row.run)()), succeeded) << row.name;
        ASSERT_EQ(::SpoolerLogLength(), 1u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].command, row.command) << row.name;
        EXPECT_EQ(SpoolerLog()[0].level, 0u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].jobId, jobId) << row.name;
    }
}

TEST_F(PrintJobTest, CommandsOnAnObjectThatIsNotBoundFailWithoutAText)
{
    const auto unbound = Make<PrintJob>();
    for (const CommandRow& row : commandRows) {
        EXPECT_EQ(AnswerOf((unbound.Get()->*row.run)()), (Answer{E_POINTER, ""})) << row.name;
    }
}

// ---- binding ----

TEST_F(JobTest, FirstJobOpensPrinterJobAndThreadInThisOrder)
{
    const auto job = OpenJob(jobId);
    std::vector<DWORD> masks;
    for (const SpoolerCallRecord& call : SpoolerLog()) {
        if (call.call == SpoolerCall::OpenPrinterW) masks.push_back(call.access);
    }
    EXPECT_THAT(masks, ElementsAre(0xF000Cu, 0xF000Cu, 8u));
    EXPECT_THAT(notices.Requests(), testing::SizeIs(1));
}

TEST_F(PrintJobTest, PrinterThatCannotBeOpenedLeavesTheObjectUnbound)
{
    EXPECT_EQ(AnswerOf(Initialize(*job.Get(), L"No such printer", jobId)), couldNotOpenPrinter);
    long number = 0;
    EXPECT_EQ(AnswerOf(job->get_JobId(&number)), jobNotInitialized);
    EXPECT_EQ(Initialize(*job.Get(), printerName, jobId), S_OK);
    EXPECT_EQ(AnswerOf(job->get_JobId(&number)), succeeded);
}

TEST_F(PrintJobTest, NullNameIsAnEmptyOne)
{
    EXPECT_EQ(AnswerOf(job->Initialize(nullptr, 1)), AnswerOf(job->Initialize(ToBstr(OString()).Get(), 1)));
}

TEST_F(PrintJobTest, JobThatCannotBeLoadedLeavesThePrinterBound)
{
    const DWORD second = AddJob(QueuedJob());
    ::SpoolerClearLog();
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerOf(Initialize(*job.Get(), printerName, second)), couldNotOpenPrinter);
    long number = 0;
    EXPECT_EQ(AnswerOf(job->get_JobId(&number)), jobNotInitialized);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    ::SpoolerClearLog();
    EXPECT_EQ(Initialize(*job.Get(), printerName, second), S_OK);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u) << "only the job is loaded";
}

TEST_F(PrintJobTest, OtherJobOfTheSamePrinterKeepsThePrinterAndItsThread)
{
    SpoolerJob other = QueuedJob();
    other.document = L"Pallet 8";
    const DWORD second = AddJob(other);
    EXPECT_EQ(Initialize(*job.Get(), L"lAbEl", second), S_OK);
    OBstr name;
    EXPECT_EQ(job->get_Name(name.Receive()), S_OK);
    EXPECT_EQ(FromBstr(name.Get()), "Pallet 8");
    EXPECT_EQ(job->get_PrinterName(name.Receive()), S_OK);
    EXPECT_EQ(FromBstr(name.Get()), "Label");
    EXPECT_THAT(notices.Requests(), testing::SizeIs(1));
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrintJobTest, OtherPrinterGivesTheOldOneBack)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    EXPECT_EQ(Initialize(*job.Get(), L"Other", 1), S_OK);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    OBstr name;
    EXPECT_EQ(job->get_PrinterName(name.Receive()), S_OK);
    EXPECT_EQ(FromBstr(name.Get()), "Other");
}

TEST_F(PrintJobTest, BoundJobHoldsThreeCountsOnItsPrinter)
{
    XPrinter* const shared = XPrinterPool::Acquire(OString("Label"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(XPrinterPool::GetCount(), 1) << i;
        XPrinterPool::Release(shared);
    }
    EXPECT_EQ(XPrinterPool::GetCount(), 1); // three of four are gone
    for (int i = 0; i < 2; ++i) XPrinterPool::Acquire(OString("Label"));
}

TEST_F(PrintJobTest, BindingWithoutMemoryFailsAndCanBeTriedAgain)
{
    const auto fresh = Make<PrintJob>();
    const OBstr name = ToBstr(OString(printerName));
    int allowed = 0;
    HRESULT result = E_FAIL;
    while (result != S_OK) {
        const AllocationFailure noMemory(allowed++);
        result = fresh->Initialize(name.Get(), static_cast<long>(jobId));
        if (!AllocationFailure::Happened()) break;
        EXPECT_TRUE(FAILED(result)) << allowed;
    }
    EXPECT_EQ(result, S_OK);
    EXPECT_GT(allowed, 3);
}

// ---- children ----

TEST_F(JobTest, ChildrenOfAJobThatIsNotBoundSayThatThemselves)
{
    const auto unbound = Make<PrintJob>();
    ComPtr<IPrintJobStatus> status;
    ASSERT_EQ(unbound->get_Status(&status), S_OK);
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(AnswerOf(status->get_Paused(&value)), jobStatusNotInitialized);
    ComPtr<IPrintJobSchedule> schedule;
    ASSERT_EQ(unbound->get_Schedule(&schedule), S_OK);
    long priority = 0;
    EXPECT_EQ(AnswerOf(schedule->get_Priority(&priority)), jobScheduleNotInitialized);
}

TEST_F(PrintJobTest, ChildrenOutliveTheJobObject)
{
    ComPtr<IPrintJobStatus> status;
    ComPtr<IPrintJobSchedule> schedule;
    ASSERT_EQ(job->get_Status(&status), S_OK);
    ASSERT_EQ(job->get_Schedule(&schedule), S_OK);
    job.Reset();
    OBstr text;
    EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
    EXPECT_EQ(FromBstr(text.Get()), "Waiting");
    long priority = 0;
    EXPECT_EQ(schedule->get_Priority(&priority), S_OK);
    EXPECT_EQ(priority, 9);
}

TEST_F(JobTest, CreationWithoutMemoryFailsAndLeavesNothing)
{
    const long before = LiveAllocations();
    HRESULT result = E_FAIL;
    for (int allowed = 0; result != S_OK; ++allowed) {
        ComPtr<PrintJob> made;
        {
            const AllocationFailure noMemory(allowed);
            result = CreateInstance(made.GetAddressOf());
        }
        if (result != S_OK) {
            EXPECT_EQ(result, E_OUTOFMEMORY) << allowed;
            EXPECT_EQ(made.Get(), nullptr);
        }
    }
    AnswerOf(S_OK); // the error information goes
    EXPECT_EQ(LiveAllocations(), before);
}

// ---- events ----

class PrintJobEventsTest : public PrintJobTest {
protected:
    static Connection Connect(PrintJob& source, IUnknown* sink)
    {
        return Connection(static_cast<IPrintJob*>(&source), __uuidof(_IPrintJobEvents), sink);
    }
    Connection Watch(PrintJob& source, const char* name) { return Connect(source, EventSink::Create(log, name).Get()); }

    std::vector<std::string> Tell(DWORD id, DWORD status)
    {
        TellStatus(id, status);
        return log.Take();
    }

    EventLog log;
};

TEST_F(PrintJobEventsTest, ObjectThatIsNotBoundTakesNoSink)
{
    const auto unbound = Make<PrintJob>();
    EXPECT_EQ(Watch(*unbound.Get(), "job").Result(), E_POINTER);
    EXPECT_EQ(EventSink::Living(), 0);
}

TEST_F(PrintJobEventsTest, SecondSinkIsToldTooAndTheLastDisconnectEndsIt)
{
    Connection first = Watch(*job.Get(), "first");
    Connection second = Watch(*job.Get(), "second");
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART),
                ElementsAre("first: OnJobStarted(job 1)", "second: OnJobStarted(job 1)"));
    first.Close();
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART), ElementsAre("second: OnJobStarted(job 1)"));
    second.Close();
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART), IsEmpty());
}

TEST_F(PrintJobEventsTest, ObjectIsListedFromItsFirstSinkToItsLast)
{
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString(printerName));
    const XJobRef record = XJobRef::Acquire(*xPrinter, jobId);
    EXPECT_FALSE(record->HasJobReferences());
    Connection first = Watch(*job.Get(), "first");
    Connection second = Watch(*job.Get(), "second");
    first.Close();
    EXPECT_TRUE(record->HasJobReferences());
    second.Close();
    EXPECT_FALSE(record->HasJobReferences());
}

TEST_F(PrintJobEventsTest, BindingToTheSameJobAgainKeepsTheSinks)
{
    const Connection sink = Watch(*job.Get(), "job");
    EXPECT_EQ(Initialize(*job.Get(), printerName, jobId), S_OK);
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART), ElementsAre("job: OnJobStarted(job 1)"));
}

TEST_F(PrintJobEventsTest, BindingToAnotherJobDoesNotCarryTheSinksOver)
{
    const DWORD second = AddJob(QueuedJob());
    Connection sink = Watch(*job.Get(), "job");
    EXPECT_EQ(Initialize(*job.Get(), printerName, second), S_OK);
    EXPECT_THAT(Tell(second, JOB_STATUS_RESTART), IsEmpty());
    sink.Close();
    sink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell(second, JOB_STATUS_RESTART), ElementsAre("job: OnJobStarted(job 2)"));
}

TEST_F(PrintJobEventsTest, ObjectThatWasBoundAgainWithASinkConnectedMayDie)
{
    const DWORD second = AddJob(QueuedJob());
    Connection sink = Watch(*job.Get(), "job");
    EXPECT_EQ(Initialize(*job.Get(), printerName, second), S_OK);
    sink.Forget();
    const auto other = OpenJob(jobId); // keeps the thread and the old record
    job.Reset();
    EXPECT_EQ(EventSink::Living(), 0);
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART), IsEmpty());
}

TEST_F(PrintJobEventsTest, FailedBindingWithASinkConnectedLeavesNoTrace)
{
    Connection sink = Watch(*job.Get(), "job");
    EXPECT_EQ(AnswerOf(Initialize(*job.Get(), L"No such printer", 1)), couldNotOpenPrinter);
    sink.Forget();
    const auto other = OpenJob(jobId);
    job.Reset();
    EXPECT_THAT(Tell(jobId, JOB_STATUS_RESTART), IsEmpty());
}

TEST_F(PrintJobEventsTest, ReleaseOfAnObjectWithoutSinksWaitsForNobody)
{
    const auto listening = OpenJob(jobId);
    OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const auto sink = EventSink::Create(log, "job");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        job.Reset(); // on the thread that holds the lock of the job's list
        ::SetEvent(entered.Get());
        return S_OK;
    };
    const Connection connection = Connect(*listening.Get(), sink.Get());
    Tell(jobId, JOB_STATUS_RESTART);
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), 0), WAIT_OBJECT_0);
}

} // namespace
