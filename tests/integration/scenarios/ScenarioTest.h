// SPDX-License-Identifier: MIT
#pragma once

#include "support/Eventually.h"
#include "support/product/EventClientTest.h"
#include "support/spooler/FieldDocument.h"
#include "support/spooler/HeldCall.h"

#include <gmock/gmock.h>

#include <functional>

/// A label printer in the field that prints a step at a time, and a client that has its queue in the product. Sinks
/// write down what they hear. Whatever was told and not asked for fails the test.
class ScenarioTest : public EventClientTest {
protected:
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
        EventClientTest::SetUp();
        ASSERT_EQ(Product().CanUnloadNow(), S_OK) << "an earlier test left an object";
        printer = BoundPrinter();
        queue = QueueOf(*printer.Get());
    }

    void TearDown() override
    {
        if (!printer && HasFatalFailure()) return SpoolerTest::TearDown(); // it never began
        LetGo();
        EXPECT_THAT(log.Take(), testing::IsEmpty()) << "more was told";
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        EventClientTest::TearDown();
    }

    /// The client ends. Its last hold may be closed on a thread of the system.
    void LetGo()
    {
        queue.Reset();
        printer.Reset();
        EXPECT_TRUE(Eventually([] { return Product().CanUnloadNow() == S_OK; })) << "an object is left";
    }

    /// Does the steps one by one, each seen by the product before the next; gives what was told.
    Lines Step(DWORD steps = spoolerAllSteps, const wchar_t* name = printerName)
    {
        Settle();
        for (DWORD done = 1; steps > 0 && done > 0; --steps) {
            EXPECT_EQ(::SpoolerStep(name, 1, &done), 0u);
            Settle();
        }
        return log.Take();
    }

    /// Whatever `work` brings about reaches the product in one batch: `work` must give it something to fetch.
    Lines InOneBatch(const std::function<void()>& work)
    {
        Settle();
        {
            const HeldCall fetch(SpoolerCall::FindNextPrinterChangeNotification);
            work();
            EXPECT_TRUE(fetch.WaitUntilMade());
        }
        return Heard();
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

    ComPtr<IPrinter> printer;
    ComPtr<IPrintQueue> queue;
};
