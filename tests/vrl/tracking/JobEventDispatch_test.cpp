// SPDX-License-Identifier: MIT
#include "vrl/tracking/JobEventDispatch.h"

#include "support/CapturedTrace.h"
#include "support/ForeignThrow.h"
#include "support/driver/AdvancedPrinterTest.h"
#include "vrl/tracking/TrackingTest.h"
#include "vrl/core/JobEventID.h"

#include <algorithm>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD paused = JOB_STATUS_PAUSED;
constexpr DWORD spooling = JOB_STATUS_SPOOLING;
constexpr DWORD printing = JOB_STATUS_PRINTING;
constexpr DWORD complete = JOB_STATUS_COMPLETE;
constexpr DWORD deleted = JOB_STATUS_DELETED;
constexpr DWORD restart = JOB_STATUS_RESTART;

// ---- the life of a job, as seen by sinks ----

/// What the device or the printer has to say about a job that left the queue.
enum class Witness { Silent, SilentOneWay, Completed, Verified, Failed };

struct LifeRow {
    const char* name;
    std::vector<DWORD> before; ///< statuses that came earlier
    DWORD status;
    std::vector<int> events; ///< JobEventID
    const char* text = "";   ///< the status text that OnJobStatusChanged comes with
    Witness witness = Witness::Silent;
    bool whole = true; ///< all pages are printed
};

// clang-format off
const LifeRow lifeRows[] = {
    {"Spooling",                        {},                     spooling,            {}},
    {"Waiting",                         {},                     0,                   {}},
    {"NothingAfterPrinting",            {printing},             0,                   {}},
    {"Paused",                          {},                     paused,              {2, 10},       "Paused"},
    {"PausedAgain",                     {paused},               paused,              {2}},
    {"PausedWhilePrinting",             {printing},             paused | printing,   {2, 10},       "Paused"},
    {"PrintingStarts",                  {},                     printing,            {1, 10},       "Printing"},
    {"PrintingStartsWhileSpooling",     {spooling},             spooling | printing, {1, 10},       "Spooling, Printing"},
    {"PrintingStartsOnceMore",          {printing, 0},          printing,            {1, 10},       "Printing"},
    {"PrintingResumes",                 {paused},               printing,            {3, 10},       "Printing"},
    {"PrintingAfterStarted",            {restart},              printing,            {10},          "Printing"},
    {"PrintingAfterPrinting",           {printing, printing},   spooling | printing, {}},
    {"PrintingAfterStartedSameText",    {printing},             printing,            {}},
    {"PrintingAfterResumed",            {paused, printing},     spooling | printing, {10},          "Spooling, Printing"},
    {"PrintingAfterResumedSameText",    {paused, printing},     printing,            {}},
    {"PrintingAfterSentToDevice",       {complete},             printing,            {10},          "Printing"},
    {"PrintingAfterError",              {JOB_STATUS_ERROR},     printing,            {10},          "Printing"},
    {"SentToDevice",                    {printing},             complete,            {}},
    {"Restarted",                       {},                     restart,             {1}},
    {"RestartedAndPaused",              {printing},             restart | paused,    {1, 2, 10},    "Paused"},
    {"RestartedAndPrinting",            {paused},               restart | printing,  {1, 10},       "Printing"},
    {"RestartedAfterTheEnd",            {deleted},              restart | printing,  {1, 10},       "Printing"},
    {"DeviceCompleted",                 {printing},             deleted,             {5, 7, 10, 9}, "Sent, Completed",             Witness::Completed, false},
    {"DeviceVerified",                  {printing},             deleted,             {5, 6, 7, 10, 9}, "Sent, Printed, Completed", Witness::Verified,  false},
    {"DeviceFailed",                    {complete},             deleted,             {4, 10, 9},    "Cancelled",                   Witness::Failed},
    {"SentIncomplete",                  {complete},             deleted,             {5, 4, 10, 9}, "Sent, Cancelled",             Witness::Silent,    false},
    {"SentWholeOnABidirectionalPrinter", {complete},            deleted,             {5, 6, 7, 10, 9}, "Sent, Printed, Completed", Witness::Silent},
    {"SentWholeOnAnotherPrinter",       {complete},             deleted,             {5, 7, 10, 9}, "Sent, Completed",             Witness::SilentOneWay},
    {"UnsentIncomplete",                {printing},             deleted,             {4, 10, 9},    "Cancelled",                   Witness::Silent,    false},
    {"UnsentWhole",                     {printing},             deleted,             {5, 7, 10, 9}, "Sent, Completed",             Witness::Silent},
    {"UnsentWholeAfterARestart",        {complete, restart},    deleted,             {5, 7, 10, 9}, "Sent, Completed",             Witness::Silent},
    {"Error",                           {printing},             JOB_STATUS_ERROR,    {8, 10},       "User Intervention Required"},
    {"PaperOut",                        {},                     JOB_STATUS_PAPEROUT, {8, 10},       "User Intervention Required"},
    {"UserIntervention",                {}, JOB_STATUS_USER_INTERVENTION,            {8, 10},       "User Intervention Required"},
    {"ErrorAgain",                      {JOB_STATUS_ERROR},     JOB_STATUS_ERROR,    {8}},
    {"ErrorWhilePaused",                {}, paused | JOB_STATUS_ERROR,               {2, 8, 10},    "Paused, User Intervention Required"},
    {"ErrorAtTheEnd",                   {printing}, deleted | JOB_STATUS_ERROR,      {4, 8, 10, 9}, "Cancelled, User Intervention Required", Witness::Silent},
    {"ErrorAtTheVerifiedEnd",           {printing}, deleted | JOB_STATUS_ERROR,      {5, 6, 7, 8, 10, 9}, "Sent, Printed, Completed, User Intervention Required", Witness::Verified},
    {"PrintingAfterTheEnd",             {deleted},              printing,            {}},
    {"DeletedAfterTheEnd",              {deleted},              deleted,             {}},
    {"ErrorAfterTheEnd",                {deleted},              JOB_STATUS_ERROR,    {}},
};
// clang-format on

