// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintQueue.h"

#include "support/com/EventSink.h"
#include "vrl/classes/JobTest.h"
#include "vrl/classes/Printer.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A client's own collection: it keeps what is added, and answers what the test says.
class ClientJobs : public IPrintJobs {
public:
    std::vector<Microsoft::WRL::ComPtr<IPrintJob>> added;
    HRESULT answer = S_OK;

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP get__NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Item(long, IPrintJob**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Count(long*) override { return E_NOTIMPL; }
    STDMETHODIMP Create(IPrintJob**) override { return E_NOTIMPL; }
    STDMETHODIMP Add(IPrintJob* job) override
    {
        added.emplace_back(job);
        return answer;
    }
    STDMETHODIMP Remove(IPrintJob*) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveAll() override { return E_NOTIMPL; }
    STDMETHODIMP Find(BSTR, long, IPrintJob**) override { return E_NOTIMPL; }
};

class PrintQueueTest : public JobTest {
protected:
    void SetUp() override
    {
        JobTest::SetUp();
        printer = Make<Printer>();
        ASSERT_EQ(printer->Initialize(ToBstr(OString(printerName)).Get()), S_OK);
        ASSERT_EQ(printer->get_Queue(&queue), S_OK);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        jobs.added.clear();
        queue.Reset();
        printer.Reset();
        JobTest::TearDown();
    }

    Answer Enumerate() { return AnswerOf(queue->EnumerateJobs(&jobs, VARIANT{})); }

    std::vector<long> JobNumbers() const
    {
        std::vector<long> numbers;
        for (const auto& job : jobs.added) {
            long number = 0;
            EXPECT_EQ(job->get_JobId(&number), S_OK);
            numbers.push_back(number);
        }
        return numbers;
    }

    ClientJobs jobs;
    ComPtr<Printer> printer;
    ComPtr<IPrintQueue> queue;
};

// ---- jobs ----

TEST_F(PrintQueueTest, EnumeratesEveryJobInTheSpoolersOrder)
{
    AddJob(QueuedJob());
    AddJob(QueuedJob());
    EXPECT_EQ(Enumerate(), succeeded);
    EXPECT_THAT(JobNumbers(), ElementsAre(1, 2, 3));
    OBstr name;
    EXPECT_EQ(jobs.added[0]->get_PrinterName(name.Receive()), S_OK);
    EXPECT_EQ(FromBstr(name.Get()), "Label");
    EXPECT_EQ(jobs.added[0]->get_Name(name.Receive()), S_OK);
    EXPECT_EQ(FromBstr(name.Get()), "Pallet 7");
}

TEST_F(PrintQueueTest, EmptyQueueAddsNothing)
{
    ::SpoolerRemoveJob(printerName, jobId);
    EXPECT_EQ(Enumerate(), succeeded);
    EXPECT_THAT(jobs.added, IsEmpty());
}

TEST_F(PrintQueueTest, QueueThatCannotBeReadAddsNothing)
{
    FailNext(SpoolerCall::EnumJobsW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Enumerate(), succeeded);
    EXPECT_THAT(jobs.added, IsEmpty());
}

TEST_F(PrintQueueTest, AnyFilterListsTheSameJobs)
{
    VARIANT filter;
    ::VariantInit(&filter);
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_I4, VT_ERROR, VT_DISPATCH, VT_BSTR}) {
        filter.vt = type;
        EXPECT_EQ(queue->EnumerateJobs(&jobs, filter), S_OK) << type;
    }
    EXPECT_THAT(jobs.added, SizeIs(6));
}

TEST_F(PrintQueueTest, AnswerOfTheCollectionIsNotLookedAt)
{
    AddJob(QueuedJob());
    jobs.answer = E_FAIL;
    EXPECT_EQ(Enumerate(), succeeded);
    EXPECT_THAT(jobs.added, SizeIs(2));
}

TEST_F(PrintQueueTest, JobThatVanishesAfterTheListingIsAddedWithoutDetails)
{
    FailNext(SpoolerCall::GetJobW, ERROR_INVALID_PARAMETER);
    EXPECT_EQ(Enumerate(), succeeded);
    EXPECT_THAT(JobNumbers(), ElementsAre(1));
    OBstr name;
    EXPECT_EQ(AnswerOf(jobs.added[0]->get_Name(name.Receive())), invalidJob);
}

TEST_F(PrintQueueTest, JobThatCannotBeBoundEndsTheWalkWithItsResult)
{
    AddJob(QueuedJob());
    AddJob(QueuedJob());
    // The first job opens the printer for its load and for the thread; the second is refused both ways.
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED, 3);
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED, 4);
    EXPECT_EQ(Enumerate(), couldNotOpenPrinter);
    EXPECT_THAT(JobNumbers(), ElementsAre(1));
}

