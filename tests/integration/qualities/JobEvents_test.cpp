// SPDX-License-Identifier: MIT
#include "support/Raising.h"
#include "support/RowName.h"
#include "support/com/ApartmentThread.h"
#include "support/com/HeldSink.h"
#include "support/product/JobClientTest.h"
#include "support/spooler/FieldDocument.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <set>

// The road of a job from the simulated print engine through the module that ships to its clients' sinks. Which status
// raises which events is held by tests/vrl/tracking.

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// A printer that prints a step at a time after spooling, with a queue sink.
class JobEvents : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        AddSteppedPrinter(PRINTER_ATTRIBUTE_LOCAL, false);
    }

    void TearDown() override
    {
        LetGo();
        JobClientTest::TearDown();
    }

    void AddSteppedPrinter(DWORD attributes, bool trueEndOfJob)
    {
        SpoolerPrinter stepped = LabelPrinter();
        stepped.attributes = attributes | PRINTER_ATTRIBUTE_QUEUED;
        stepped.pace = SpoolerPace::Stepped;
        stepped.trueEndOfJob = trueEndOfJob;
        stepped.startTime = stepped.untilTime = 0; // it prints at any time
        ::SpoolerRemovePrinter(printerName);
        AddPrinter(stepped);
        ::SpoolerSetNextJobId(1);
    }

    void WatchQueue()
    {
        queue = QueueOf(*BoundPrinter().Get());
        queueSink = Watch(*queue.Get(), "queue");
    }

    void WatchJob(DWORD id)
    {
        job = OpenJob(id);
        jobSink = Watch(*job.Get(), "job");
    }

    void LetGo()
    {
        jobSink.Close();
        queueSink.Close();
        job.Reset();
        queue.Reset();
    }

    /// A document of one page that has been spooled and waits, watched at both levels.
    DWORD SpoolWatched()
    {
        WatchQueue();
        FieldDocument document(printerName);
        document.StartPage();
        document.Write("^XA^XZ");
        document.EndPage();
        document.End();
        Heard();
        WatchJob(document.JobId());
        return document.JobId();
    }

    Lines Step(DWORD steps = 1)
    {
        DWORD done = 0;
        EXPECT_EQ(::SpoolerStep(printerName, steps, &done), 0u);
        EXPECT_GT(done, 0u);
        return Heard();
    }

    /// What a batch with these events sounds like: first to the job's sink, then to the queue's.
    static Lines AtBothLevels(const Lines& events)
    {
        Lines lines;
        for (const char* const sink : {"job: ", "queue: "}) {
            for (const std::string& event : events) lines.push_back(sink + event);
        }
        return lines;
    }

    ComPtr<IPrintQueue> queue;
    ComPtr<IPrintJob> job;
    Connection queueSink;
    Connection jobSink;
};

// The whole road

TEST_F(JobEvents, TellALabelJobFromItsArrivalToItsEnd)
{
    WatchQueue();
    FieldDocument document(printerName);
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobNew(job 1)", "queue: OnJobPositionChanged(job 1, 0, 1)"));
    WatchJob(document.JobId());
    document.StartPage();
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobTotalPagesChanged(job 1, 0, 1)"}));
    document.Write("^XA^XZ");
    document.EndPage();
    document.End();
    EXPECT_THAT(Heard(), IsEmpty());
    EXPECT_EQ(Step(), AtBothLevels({"OnJobStarted(job 1)", "OnJobStatusChanged(job 1, status 'Printing')"}));
    EXPECT_THAT(Step(), IsEmpty()); // the bytes go to the device
    EXPECT_EQ(Step(), AtBothLevels({"OnJobPagesPrintedChanged(job 1, 0, 1)"}));
    EXPECT_THAT(Step(2), IsEmpty()); // printed, and to be deleted
    EXPECT_EQ(Step(), AtBothLevels({"OnJobSent(job 1)", "OnJobCompleted(job 1)",
                                    "OnJobStatusChanged(job 1, status 'Sent, Completed')", "OnJobFinalized(job 1)"}));
}