class JobLife : public TrackingTestOn<AdvancedPrinterTest>, public testing::WithParamInterface<LifeRow> {
protected:
    void SetWitness(Witness witness)
    {
        static constexpr std::string_view answers[] = {"", "", "status=\"completed\"", "status=\"verified\"",
                                                       "status=\"failed\""};
        monitor.AnswerWith(answers[static_cast<size_t>(witness)]);
        SetBidirectional(witness != Witness::SilentOneWay);
    }

    Lines Expected(const std::string& sink, DWORD jobId) const
    {
        Lines lines;
        const std::string job = "(job " + std::to_string(jobId);
        for (const int event : GetParam().events) {
            std::string line = sink + ": " + JobEventName(event) + job;
            if (event == JobEventID_OnJobError) line += ", printer status";
            if (event == JobEventID_OnJobStatusChanged) line += std::string(", status '") + GetParam().text + "'";
            lines.push_back(line + ")");
        }
        return lines;
    }
};

/// The device can't be asked, since the spooler doesn't know the driver.
class JobLifeWithoutADriver : public TrackingTestOn<AdvancedPrinterTest> {
protected:
    void SetUp() override
    {
        TrackingTestOn<AdvancedPrinterTest>::SetUp();
        ASSERT_EQ(::SpoolerRemoveDriver(L"Label Driver"), 0u);
    }
};

TEST_P(JobLife, IsToldToJobSinksThenToQueueSinks)
{
    const LifeRow& row = GetParam();
    SpoolerJob queued;
    queued.totalPages = 3;
    queued.pagesPrinted = row.whole ? 3 : 2;
    const DWORD jobId = AddJob(queued);
    SetWitness(row.witness);

    const auto printer = OpenPrinter();
    const auto queue = QueueOf(*printer.Get());
    const auto job = OpenJob(jobId);
    const Connection queueSink = Watch(*queue.Get(), "queue");
    const Connection jobSink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job " + std::to_string(jobId) + ")"));
    for (const DWORD status : row.before) Tell({Status(jobId, status)});

    Lines expected = Expected("job", jobId);
    std::ranges::copy(Expected("queue", jobId), std::back_inserter(expected));
    EXPECT_EQ(Tell({Status(jobId, row.status)}), expected);
}