TEST_F(PrintQueueTest, NullCollectionIsTestedBeforeTheBinding)
{
    EXPECT_EQ(AnswerOf(queue->EnumerateJobs(nullptr, VARIANT{})), invalidArgument);
    const auto unbound = Make<PrintQueue>();
    EXPECT_EQ(AnswerOf(unbound->EnumerateJobs(nullptr, VARIANT{})), invalidArgument);
    EXPECT_EQ(AnswerOf(unbound->EnumerateJobs(&jobs, VARIANT{})), invalidPrinter);
}

// ---- pause, resume, purge ----

struct CommandRow {
    const char* name;
    HRESULT (IPrintQueue::*run)();
    DWORD command;
};

const CommandRow commandRows[] = {
    {"Pause",  &IPrintQueue::Pause,  1},
    {"Resume", &IPrintQueue::Resume, 2},
    {"Purge",  &IPrintQueue::Purge,  3},
};

TEST_F(PrintQueueTest, CommandsGoToTheSpooler)
{
    for (const CommandRow& row : commandRows) {
        ::SpoolerClearLog();
        EXPECT_EQ(AnswerOf((queue.Get()->*row.run)()), succeeded) << row.name;
        ASSERT_EQ(::SpoolerLogLength(), 1u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].call, SpoolerCall::SetPrinterW) << row.name;
        EXPECT_EQ(SpoolerLog()[0].level, 0u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].command, row.command) << row.name;
    }
}

TEST_F(PrintQueueTest, RefusedCommandsLookLikeSuccess)
{
    for (const CommandRow& row : commandRows) {
        FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_EQ(AnswerOf((queue.Get()->*row.run)()), succeeded) << row.name;
    }
}

TEST_F(PrintQueueTest, CommandsOnAnObjectThatIsNotBoundDifferInWhatTheySay)
{
    const auto unbound = Make<PrintQueue>();
    EXPECT_EQ(AnswerOf(unbound->Pause()), (Answer{E_POINTER, ""}));
    EXPECT_EQ(AnswerOf(unbound->Resume()), invalidPrinter);
    EXPECT_EQ(AnswerOf(unbound->Purge()), invalidPrinter);
}

// ---- events ----

class PrintQueueEventsTest : public PrintQueueTest {
protected:
    void TearDown() override
    {
        if (EventSink::Living() == 0) EndJob();
        PrintQueueTest::TearDown();
    }

    Connection Watch(IPrintQueue& source, const char* name)
    {
        return Connection(&source, __uuidof(_IPrintQueueEvents), EventSink::Create(log, name).Get());
    }

    std::vector<std::string> Tell(DWORD status)
    {
        TellStatus(jobId, status);
        return log.Take();
    }

    /// A job that queue sinks know keeps its printer open.
    void EndJob()
    {
        const Connection sink = Watch(*queue.Get(), "end");
        Tell(JOB_STATUS_RESTART | JOB_STATUS_DELETED);
    }

    EventLog log;
};

TEST_F(PrintQueueEventsTest, FirstSinkStartsTheThreadAndTheLastOneEndsTheEvents)
{
    EXPECT_THAT(notices.Requests(), IsEmpty());
    Connection first = Watch(*queue.Get(), "first");
    Connection second = Watch(*queue.Get(), "second");
    EXPECT_THAT(notices.Requests(), SizeIs(1));
    EXPECT_THAT(Tell(JOB_STATUS_RESTART), ElementsAre("first: OnJobStarted(job 1)", "second: OnJobStarted(job 1)"));
    first.Close();
    EXPECT_THAT(Tell(JOB_STATUS_RESTART), ElementsAre("second: OnJobStarted(job 1)"));
    second.Close();
    EXPECT_THAT(Tell(JOB_STATUS_RESTART), IsEmpty());
}

TEST_F(PrintQueueEventsTest, ObjectIsListedFromItsFirstSinkToItsLast)
{
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString(printerName));
    EXPECT_FALSE(xPrinter->HasQueueReferences());
    Connection first = Watch(*queue.Get(), "first");
    Connection second = Watch(*queue.Get(), "second");
    first.Close();
    EXPECT_TRUE(xPrinter->HasQueueReferences());
    second.Close();
    EXPECT_FALSE(xPrinter->HasQueueReferences());
}

TEST_F(PrintQueueEventsTest, ObjectThatIsNotBoundTakesNoSink)
{
    const auto unbound = Make<PrintQueue>();
    EXPECT_EQ(Watch(*unbound.Get(), "queue").Result(), E_POINTER);
    EXPECT_EQ(EventSink::Living(), 0);
}

TEST_F(PrintQueueEventsTest, ObjectWithASinkMayDieWithoutADisconnect)
{
    auto other = Make<Printer>();
    ASSERT_EQ(other->Initialize(ToBstr(OString(printerName)).Get()), S_OK);
    ComPtr<IPrintQueue> dying;
    ASSERT_EQ(other->get_Queue(&dying), S_OK);
    Connection connection = Watch(*dying.Get(), "dying");
    const Connection sink = Watch(*queue.Get(), "queue");
    connection.Forget();
    dying.Reset();
    other.Reset();
    EXPECT_THAT(Tell(JOB_STATUS_RESTART), ElementsAre("queue: OnJobStarted(job 1)"));
}

} // namespace