TEST_F(JobEvents, TellThatAJobWasPrintedIfItsPortTellsTheEnd)
{
    AddSteppedPrinter(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI, true);
    SpoolWatched();
    const Lines heard = Step(spoolerAllSteps);
    EXPECT_THAT(heard, ::testing::IsSupersetOf(AtBothLevels({"OnJobSent(job 1)", "OnJobPrinted(job 1)",
                                                             "OnJobCompleted(job 1)", "OnJobFinalized(job 1)"})));
}

TEST_F(JobEvents, TellWhatTheClientsOwnControlsDo)
{
    SpoolWatched();
    job->Pause();
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobPaused(job 1)", "OnJobStatusChanged(job 1, status 'Paused')"}));
    job->Resume();
    EXPECT_THAT(Heard(), IsEmpty()); // it waits
    Step();
    job->Pause();
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobPaused(job 1)", "OnJobStatusChanged(job 1, status 'Paused')"}));
    job->Resume();
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobResumed(job 1)", "OnJobStatusChanged(job 1, status 'Printing')"}));
    EXPECT_EQ(ScheduleOf(*job.Get())->put_Priority(50), S_OK);
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobPriorityChanged(job 1, 7, 50)"}));
    job->Cancel();
    EXPECT_THAT(Heard(), IsEmpty()); // it is still at the device
    EXPECT_EQ(Step(spoolerAllSteps),
              AtBothLevels({"OnJobCancelled(job 1)", "OnJobStatusChanged(job 1, status 'Printing, Cancelled')",
                            "OnJobFinalized(job 1)"}));
}

TEST_F(JobEvents, TellTroubleAtTheDeviceAndItsEnd)
{
    SpoolWatched();
    Step();
    ::SpoolerSetTrouble(printerName, {.jobStatus = JOB_STATUS_PAPEROUT, .printerStatus = PRINTER_STATUS_PAPER_OUT});
    const Lines heard = Heard();
    EXPECT_EQ(heard, AtBothLevels({"OnJobError(job 1, printer status)",
                                   "OnJobStatusChanged(job 1, status 'Printing, User Intervention Required')"}));
    ::SpoolerClearTrouble(printerName);
    EXPECT_EQ(Heard(), AtBothLevels({"OnJobStatusChanged(job 1, status 'Printing')"}));
    Step(spoolerAllSteps);
}

TEST_F(JobEvents, TellThatTheJobsBehindMoveUp)
{
    SpoolWatched();
    FieldDocument second(printerName);
    second.StartPage();
    second.EndPage();
    second.End();
    Heard();
    EXPECT_THAT(Step(6), ::testing::Contains("queue: OnJobPositionChanged(job 2, 2, 1)"));
    Step(spoolerAllSteps);
}

TEST_F(JobEvents, GiveObjectsThatOutliveTheCallAndTheClient)
{
    const DWORD id = AddJob({});
    ComPtr<IDispatch> kept;
    ComPtr<IDispatch> keptStatus;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        kept = parameters->rgvarg[parameters->cArgs - 1].pdispVal;
        if (parameters->cArgs == 2 && parameters->rgvarg[0].vt == VT_DISPATCH) {
            keptStatus = parameters->rgvarg[0].pdispVal;
        }
        return S_OK;
    };
    queue = QueueOf(*BoundPrinter().Get());
    queueSink = Connect(*queue.Get(), sink.Get());
    Tell({Status(id, JOB_STATUS_PRINTING), Status(id, JOB_STATUS_DELETED)}, PRINTER_CHANGE_ADD_JOB);
    LetGo();
    ComPtr<IPrintJob> keptJob;
    ComPtr<IPrintJobStatus> status;
    ASSERT_EQ(kept.As(&keptJob), S_OK);
    ASSERT_EQ(keptStatus.As(&status), S_OK);
    EXPECT_EQ(Text(*keptJob.Get(), &IPrintJob::get_PrinterName), L"Label");
    EXPECT_EQ(Text(*status.Get(), &IPrintJobStatus::get_Text), L"Sent, Completed");
}

// Threads of the clients