INSTANTIATE_TEST_SUITE_P(Row, JobLife, testing::ValuesIn(lifeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(JobLifeWithoutADriver, CostsTheBatchInWhichTheJobLeaves)
{
    const DWORD jobId = AddJob({});
    const auto job = OpenJob(jobId);
    const Connection sink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell({Status(jobId, paused), Status(jobId, deleted)}), IsEmpty());
    EXPECT_THAT(Tell({Status(jobId, printing)}), ElementsAre("job: OnJobResumed(job 1)", testing::_));
}

struct NumberRow {
    const char* name;
    WORD field;
    DWORD before; ///< as the job was loaded
};

const NumberRow numberRows[] = {
    {"OnJobTotalPagesChanged",   JOB_NOTIFY_FIELD_TOTAL_PAGES,   8},
    {"OnJobPagesPrintedChanged", JOB_NOTIFY_FIELD_PAGES_PRINTED, 5},
    {"OnJobPriorityChanged",     JOB_NOTIFY_FIELD_PRIORITY,      9},
    {"OnJobPositionChanged",     JOB_NOTIFY_FIELD_POSITION,      0},
};

class JobNumbers : public TrackingTest, public testing::WithParamInterface<NumberRow> {};

TEST_P(JobNumbers, AreToldWithTheOldAndTheNewWhateverTheStateIs)
{
    const NumberRow& row = GetParam();
    SpoolerJob queued;
    queued.totalPages = 8;
    queued.pagesPrinted = 5;
    queued.priority = 9;
    const DWORD jobId = AddJob(queued);
    const auto printer = OpenPrinter();
    const auto job = OpenJob(jobId);
    const Connection queueSink = Watch(*QueueOf(*printer.Get()).Get(), "queue");
    const Connection jobSink = Watch(*job.Get(), "job");
    const auto told = [&](const char* arguments) {
        const std::string event =
            std::string(": ") + row.name + "(job " + std::to_string(jobId) + ", " + arguments + ")";
        return Lines{"job" + event, "queue" + event};
    };
    const std::string first = std::to_string(row.before) + ", 6";
    EXPECT_EQ(Tell({ScriptedEntry::Job(jobId, row.field, 6)}), told(first.c_str()));
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, row.field, 6)}), IsEmpty());
    Tell({Status(jobId, deleted)});
    EXPECT_EQ(Tell({ScriptedEntry::Job(jobId, row.field, 7)}), told("6, 7"));
}

INSTANTIATE_TEST_SUITE_P(Row, JobNumbers, testing::ValuesIn(numberRows),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- who is told what, and with which objects ----

class JobEventDispatchTest : public OpenPrinterTest {
protected:
    /// The object argument of that place among those of each call of the sink.
    struct Objects {
        std::vector<ComPtr<IUnknown>> seen;
        HRESULT operator()(DISPID, const DISPPARAMS* parameters)
        {
            ComPtr<IUnknown> object;
            if (place < parameters->cArgs) {
                const VARIANT& argument = parameters->rgvarg[parameters->cArgs - 1 - place];
                if (argument.vt == VT_DISPATCH && argument.pdispVal) {
                    argument.pdispVal->QueryInterface(IID_PPV_ARGS(&object));
                }
            }
            seen.push_back(object);
            return S_OK;
        }
        UINT place = 0;
    };

    /// A sink that keeps the objects that it gets.
    ComPtr<EventSink> KeepingSink(std::string name, Objects& objects)
    {
        auto sink = EventSink::Create(log, std::move(name));
        sink->onInvoke = std::ref(objects);
        return sink;
    }

    static ComPtr<IUnknown> IdentityOf(PrintJob& job)
    {
        ComPtr<IUnknown> identity;
        job.QueryInterface(IID_PPV_ARGS(&identity));
        return identity;
    }
};

TEST_F(JobEventDispatchTest, AllJobSinksOfABatchAreToldBeforeAnyQueueSink)
{
    const auto job = OpenJob(jobId);
    const Connection queueSink = Watch(*queue.Get(), "queue");
    const Connection jobSink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell({
                    PRINTER_CHANGE_ADD_JOB | PRINTER_CHANGE_SET_JOB,
                    {Status(jobId, printing), ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PRIORITY, 50)}
    }),
                ElementsAre("job: OnJobStarted(job 1)", "job: OnJobStatusChanged(job 1, status 'Printing')",
                            "job: OnJobPriorityChanged(job 1, 7, 50)", "queue: OnJobNew(job 1)",
                            "queue: OnJobStarted(job 1)", "queue: OnJobStatusChanged(job 1, status 'Printing')",
                            "queue: OnJobPriorityChanged(job 1, 7, 50)"));
}

