// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/EventSink.h"
#include "support/com/JobAnswers.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductWaits.h"

#include <utility>
#include <vector>

/// The product with clients that listen. A test connects sinks, lets the spooler tell something, and looks at what they
/// have heard.
class EventClientTest : public IntegrationTest {
protected:
    using Lines = std::vector<std::string>;

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

    /// A sink that only writes down what it hears.
    template <class Source>
    Connection Watch(Source& source, std::string name)
    {
        constexpr bool isPrinter = std::is_same_v<Source, IPrinter>;
        auto connection =
            Connect(source, EventSink::Create(log, std::move(name), isPrinter ? PrinterEventName : JobEventName).Get());
        EXPECT_EQ(connection.Result(), S_OK);
        return connection;
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

    /// Waits until everything that the spooler has told so far is handled.
    void Settle() { EXPECT_TRUE(waits.WaitUntilIdle()) << "a notification thread doesn't come back"; }

    /// What the sinks were told since the last time, when everything is handled.
    Lines Heard()
    {
        Settle();
        return log.Take();
    }

    const ProductWaits waits{Product()};
    EventLog log;
};
