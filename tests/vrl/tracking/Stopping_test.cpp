// SPDX-License-Identifier: MIT
// How a watched printer is closed, whatever its thread is just doing. Every wait here has a limit.

#include "support/BackgroundCall.h"
#include "support/CapturedTrace.h"
#include "support/com/HeldSink.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/tracking/TrackingTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoppingTest : public OpenPrinterTest {
protected:
    static bool IsClosed()
    {
        return Eventually([] { return XPrinterPool::GetCount() == 0 && Module::IsIdle(); });
    }

    /// A job that comes and goes, so that nothing of it stays.
    static ScriptedBatch WholeLife(DWORD id)
    {
        return {Status(id, JOB_STATUS_RESTART | JOB_STATUS_PRINTING), Status(id, JOB_STATUS_DELETED)};
    }
};

TEST_F(StoppingTest, LastReleaseReturnsWhenTheThreadHasEnded)
{
    const CapturedTrace trace;
    Watch(*queue.Get(), "queue").Close();
    LetGo();
    EXPECT_EQ(trace.Lines("*** Exiting").size(), 1u);
    EXPECT_EQ(trace.Lines("ThreadStop event").size(), 1u);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(StoppingTest, NoticesMayStreamInMeanwhile)
{
    Connection sink = Watch(*queue.Get(), "queue");
    std::atomic<bool> enough{false};
    const BackgroundCall stream([&] {
        while (!enough) {
            if (notices.Waiting() < 50) notices.Queue(WholeLife(jobId));
        }
    });
    EXPECT_TRUE(log.WaitFor(20));
    for (int i = 0; i < 3000; ++i) notices.Queue(WholeLife(jobId)); // it won't run dry, however slow the stream is
    const BackgroundCall stop([&] {
        sink.Close();
        LetGo();
    });
    EXPECT_TRUE(stop.Ends());
    enough = true;
    EXPECT_TRUE(IsClosed());
    EXPECT_GT(notices.Waiting(), 0u) << "the stream has run dry, so nothing streamed in";
}

TEST_F(StoppingTest, DisconnectWaitsForTheSinkThatRuns)
{
    HeldSink sink(log, "queue");
    Connection connection = Connect(*queue.Get(), sink.Get());
    notices.Queue(WholeLife(jobId));
    ASSERT_TRUE(sink.WaitUntilCalled());
    const BackgroundCall disconnect([&] { connection.Close(); });
    EXPECT_TRUE(disconnect.IsHeldUp());
    sink.GoOn();
    EXPECT_TRUE(disconnect.Ends());
    log.Take(); // the thread may have told more before the disconnect got hold of the list
    notices.Queue(WholeLife(jobId));
    notices.WaitUntilIdle();
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(StoppingTest, LastReleaseOnAnotherThreadWaitsForTheThreadAsLongAsASinkTakes)
{
    // The client of another printer object of the same printer still listens.
    HeldSink sink(log, "printer");
    auto watched = OpenPrinter();
    Connection connection = Connect(*watched.Get(), sink.Get());
    XPrinterRef last = XPrinterRef::Acquire(OString(printerName));
    LetGo();
    notices.Queue({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}});
    ASSERT_TRUE(sink.WaitUntilCalled());
    connection.Forget();
    watched.Reset(); // the walk over the printers keeps it
    const CapturedTrace trace;
    const BackgroundCall stop([&] { last.Release(); });
    EXPECT_TRUE(stop.Ends()) << "the thread still has the object that fires";
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    sink.GoOn();
    EXPECT_TRUE(IsClosed());
    sink.Forget();
}

TEST_F(StoppingTest, ClosingTakesAsLongAsASinkAndAsksTheThreadAgainMeanwhile)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    HeldSink sink(log, "printer");
    const Connection connection = Connect(*printer.Get(), sink.Get());
    notices.Queue({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}});
    ASSERT_TRUE(sink.WaitUntilCalled());
    queue.Reset();
    const CapturedTrace trace;
    const BackgroundCall rebind([&] { // gives the last count back while the object's own sink runs
        const OBstr name = ToBstr(OString("Other"));
        EXPECT_EQ(printer->Initialize(name.Get()), S_OK);
    });
    EXPECT_TRUE(rebind.IsHeldUp());
    EXPECT_TRUE(Eventually([&] { return trace.Lines("XJobStatusThread::ThreadStop").size() > 1; }));
    sink.GoOn();
    EXPECT_TRUE(rebind.Ends());
}

TEST_F(StoppingTest, SinkThatDropsTheLastHoldOnThePrinterHangsNothing)
{
    Connection connection;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        connection.Close();
        LetGo();
        return S_OK;
    };
    connection = Connect(*queue.Get(), sink.Get());
    notices.Queue(WholeLife(jobId));
    EXPECT_TRUE(IsClosed());
}

TEST_F(StoppingTest, PassingObjectsOfTheThreadMayBeTheLastHolders)
{
    // While a change of status is told, the thread holds a job object of its own.
    HeldSink sink(log, "queue");
    Connection connection = Connect(*queue.Get(), sink.Get());
    notices.Queue({Status(jobId, JOB_STATUS_DELETED)});
    ASSERT_TRUE(sink.WaitUntilCalled());
    connection.Forget();
    const BackgroundCall client([&] { LetGo(); });
    EXPECT_TRUE(client.Ends());
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    sink.GoOn();
    EXPECT_TRUE(IsClosed());
    sink.Forget();
}