TEST_F(JobEventDispatchTest, EachJobObjectFiresWithItself)
{
    const auto first = OpenJob(jobId);
    const auto second = OpenJob(jobId);
    Objects ofFirst;
    Objects ofSecond;
    const Connection firstSink = Connect(*first.Get(), KeepingSink("first", ofFirst).Get());
    const Connection secondSink = Connect(*second.Get(), KeepingSink("second", ofSecond).Get());
    EXPECT_THAT(Tell({Status(jobId, printing)}),
                ElementsAre("first: OnJobStarted(job 1)", "second: OnJobStarted(job 1)",
                            "first: OnJobStatusChanged(job 1, status 'Printing')",
                            "second: OnJobStatusChanged(job 1, status 'Printing')"));
    for (const auto& object : ofFirst.seen) EXPECT_EQ(object.Get(), IdentityOf(*first.Get()).Get());
    for (const auto& object : ofSecond.seen) EXPECT_EQ(object.Get(), IdentityOf(*second.Get()).Get());
}

TEST_F(JobEventDispatchTest, ChangeOfStatusComesWithTheStatusOfTheObjectThatFires)
{
    const auto statusOf = [](PrintJob& job) {
        ComPtr<IPrintJobStatus> status;
        EXPECT_EQ(job.get_Status(&status), S_OK);
        ComPtr<IUnknown> identity;
        status.As(&identity);
        return identity;
    };
    const auto first = OpenJob(jobId);
    const auto second = OpenJob(jobId);
    Objects ofFirst;
    Objects ofSecond;
    ofFirst.place = 1;
    ofSecond.place = 1;
    const Connection firstSink = Connect(*first.Get(), KeepingSink("first", ofFirst).Get());
    const Connection secondSink = Connect(*second.Get(), KeepingSink("second", ofSecond).Get());
    Tell({Status(jobId, printing)});
    ASSERT_EQ(ofFirst.seen.size(), 2u);
    ASSERT_EQ(ofSecond.seen.size(), 2u);
    EXPECT_EQ(ofFirst.seen[0].Get(), nullptr); // of OnJobStarted
    EXPECT_EQ(ofFirst.seen[1].Get(), statusOf(*first.Get()).Get());
    EXPECT_EQ(ofSecond.seen[1].Get(), statusOf(*second.Get()).Get());
}

TEST_F(JobEventDispatchTest, QueueSinksGetOneJobObjectUntilTheJobIsFinal)
{
    Objects jobs;
    const Connection sink = Connect(*queue.Get(), KeepingSink("queue", jobs).Get());
    Tell(NewJob(jobId));
    Tell({Status(jobId, printing)});
    Tell({Status(jobId, paused)});
    Tell({Status(jobId, deleted)});
    ASSERT_GT(jobs.seen.size(), 5u);
    for (const auto& object : jobs.seen) EXPECT_EQ(object.Get(), jobs.seen.front().Get());

    const size_t before = jobs.seen.size();
    Tell({Status(jobId, restart)});
    ASSERT_EQ(jobs.seen.size(), before + 1);
    EXPECT_NE(jobs.seen.back().Get(), jobs.seen.front().Get());
}

TEST_F(JobEventDispatchTest, StatusForQueueSinksComesFromAPassingObject)
{
    Objects jobs;
    const Connection sink = Connect(*queue.Get(), KeepingSink("queue", jobs).Get());
    Objects statuses;
    statuses.place = 1;
    const Connection another = Connect(*queue.Get(), KeepingSink("other", statuses).Get());
    Tell(NewJob(jobId));
    Tell({Status(jobId, printing)});
    ComPtr<IPrintJob> job;
    jobs.seen.back().As(&job);
    ComPtr<IPrintJobStatus> ofJob;
    job->get_Status(&ofJob);
    ComPtr<IUnknown> identity;
    ofJob.As(&identity);
    EXPECT_NE(statuses.seen.back().Get(), identity.Get());
    EXPECT_NE(statuses.seen.back().Get(), nullptr);
}