/// The threads on which sinks were called.
class CallingThreads {
public:
    Microsoft::WRL::ComPtr<EventSink> NewSink(EventLog& log, std::string name, EventSink::Names names = JobEventName)
    {
        auto sink = EventSink::Create(log, std::move(name), names);
        sink->onInvoke = [this](DISPID, DISPPARAMS*) {
            const std::lock_guard guard(_lock);
            _threads.insert(::GetCurrentThreadId());
            return S_OK;
        };
        return sink;
    }

    std::set<DWORD> All() const
    {
        const std::lock_guard guard(_lock);
        return _threads;
    }

private:
    mutable std::mutex _lock;
    std::set<DWORD> _threads;
};

class ClientThread : public JobEvents {
protected:
    /// The client's objects, each with a sink, in the apartment in which this runs.
    void Open(DWORD id)
    {
        printer = CreateRegistered<IPrinter>(__uuidof(Printer));
        job = CreateRegistered<IPrintJob>(__uuidof(PrintJob));
        EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
        EXPECT_EQ(Bind(*job.Get(), id), S_OK);
        queue = QueueOf(*printer.Get());
        printerSink = Connect(*printer.Get(), threads.NewSink(log, "printer", PrinterEventName).Get());
        queueSink = Connect(*queue.Get(), threads.NewSink(log, "queue").Get());
        jobSink = Connect(*job.Get(), threads.NewSink(log, "job").Get());
        for (const Connection* sink : {&printerSink, &queueSink, &jobSink}) EXPECT_EQ(sink->Result(), S_OK);
    }

    void Close()
    {
        printerSink.Close();
        LetGo();
        printer.Reset();
    }

    template <class Interface>
    static ComPtr<Interface> CreateRegistered(REFCLSID classId)
    {
        ComPtr<Interface> object;
        EXPECT_EQ(::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), Address(object)),
                  S_OK);
        return object;
    }

    /// Lets the spooler tell of the printer and then of the job, to its end. Gives what was heard.
    Lines TellAll(DWORD id)
    {
        const SpoolerNotifyEntry location{
            .type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_LOCATION, .text = L"Gate 8"};
        EXPECT_EQ(::SpoolerQueueBatch(printerName, PRINTER_CHANGE_SET_JOB,
                                      {location, Status(id, JOB_STATUS_PAUSED), Status(id, JOB_STATUS_DELETED)}),
                  0u);
        EXPECT_TRUE(log.WaitFor(told.size()));
        return log.Take();
    }

    const Lines told{"printer: OnLocationChanged(printer Label)",
                     "job: OnJobPaused(job 1)",
                     "job: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                     "job: OnJobSent(job 1)",
                     "job: OnJobCompleted(job 1)",
                     "job: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                     "job: OnJobFinalized(job 1)",
                     "queue: OnJobPaused(job 1)",
                     "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                     "queue: OnJobSent(job 1)",
                     "queue: OnJobCompleted(job 1)",
                     "queue: OnJobStatusChanged(job 1, status 'Sent, Completed')",
                     "queue: OnJobFinalized(job 1)"};

    CallingThreads threads;
    ComPtr<IPrinter> printer;
    Connection printerSink;
};

TEST_F(ClientThread, OfASingleThreadedApartmentHearsThroughItsMessageLoop)
{
    const DWORD id = AddJob({});
    {
        ApartmentThread client(COINIT_APARTMENTTHREADED);
        client.Run([&] { Open(id); });
        EXPECT_EQ(TellAll(id), told);
        EXPECT_THAT(threads.All(), ElementsAre(client.Id()));
        client.Run([&] { Close(); });
    }
    GiveBackKeptClassObject(__uuidof(Printer));
    GiveBackKeptClassObject(__uuidof(PrintJob));
}

TEST_F(ClientThread, OfTheMultiThreadedApartmentIsCalledOnTheNotificationThread)
{
    const DWORD id = AddJob({});
    ApartmentThread client(COINIT_MULTITHREADED);
    client.Run([&] { Open(id); });
    EXPECT_EQ(TellAll(id), told);
    const DWORD notificationThread = LastCall(SpoolerCall::FindNextPrinterChangeNotification).threadId;
    EXPECT_NE(notificationThread, client.Id());
    EXPECT_THAT(threads.All(), ElementsAre(notificationThread));
    client.Run([&] { Close(); });
}

