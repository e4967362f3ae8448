// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/EventSink.h"
#include "support/Eventually.h"
#include "support/product/IntegrationTest.h"

#include <string>
#include <vector>

/// A bound `Printer`, and sinks that write down what they are told.
class PrinterEventsTest : public IntegrationTest {
protected:
    using Lines = std::vector<std::string>;
    using PrinterHandle = OHandle<::ClosePrinter>;

    static constexpr DWORD patienceMs = 30000;

    void SetUp() override
    {
        IntegrationTest::SetUp();
        printer = BoundPrinter();
    }

    void TearDown() override
    {
        printer.Reset();
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        IntegrationTest::TearDown();
    }

    /// A sink that writes down what it is told, and then answers that.
    Connection Watch(IPrinter& source, std::string name, HRESULT answer = S_OK)
    {
        const auto sink = EventSink::Create(log, std::move(name), PrinterEventName);
        sink->onInvoke = [answer](DISPID, DISPPARAMS*) { return answer; };
        return Connect(source, sink.Get());
    }

    static ComPtr<IPrintQueue> QueueOf(IPrinter& source)
    {
        ComPtr<IPrintQueue> queue;
        EXPECT_EQ(source.get_Queue(&queue), S_OK);
        return queue;
    }

    /// What the sinks of printers were told of all that has happened to the printer so far: sinks are called before the
    /// notice goes back to the spooler.
    Lines Told(const wchar_t* name = printerName)
    {
        EXPECT_EQ(::SpoolerWaitUntilFetched(name, patienceMs), 0u);
        EXPECT_TRUE(Eventually([] { return ::SpoolerUnfreedNotifyBlocks() == 0; }));
        return log.Take();
    }

    static HRESULT SetComment(IPrinter& source, const wchar_t* comment)
    {
        return source.put_Comment(NewBstr(comment).Get());
    }

    /// A handle of another program.
    static PrinterHandle OpenFor(DWORD access)
    {
        PRINTER_DEFAULTSW defaults{nullptr, nullptr, access};
        PrinterHandle handle;
        EXPECT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), handle.Receive(), &defaults));
        return handle;
    }

    EventLog log;
    ComPtr<IPrinter> printer;
};