TEST_F(JobEventDispatchTest, ErrorHasOneStatusObjectForBothLevels)
{
    const auto job = OpenJob(jobId);
    Objects ofJob;
    Objects ofQueue;
    ofJob.place = 1;
    ofQueue.place = 1;
    const Connection jobSink = Connect(*job.Get(), KeepingSink("job", ofJob).Get());
    const Connection queueSink = Connect(*queue.Get(), KeepingSink("queue", ofQueue).Get());
    EXPECT_THAT(
        Tell({Status(jobId, JOB_STATUS_ERROR)}),
        testing::IsSupersetOf({"job: OnJobError(job 1, printer status)", "queue: OnJobError(job 1, printer status)"}));
    ASSERT_FALSE(ofJob.seen.empty());
    EXPECT_NE(ofJob.seen.front().Get(), nullptr);
    EXPECT_EQ(ofJob.seen.front().Get(), ofQueue.seen.front().Get());
}

TEST_F(JobEventDispatchTest, ErrorHasAStatusObjectThatIsBoundToThePrinter)
{
    Objects statuses;
    statuses.place = 1;
    const Connection sink = Connect(*queue.Get(), KeepingSink("queue", statuses).Get());
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_JAM);
    Tell({Status(jobId, JOB_STATUS_ERROR)});
    ComPtr<IPrinterStatus> status;
    statuses.seen.front().As(&status);
    ASSERT_TRUE(status);
    OBstr text;
    EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
    EXPECT_EQ(FromBstr(text.Get()), "Paper Jam");
}

TEST_F(JobEventDispatchTest, EveryQueueGetsTheSameArguments)
{
    const auto other = OpenPrinter();
    const Connection first = Watch(*queue.Get(), "first");
    const Connection second = Watch(*QueueOf(*other.Get()).Get(), "second");
    EXPECT_THAT(Tell({Status(jobId, paused)}), ElementsAre("first: OnJobPaused(job 1)", "second: OnJobPaused(job 1)",
                                                           "first: OnJobStatusChanged(job 1, status 'Paused')",
                                                           "second: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(JobEventDispatchTest, EverySinkOfAnObjectIsToldInTheOrderOfConnecting)
{
    const Connection first = Watch(*queue.Get(), "first");
    const Connection second = Watch(*queue.Get(), "second");
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("first: OnJobNew(job 1)", "second: OnJobNew(job 1)"));
}

TEST_F(JobEventDispatchTest, OtherJobsSinksHearNothing)
{
    const DWORD other = AddJob({});
    const auto job = OpenJob(jobId);
    const Connection sink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell({Status(other, printing)}), IsEmpty());
}

TEST_F(JobEventDispatchTest, EventsAreTracedAtBothLevels)
{
    const auto job = OpenJob(jobId);
    const Connection jobSink = Watch(*job.Get(), "job");
    const Connection queueSink = Watch(*queue.Get(), "queue");
    Tell(NewJob(jobId));
    const CapturedTrace trace;
    Tell({Status(jobId, paused | JOB_STATUS_ERROR)});
    Tell({Status(jobId, deleted)});
    EXPECT_THAT(trace.Lines("HandlePrintJobEvents"),
                ElementsAre("HandlePrintJobEvents \tjobID = 1 \tFiring EventID:2\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring JobEventID_OnJobError\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring JobEventID_OnJobStatusChanged\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring EventID:5\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring EventID:7\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring JobEventID_OnJobStatusChanged\n",
                            "HandlePrintJobEvents \tjobID = 1 \tFiring EventID:9\n"));
    EXPECT_THAT(trace.Lines("HandlePrintQueueEvents"),
                ElementsAre("HandlePrintQueueEvents \tjobID = 1 \tFiring EventID:2\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tFiring JobEventID_OnJobError\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tFiring JobEventID_OnJobStatusChanged\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tFiring EventID:5\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tFiring EventID:7\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tFiring JobEventID_OnJobStatusChanged\n",
                            "HandlePrintQueueEvents \tjobID = 1 \tJobEventID_OnJobFinalized\n"));
}

// ---- jobs that queue sinks have not heard of ----

TEST_F(JobEventDispatchTest, QueueSinkThatComesLateHearsOfARunningJobFromItsNextEventOn)
{
    const auto job = OpenJob(jobId); // so that the thread runs
    EXPECT_THAT(Tell(NewJob(jobId)), IsEmpty());
    Tell({Status(jobId, printing)});
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell({Status(jobId, paused)}),
                ElementsAre("queue: OnJobPaused(job 1)", "queue: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(JobEventDispatchTest, ChangeOfStatusOfAnUnknownJobIsNotToldToQueueSinks)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Tell({Status(jobId, complete)});
    const CapturedTrace trace;
    EXPECT_THAT(Tell({Status(jobId, printing)}), IsEmpty()); // a change alone
    EXPECT_THAT(trace.Lines("HandlePrintQueueEvents"),
                ElementsAre("HandlePrintQueueEvents \tjobID = 1 \tFiring JobEventID_OnJobStatusChanged\n"));
}

/// Each release of a record reads the ticks once.
TEST_F(JobEventDispatchTest, ChangeOfStatusOfAnUnknownJobMakesAPassingJobAllTheSame)
{
    constexpr int ofParserAndJobLevel = 2;
    constexpr int ofJobStatusAndSchedule = 3;
    const Connection sink = Watch(*queue.Get(), "queue");
    Tell({Status(jobId, complete)});
    static std::atomic<int> releases;
    releases = 0;
    SetTickCountSource([] {
        ++releases;
        return tick.load();
    });
    Tell({Status(jobId, printing)});
    SetTickCountSource([] { return tick.load(); });
    EXPECT_EQ(releases, ofParserAndJobLevel + ofJobStatusAndSchedule);
}

TEST_F(JobEventDispatchTest, JobThatEndsWhileNobodyListensIsNotNewLater)
{
    {
        const Connection sink = Watch(*queue.Get(), "queue");
        EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
    }
    Tell({Status(jobId, deleted)});
    const Connection sink = Watch(*queue.Get(), "queue");
    EXPECT_THAT(Tell(NewJob(jobId)), IsEmpty());
}

TEST_F(JobEventDispatchTest, JobThatIsFinalIsNewWhenItsNumberIsUsedAgain)
{
    const Connection sink = Watch(*queue.Get(), "queue");
    Tell(NewJob(jobId));
    Tell({Status(jobId, deleted)});
    EXPECT_THAT(Tell(NewJob(jobId)), ElementsAre("queue: OnJobNew(job 1)"));
}

TEST_F(JobEventDispatchTest, JobThatNeverEndsKeepsItsPrinterOpen)
{
    {
        const Connection sink = Watch(*queue.Get(), "queue");
        Tell(NewJob(jobId));
    }
    queue.Reset();
    printer.Reset();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    printer = OpenPrinter();
    const Connection sink = Watch(*QueueOf(*printer.Get()).Get(), "queue");
    Tell({Status(jobId, deleted)});
}

// ---- sinks that make trouble ----

TEST_F(JobEventDispatchTest, FailingSinkDisturbsNobody)
{
    for (const HRESULT failure : {DISP_E_MEMBERNOTFOUND, E_FAIL, RPC_E_DISCONNECTED}) {
        const auto failing = EventSink::Create(log, "failing");
        failing->onInvoke = [=](DISPID, DISPPARAMS*) { return failure; };
        const Connection first = Connect(*queue.Get(), failing.Get());
        const Connection second = Watch(*queue.Get(), "second");
        for (int i = 0; i < 2; ++i) {
            EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_POSITION, ++tick)}),
                        ElementsAre(testing::StartsWith("failing: OnJobPositionChanged"),
                                    testing::StartsWith("second: OnJobPositionChanged")));
        }
    }
}

