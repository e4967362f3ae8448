// SPDX-License-Identifier: MIT
#pragma once

#include "support/Eventually.h"
#include "support/com/EventSink.h"
#include "support/com/JobAnswers.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductWaits.h"
#include "support/spooler/QueuedJob.h"

#include <utility>
#include <vector>

/// The product over a printer with one queued job. A test connects sinks, lets the spooler tell something, and looks at
/// what they have heard.
class JobClientTest : public IntegrationTest {
protected:
    using Lines = std::vector<std::string>;

    void SetUp() override
    {
        IntegrationTest::SetUp();
        jobId = AddJob(QueuedJob());
    }

    /// The thread of a printer may still be letting go of its own objects when the client has let go of his.
    void TearDown() override
    {
        EXPECT_TRUE(Eventually(IsUnloadable)) << "an object is left";
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        IntegrationTest::TearDown();
    }

    static bool IsUnloadable() { return Product().CanUnloadNow() == S_OK && ::SpoolerOpenNotifications() == 0; }

    static HRESULT Bind(IPrintJob& job, DWORD id, std::wstring_view name = printerName)
    {
        return job.Initialize(NewBstr(name).Get(), static_cast<long>(id));
    }

    static ComPtr<IPrintJob> OpenJob(DWORD id)
    {
        const auto job = Create<IPrintJob>(__uuidof(PrintJob));
        EXPECT_EQ(Bind(*job.Get(), id), S_OK);
        return job;
    }

    static ComPtr<IPrintQueue> QueueOf(IPrinter& printer)
    {
        ComPtr<IPrintQueue> queue;
        EXPECT_EQ(printer.get_Queue(&queue), S_OK);
        return queue;
    }

    using IntegrationTest::StatusOf;
    static ComPtr<IPrintJobStatus> StatusOf(IPrintJob& job)
    {
        ComPtr<IPrintJobStatus> status;
        EXPECT_EQ(job.get_Status(&status), S_OK);
        return status;
    }

    static ComPtr<IPrintJobSchedule> ScheduleOf(IPrintJob& job)
    {
        ComPtr<IPrintJobSchedule> schedule;
        EXPECT_EQ(job.get_Schedule(&schedule), S_OK);
        return schedule;
    }

    /// A sink that only writes down what it hears.
    template <class Source>
    Connection Watch(Source& source, std::string name)
    {
        constexpr bool isPrinter = std::is_same_v<Source, IPrinter>;
        return Connect(source,
                       EventSink::Create(log, std::move(name), isPrinter ? PrinterEventName : JobEventName).Get());
    }

    /// The last of such calls that the spooler got; all zero without one.
    static SpoolerCallRecord LastCall(SpoolerCall call)
    {
        SpoolerCallRecord last{};
        for (const SpoolerCallRecord& record : SpoolerLog()) {
            if (record.call == call) last = record;
        }
        return last;
    }

    static SpoolerNotifyEntry Status(DWORD id, DWORD status)
    {
        return {.field = JOB_NOTIFY_FIELD_STATUS, .id = id, .number = status};
    }

    /// Lets the spooler tell a batch and gives what the sinks were told.
    Lines Tell(const std::vector<SpoolerNotifyEntry>& entries, DWORD change = PRINTER_CHANGE_SET_JOB)
    {
        EXPECT_EQ(::SpoolerQueueBatch(printerName, change, entries), 0u);
        return Heard();
    }

    /// What the sinks were told, when everything that the spooler has told so far is handled.
    Lines Heard()
    {
        EXPECT_TRUE(_waits.WaitUntilIdle()) << "a notification thread doesn't come back";
        return log.Take();
    }

    EventLog log;
    DWORD jobId = 0;

private:
    const ProductWaits _waits{Product()};
};