// Sinks that make trouble

/// One client with all that it holds: a queue and a job with a sink each.
struct Client {
    Microsoft::WRL::ComPtr<IPrintQueue> queue;
    Microsoft::WRL::ComPtr<IPrintJob> job;
    Connection queueSink;
    Connection jobSink;

    void Disconnect()
    {
        queueSink.Close();
        jobSink.Close();
    }

    void LetGo()
    {
        Disconnect();
        queue.Reset();
        job.Reset();
    }
};

/// Three clients of one job. The one in the middle makes trouble.
class TroublesomeSink : public JobEvents {
protected:
    void SetUp() override
    {
        JobEvents::SetUp();
        id = AddJob({});
    }

    void TearDown() override
    {
        for (Client* client : {&before, &trouble, &after}) client->LetGo();
        JobEvents::TearDown();
    }

    static void Open(Client& client, DWORD id, IUnknown* jobSink, IUnknown* queueSink)
    {
        client.queue = QueueOf(*BoundPrinter().Get());
        client.job = OpenJob(id);
        client.jobSink = Connect(*client.job.Get(), jobSink);
        client.queueSink = Connect(*client.queue.Get(), queueSink);
    }

    void Open(Client& client, const std::string& name)
    {
        Open(client, id, EventSink::Create(log, name + " job").Get(), EventSink::Create(log, name + " queue").Get());
    }

    void OpenTrouble(const std::function<HRESULT()>& act)
    {
        Open(before, "before");
        const auto jobLevel = EventSink::Create(log, "trouble job");
        const auto queueLevel = EventSink::Create(log, "trouble queue");
        jobLevel->onInvoke = [=](DISPID, DISPPARAMS*) { return act(); };
        queueLevel->onInvoke = jobLevel->onInvoke;
        Open(trouble, id, jobLevel.Get(), queueLevel.Get());
        Open(after, "after");
    }

    /// A batch in which the job begins, and one in which it ends.
    Lines TellALife()
    {
        Lines heard = Tell({Status(id, JOB_STATUS_PRINTING)}, PRINTER_CHANGE_ADD_JOB);
        std::ranges::copy(Tell({Status(id, JOB_STATUS_DELETED)}), std::back_inserter(heard));
        return heard;
    }

    /// The events of one sink.
    static Lines Of(const std::string& sink, const Lines& heard)
    {
        Lines events;
        for (const std::string& line : heard) {
            if (line.starts_with(sink + ": ")) events.push_back(line.substr(sink.size() + 2));
        }
        return events;
    }

    static void ExpectWhole(const std::string& client, const Lines& heard)
    {
        const Lines life{
            "OnJobStarted(job 1)",   "OnJobStatusChanged(job 1, status 'Printing')",        "OnJobSent(job 1)",
            "OnJobCompleted(job 1)", "OnJobStatusChanged(job 1, status 'Sent, Completed')", "OnJobFinalized(job 1)"};
        Lines ofQueue = life;
        ofQueue.insert(ofQueue.begin(), "OnJobNew(job 1)");
        EXPECT_EQ(Of(client + " job", heard), life);
        EXPECT_EQ(Of(client + " queue", heard), ofQueue);
    }

    DWORD id = 0;
    Client before;
    Client trouble;
    Client after;
};

class RaisingSinks : public TroublesomeSink, public ::testing::WithParamInterface<RaisedKind> {};

TEST_P(RaisingSinks, AreCalledAgainAndDisturbNobody)
{
    OpenTrouble([] {
        GetParam().raise();
        return S_OK;
    });
    const Lines heard = TellALife();
    for (const char* const client : {"before", "trouble", "after"}) ExpectWhole(client, heard);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingSinks, ::testing::ValuesIn(raisedKinds), rowName);