TEST_F(StoppingTest, ObjectThatASinkKeepsHoldsThePrinterOpenUntilItIsReleased)
{
    ComPtr<IDispatch> kept;
    Connection connection;
    const auto sink = EventSink::Create(log, "queue");
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        kept = parameters->rgvarg[parameters->cArgs - 1].pdispVal;
        connection.Close();
        LetGo();
        return S_OK;
    };
    connection = Connect(*queue.Get(), sink.Get());
    notices.Queue(WholeLife(jobId));
    EXPECT_TRUE(notices.WaitUntilIdle());
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    kept.Reset();
    printer = OpenPrinter(); // the job never ended for its queue, so the printer is still watched
    EXPECT_THAT(notices.Requests(), testing::SizeIs(1));
}

TEST_F(StoppingTest, NameCanBeOpenedWhileItsOldThreadIsWaitedFor)
{
    HeldSink sink(log, "queue");
    Connection connection = Connect(*queue.Get(), sink.Get());
    notices.Queue({Status(jobId, JOB_STATUS_DELETED)});
    ASSERT_TRUE(sink.WaitUntilCalled());
    connection.Forget();
    LetGo();
    const BackgroundCall open([&] { EXPECT_EQ(OpenPrinter()->get_Local(nullptr), E_INVALIDARG); });
    EXPECT_TRUE(open.Ends());
    sink.GoOn();
    EXPECT_TRUE(IsClosed());
    sink.Forget();
}

/// The last count has gone and the thread is waited for, when it makes a job object that a client keeps.
TEST_F(StoppingTest, PrinterThatAClientTakesUpAgainWhileItIsClosedLivesOnAndIsWatchedFromItsNextFirstSinkOn)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    ComPtr<IDispatch> kept;
    const auto keeper = EventSink::Create(log, "queue");
    keeper->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        kept = parameters->rgvarg[parameters->cArgs - 1].pdispVal;
        return S_OK;
    };
    HeldSink sink(log, "printer");
    {
        const Connection queueConnection = Connect(*queue.Get(), keeper.Get());
        const Connection connection = Connect(*printer.Get(), sink.Get());
        notices.Queue({ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1), Status(jobId, JOB_STATUS_PRINTING)});
        ASSERT_TRUE(sink.WaitUntilCalled());
        const CapturedTrace trace;
        const BackgroundCall rebind([&] {
            const OBstr name = ToBstr(OString("Other"));
            EXPECT_EQ(printer->Initialize(name.Get()), S_OK);
        });
        EXPECT_TRUE(Eventually([&] { return !trace.Lines("XJobStatusThread::ThreadStop").empty(); }));
        sink.GoOn();
        EXPECT_TRUE(rebind.Ends());
    }
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(XPrinterPool::GetCount(), 2);
    EXPECT_EQ(notices.OpenNotifications(), 0) << "its thread has ended";
    log.Take();

    LetGo();
    printer = OpenPrinter();
    queue = QueueOf(*printer.Get());
    const size_t before = notices.Requests().size();
    const Connection again = Watch(*queue.Get(), "again");
    EXPECT_EQ(notices.Requests().size(), before + 1);
    EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_DELETED)}), testing::Contains("again: OnJobFinalized(job 1)"));
    kept.Reset();
}

/// The thread is in the middle of a batch, making job objects of its own, when the last release comes.
TEST_F(StoppingTest, ThreadThatAcquiresItsOwnPrinterIsNotInTheWay)
{
    LetGo();
    for (int round = 0; round < 100; ++round) {
        printer = OpenPrinter();
        queue = QueueOf(*printer.Get());
        Connection sink = Watch(*queue.Get(), "queue");
        ScriptedBatch batch;
        for (DWORD id = 1; id <= 10; ++id) {
            for (const ScriptedEntry& entry : WholeLife(id).entries) batch.entries.push_back(entry);
        }
        notices.Queue(std::move(batch));
        EXPECT_TRUE(log.WaitFor(1 + static_cast<size_t>(round % 40)));
        const BackgroundCall stop([&] {
            sink.Close();
            LetGo();
        });
        ASSERT_TRUE(stop.Ends()) << round;
        ASSERT_TRUE(IsClosed()) << round;
        log.Take();
    }
}

TEST_F(StoppingTest, TwoPrintersWhoseSinksDropEachOtherHangNothing)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    auto otherPrinter = OpenPrinter(L"Other");
    Connection first;
    Connection second;
    const auto firstSink = EventSink::Create(log, "first", PrinterEventName);
    const auto secondSink = EventSink::Create(log, "second", PrinterEventName);
    std::atomic<int> inside{0};
    const auto meet = [&] {
        ++inside;
        EXPECT_TRUE(Eventually([&] { return inside == 2; }));
    };
    firstSink->onInvoke = [&](DISPID, DISPPARAMS*) {
        meet();
        second.Forget();
        otherPrinter.Reset();
        return S_OK;
    };
    secondSink->onInvoke = [&](DISPID, DISPPARAMS*) {
        meet();
        first.Forget();
        LetGo();
        return S_OK;
    };
    first = Connect(*printer.Get(), firstSink.Get());
    second = Connect(*otherPrinter.Get(), secondSink.Get());
    // One batch for each of the two threads; who gets which doesn't matter.
    notices.Queue({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}});
    notices.Queue({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}});
    EXPECT_TRUE(IsClosed());
}

} // namespace