class RaisingClientSink : public JobEventDispatchTest, public testing::WithParamInterface<int> {};

TEST_P(RaisingClientSink, DisturbsNobody)
{
    const auto raising = EventSink::Create(log, "raising");
    raising->onInvoke = [kind = GetParam()](DISPID, DISPPARAMS*) -> HRESULT {
        switch (kind) {
        case 0:
            *static_cast<volatile int*>(nullptr) = 1;
            break;
        case 1:
            ::RaiseException(0xE0000001, 0, 0, nullptr);
            break;
        case 2:
            ThrowAsForeignCode();
            break;
        default:
            throw std::runtime_error("from a sink");
        }
        return S_OK;
    };
    const auto job = OpenJob(jobId);
    const Connection jobSink = Connect(*job.Get(), raising.Get());
    const Connection queueSink = Connect(*queue.Get(), raising.Get());
    const Connection other = Watch(*queue.Get(), "other");
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(Tell({Status(jobId, deleted | restart)}),
                    testing::IsSupersetOf({"raising: OnJobFinalized(job 1)", "other: OnJobFinalized(job 1)"}));
    }
}

INSTANTIATE_TEST_SUITE_P(Kind, RaisingClientSink, testing::Range(0, 4));

TEST_F(JobEventDispatchTest, SinkMayDisconnectItself)
{
    Connection connection;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        connection.Close();
        return S_OK;
    };
    connection = Connect(*queue.Get(), sink.Get());
    EXPECT_THAT(Tell({Status(jobId, deleted)}), ElementsAre("queue: OnJobSent(job 1)"));
    EXPECT_THAT(Tell({Status(jobId, restart | deleted)}), IsEmpty());
}

