// SPDX-License-Identifier: MIT
#pragma once

#include "support/Eventually.h"
#include "support/com/EventSink.h"
#include "support/com/JobAnswers.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductWaits.h"
#include "support/spooler/FieldDocument.h"
#include "support/spooler/HeldCall.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

/// A label printer in the field that prints a step at a time, and a client that has its queue in the product. Sinks
/// write down what they hear. Whatever was told and not asked for fails the test.
class ScenarioTest : public IntegrationTest {
protected:
    using Lines = std::vector<std::string>;

    void Furnish() override
    {
        SpoolerPrinter label = LabelPrinter();
        label.attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED;
        label.startTime = label.untilTime = 0; // open all day
        label.pace = SpoolerPace::Stepped;
        AddPrinter(label);
    }

    void SetUp() override
    {
        IntegrationTest::SetUp();
        ASSERT_EQ(Product().CanUnloadNow(), S_OK) << "an earlier test left an object";
        printer = BoundPrinter();
        EXPECT_EQ(printer->get_Queue(&queue), S_OK);
    }

    void TearDown() override
    {
        if (!printer && HasFatalFailure()) return SpoolerTest::TearDown(); // it never began
        LetGo();
        EXPECT_THAT(log.Take(), testing::IsEmpty()) << "more was told";
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        IntegrationTest::TearDown();
    }

    /// The client ends. Its last hold may be closed on a thread of the system.
    void LetGo()
    {
        queue.Reset();
        printer.Reset();
        EXPECT_TRUE(Eventually([] { return Product().CanUnloadNow() == S_OK; })) << "an object is left";
    }

    static ComPtr<IPrintJob> OpenJob(DWORD jobId)
    {
        auto job = Create<IPrintJob>(__uuidof(PrintJob));
        EXPECT_EQ(job->Initialize(NewBstr(printerName).Get(), static_cast<long>(jobId)), S_OK);
        return job;
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

    /// What the sinks were told since the last time, when all that the spooler told has been handled.
    Lines Told()
    {
        EXPECT_TRUE(waits.WaitUntilIdle()) << "a notification thread doesn't come back";
        return log.Take();
    }

    /// Does the steps one by one, each seen by the product before the next; gives what was told.
    Lines Step(DWORD steps = spoolerAllSteps, const wchar_t* name = printerName)
    {
        EXPECT_TRUE(waits.WaitUntilIdle());
        for (DWORD done = 1; steps > 0 && done > 0; --steps) {
            EXPECT_EQ(::SpoolerStep(name, 1, &done), 0u);
            EXPECT_TRUE(waits.WaitUntilIdle());
        }
        return log.Take();
    }

    /// Whatever `work` brings about reaches the product in one batch: `work` must give it something to fetch.
    Lines InOneBatch(const std::function<void()>& work)
    {
        EXPECT_TRUE(waits.WaitUntilIdle());
        {
            const HeldCall fetch(SpoolerCall::FindNextPrinterChangeNotification);
            work();
            EXPECT_TRUE(fetch.WaitUntilMade());
        }
        return Told();
    }

    /// Queues one batch of the spooler, as it stands, and gives what was told.
    Lines Tell(DWORD change, const std::vector<SpoolerNotifyEntry>& entries)
    {
        EXPECT_EQ(SpoolerQueueBatch(printerName, change, entries), 0u);
        return Told();
    }

    static SpoolerNotifyEntry Status(DWORD jobId, DWORD status)
    {
        SpoolerNotifyEntry entry;
        entry.id = jobId;
        entry.number = status;
        return entry;
    }

    /// Spools one page of a document, each call seen by the product before the next.
    DWORD SpoolPage(const wchar_t* name = L"Pallet label")
    {
        FieldDocument document(printerName, name);
        Settle();
        document.StartPage();
        Settle();
        document.Write("TEXT 1,1");
        document.EndPage();
        Settle();
        document.End();
        Settle();
        return document.JobId();
    }

    /// Spools one page of a document, with nobody looking.
    static void SpoolPageUnseen()
    {
        FieldDocument document(printerName);
        document.StartPage();
        document.Write("TEXT 1,1");
        document.EndPage();
        document.End();
    }

    void Settle() { EXPECT_TRUE(waits.WaitUntilIdle()) << "a notification thread doesn't come back"; }

    const ProductWaits waits{Product()};
    EventLog log;
    ComPtr<IPrinter> printer;
    ComPtr<IPrintQueue> queue;
};
