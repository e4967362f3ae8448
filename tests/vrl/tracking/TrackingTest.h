// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/threads/TickCount.h"
#include "support/Eventually.h"
#include "support/ImportHook.h"
#include "support/com/EventSink.h"
#include "support/spooler/ScriptedNotices.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/PrintJob.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/PrintQueue.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Bstr.h"
#include "vrl/frame/Module.h"
#include "vrl/spooler/PrinterInfoCache.h"

#include <atomic>
#include <set>
#include <string>
#include <vector>

/// A printer of `World`, whose notices the test writes, watched by the product's own thread with the real automation
/// objects. Sinks write down what they hear; ticks stand still.
template <class World>
class TrackingTestOn : public World {
protected:
    template <class T>
    using ComPtr = Microsoft::WRL::ComPtr<T>;
    using Lines = std::vector<std::string>;

    static inline std::atomic<DWORD> tick;

    void SetUp() override
    {
        World::SetUp();
        PrinterInfoCache::Instance().Clear();
        tick = 100000;
        SetTickCountSource([] { return tick.load(); });
    }

    void TearDown() override
    {
        if (XPrinterPool::GetCount() != 0) EndJobs();
        SetTickCountSource(nullptr);
        EXPECT_TRUE(Eventually([] { return XPrinterPool::GetCount() == 0 && Module::IsIdle(); }))
            << XPrinterPool::GetCount() << " printers are open";
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        EXPECT_EQ(notices.OpenNotifications(), 0);
        EXPECT_EQ(notices.UnfreedBlocks(), 0);
        PrinterInfoCache::Instance().Clear();
        World::TearDown();
    }

    static ComPtr<Printer> OpenPrinter(const wchar_t* name = World::printerName)
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        const OBstr text = ToBstr(OString(name));
        EXPECT_EQ(printer->Initialize(text.Get()), S_OK);
        return printer;
    }

    static ComPtr<PrintJob> OpenJob(DWORD jobId)
    {
        ComPtr<PrintJob> job;
        EXPECT_EQ(CreateInstance(job.GetAddressOf()), S_OK);
        const OBstr text = ToBstr(OString(World::printerName));
        EXPECT_EQ(job->Initialize(text.Get(), static_cast<long>(jobId)), S_OK);
        return job;
    }

    static ComPtr<IPrintQueue> QueueOf(Printer& printer)
    {
        ComPtr<IPrintQueue> queue;
        EXPECT_EQ(printer.get_Queue(&queue), S_OK);
        return queue;
    }

    static Connection Connect(PrintJob& job, IUnknown* sink)
    {
        return Connection(static_cast<IPrintJob*>(&job), __uuidof(_IPrintJobEvents), sink);
    }
    static Connection Connect(IPrintQueue& queue, IUnknown* sink)
    {
        return Connection(&queue, __uuidof(_IPrintQueueEvents), sink);
    }
    static Connection Connect(Printer& printer, IUnknown* sink)
    {
        return Connection(static_cast<IPrinter*>(&printer), __uuidof(_IPrinterEvents), sink);
    }

    /// A sink that only writes down what it hears.
    template <class Source>
    Connection Watch(Source& source, std::string name)
    {
        constexpr bool isPrinter = std::is_same_v<Source, Printer>;
        return Connect(source,
                       EventSink::Create(log, std::move(name), isPrinter ? PrinterEventName : JobEventName).Get());
    }

    /// Lets the thread hear the end of every job that it was told of: one that queue sinks know keeps its printer open.
    void EndJobs()
    {
        const auto printer = OpenPrinter();
        const Connection sink = Watch(*QueueOf(*printer.Get()).Get(), "end");
        for (const DWORD jobId : _jobsTold) Tell({Status(jobId, JOB_STATUS_RESTART | JOB_STATUS_DELETED)});
    }

    /// Lets the thread handle one batch and gives what the sinks were told.
    Lines Tell(ScriptedBatch batch)
    {
        for (const ScriptedEntry& entry : batch.entries) {
            if (entry.type == JOB_NOTIFY_TYPE) _jobsTold.insert(entry.id);
        }
        notices.Queue(std::move(batch));
        EXPECT_TRUE(notices.WaitUntilIdle()) << "the thread doesn't come back";
        return log.Take();
    }

    static ScriptedEntry Status(DWORD jobId, DWORD status)
    {
        return ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_STATUS, status);
    }

    /// A batch in which the job is new and waiting.
    static ScriptedBatch NewJob(DWORD jobId) { return {PRINTER_CHANGE_ADD_JOB, {Status(jobId, 0)}}; }

    EventLog log;
    ScriptedNotices notices;

private:
    std::set<DWORD> _jobsTold;
    /// A thread that is stopped is asked again at once, not after 100 ms.
    const ImportHook<decltype(::Sleep)> _noSleep{"Sleep", [](DWORD) { ::SwitchToThread(); }};
};

using TrackingTest = TrackingTestOn<SpoolerTest>;

/// A client that has the printer and its queue; there is one job.
class OpenPrinterTest : public TrackingTest {
protected:
    void SetUp() override
    {
        TrackingTest::SetUp();
        jobId = AddJob({});
        printer = OpenPrinter();
        queue = QueueOf(*printer.Get());
    }

    void TearDown() override
    {
        LetGo();
        TrackingTest::TearDown();
    }

    void LetGo()
    {
        queue.Reset();
        printer.Reset();
    }

    DWORD jobId = 0;
    ComPtr<Printer> printer;
    ComPtr<IPrintQueue> queue;
};