TEST_F(JobEventDispatchTest, SinkMayDisconnectTheNextOne)
{
    Connection second;
    const auto first = EventSink::Create(log, "first");
    first->onInvoke = [&](DISPID, DISPPARAMS*) {
        second.Close();
        return S_OK;
    };
    const Connection firstConnection = Connect(*queue.Get(), first.Get());
    second = Watch(*queue.Get(), "second");
    EXPECT_THAT(Tell({Status(jobId, deleted)}), testing::Each(testing::StartsWith("first: ")));
}

TEST_F(JobEventDispatchTest, SinkMayDisconnectAnotherJobObject)
{
    auto first = OpenJob(jobId);
    auto second = OpenJob(jobId);
    Connection secondConnection;
    const auto sink = EventSink::Create(log, "first");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        secondConnection.Close();
        second.Reset();
        return S_OK;
    };
    const Connection firstConnection = Connect(*first.Get(), sink.Get());
    secondConnection = Watch(*second.Get(), "second");
    EXPECT_THAT(Tell({Status(jobId, paused)}),
                ElementsAre("first: OnJobPaused(job 1)", "first: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(JobEventDispatchTest, SinkMayConnectAnotherJobObject)
{
    auto first = OpenJob(jobId);
    auto second = OpenJob(jobId);
    Connection secondConnection;
    const auto sink = EventSink::Create(log, "first");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        if (FAILED(secondConnection.Result())) secondConnection = Watch(*second.Get(), "second");
        return S_OK;
    };
    const Connection firstConnection = Connect(*first.Get(), sink.Get());
    EXPECT_THAT(Tell({Status(jobId, paused)}), ElementsAre("first: OnJobPaused(job 1)", "second: OnJobPaused(job 1)",
                                                           "first: OnJobStatusChanged(job 1, status 'Paused')",
                                                           "second: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(JobEventDispatchTest, SinkMayDropEveryObjectThatTheClientHolds)
{
    auto job = OpenJob(jobId);
    Connection queueConnection;
    Connection jobConnection;
    const auto sink = EventSink::Create(log, "job");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        jobConnection.Close();
        queueConnection.Close();
        job.Reset();
        queue.Reset();
        printer.Reset();
        return S_OK;
    };
    jobConnection = Connect(*job.Get(), sink.Get());
    queueConnection = Watch(*queue.Get(), "queue");
    notices.Queue({Status(jobId, paused)});
    // The thread is stopped and joined by another one.
    EXPECT_TRUE(Eventually([] { return XPrinterPool::GetCount() == 0 && Module::IsIdle(); }));
    EXPECT_THAT(log.Take(), ElementsAre("job: OnJobPaused(job 1)"));
}

TEST_F(JobEventDispatchTest, ObjectWithASinkMayDieWithoutADisconnect)
{
    auto job = OpenJob(jobId);
    Connection connection = Watch(*job.Get(), "job");
    connection.Forget();
    job.Reset();
    EXPECT_EQ(EventSink::Living(), 0);
    EXPECT_THAT(Tell({Status(jobId, paused)}), IsEmpty());
}

TEST_F(JobEventDispatchTest, SinkMayKeepAJobThatItWasGiven)
{
    Objects jobs;
    {
        const Connection sink = Connect(*queue.Get(), KeepingSink("queue", jobs).Get());
        Tell(NewJob(jobId));
        Tell({Status(jobId, deleted)});
    }
    queue.Reset();
    printer.Reset();
    ComPtr<IPrintJob> job;
    jobs.seen.front().As(&job);
    ComPtr<IPrintJobStatus> status;
    ASSERT_EQ(job->get_Status(&status), S_OK);
    VARIANT_BOOL completed = VARIANT_FALSE;
    EXPECT_EQ(status->get_Completed(&completed), S_OK);
    EXPECT_EQ(completed, VARIANT_TRUE);
}

} // namespace