TEST_F(TroublesomeSink, ThatFailsIsCalledAgainAndDisturbsNobody)
{
    OpenTrouble([] { return RPC_E_DISCONNECTED; });
    const Lines heard = TellALife();
    for (const char* const client : {"before", "trouble", "after"}) ExpectWhole(client, heard);
}

TEST_F(TroublesomeSink, ThatDisconnectsItselfDisturbsNobody)
{
    OpenTrouble([this] {
        trouble.Disconnect();
        return S_OK;
    });
    const Lines heard = TellALife();
    ExpectWhole("before", heard);
    ExpectWhole("after", heard);
    EXPECT_THAT(Of("trouble job", heard), ElementsAre("OnJobStarted(job 1)"));
    EXPECT_THAT(Of("trouble queue", heard), IsEmpty());
}

TEST_F(TroublesomeSink, ThatDisconnectsAnotherDisturbsNobodyElse)
{
    Client victim;
    OpenTrouble([&] {
        victim.Disconnect();
        return S_OK;
    });
    Open(victim, "victim");
    const Lines heard = TellALife();
    ExpectWhole("before", heard);
    ExpectWhole("trouble", heard);
    ExpectWhole("after", heard);
    EXPECT_THAT(Of("victim job", heard), IsEmpty());
    EXPECT_THAT(Of("victim queue", heard), IsEmpty());
}

TEST_F(TroublesomeSink, ThatDropsAllThatItsClientHoldsDisturbsNobody)
{
    OpenTrouble([this] {
        trouble.LetGo();
        return S_OK;
    });
    const Lines heard = TellALife();
    ExpectWhole("before", heard);
    ExpectWhole("after", heard);
}

TEST_F(TroublesomeSink, ThatDropsTheLastObjectsOfTheProcessHangsNothing)
{
    const auto sink = EventSink::Create(log, "last");
    sink->onInvoke = [this](DISPID, DISPPARAMS*) {
        trouble.LetGo();
        return S_OK;
    };
    Open(trouble, id, sink.Get(), sink.Get());
    EXPECT_EQ(::SpoolerQueueBatch(printerName, PRINTER_CHANGE_SET_JOB, {Status(id, JOB_STATUS_DELETED)}), 0u);
    EXPECT_TRUE(log.WaitFor(1));
    EXPECT_TRUE(Eventually(IsUnloadable));
    EXPECT_THAT(log.Take(), ElementsAre("last: OnJobSent(job 1)"));
}

TEST_F(TroublesomeSink, ThatBlocksHoldsUpItsPrinterAndNoOther)
{
    HeldSink blocking(log, "blocking");
    AddPrinterNamed(L"Other");
    const auto otherQueue = QueueOf(*BoundPrinter(L"Other").Get());
    const Connection otherSink = Watch(*otherQueue.Get(), "other");
    Open(before, "before");
    trouble.job = OpenJob(id);
    trouble.jobSink = Connect(*trouble.job.Get(), blocking.Get());
    Open(after, "after");

    EXPECT_EQ(::SpoolerQueueBatch(printerName, PRINTER_CHANGE_ADD_JOB, {Status(id, JOB_STATUS_PRINTING)}), 0u);
    ASSERT_TRUE(blocking.WaitUntilCalled());
    EXPECT_THAT(log.Take(), ElementsAre("before job: OnJobStarted(job 1)", "blocking: OnJobStarted(job 1)"));
    EXPECT_EQ(::SpoolerQueueBatch(L"Other", PRINTER_CHANGE_SET_JOB, {Status(9, JOB_STATUS_DELETED)}), 0u);
    EXPECT_TRUE(log.WaitFor(4));
    EXPECT_THAT(log.Take(), Each(StartsWith("other: ")));

    blocking.GoOn();
    Lines heard = Heard();
    heard.insert(heard.begin(), "before job: OnJobStarted(job 1)");
    std::ranges::copy(Tell({Status(id, JOB_STATUS_DELETED)}), std::back_inserter(heard));
    ExpectWhole("before", heard);
    ExpectWhole("after", heard);
    trouble.jobSink.Close();
}

} // namespace
