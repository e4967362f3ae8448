// SPDX-License-Identifier: MIT
#include "vrl/tracking/PrinterNotificationsHandler.h"

#include "support/CapturedTrace.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/tracking/TrackingTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A watched `Printer`.
class PrinterNotificationsHandlerTest : public TrackingTest {
protected:
    void SetUp() override
    {
        TrackingTest::SetUp();
        printer = OpenPrinter();
    }

    void TearDown() override
    {
        printer.Reset();
        TrackingTest::TearDown();
    }

    static ScriptedBatch Renamed(const wchar_t* name)
    {
        return {0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_PRINTER_NAME, name)}};
    }

    ComPtr<Printer> printer;
};

struct FieldRow {
    const char* name;
    ScriptedEntry entry;
    const char* event;
    const char* trace;
};

class PrinterField : public PrinterNotificationsHandlerTest, public testing::WithParamInterface<FieldRow> {};

// clang-format off
const FieldRow fieldRows[] = {
    {"ShareName", ScriptedEntry::Printer(2, L"GATE7"), "OnShareNameChanged", "PRINTER_NOTIFY_FIELD_SHARE_NAME: GATE7\n"},
    {"PortName",  ScriptedEntry::Printer(3, L"LPT2:"), "OnPortNameChanged",  "PRINTER_NOTIFY_FIELD_PORT_NAME: LPT2:\n"},
    {"Comment",   ScriptedEntry::Printer(5, L"Broad"), "OnCommentChanged",   "PRINTER_NOTIFY_FIELD_COMMENT: Broad\n"},
    {"Location",  ScriptedEntry::Printer(6, L"Hall"),  "OnLocationChanged",  "PRINTER_NOTIFY_FIELD_LOCATION: Hall\n"},
    {"Priority",  ScriptedEntry::Printer(14, 99),      "OnPriorityChanged",  "PRINTER_NOTIFY_FIELD_PRIORITY: 99\n"},
    {"StartTime", ScriptedEntry::Printer(16, 61),      "OnStartTimeChanged", "PRINTER_NOTIFY_FIELD_START_TIME: 61\n"},
    {"UntilTime", ScriptedEntry::Printer(17, 62),      "OnUntilTimeChanged", "PRINTER_NOTIFY_FIELD_UNTIL_TIME: 62\n"},
    {"Status",    ScriptedEntry::Printer(18, 0x4A),    "OnStatusChanged",    "PRINTER_NOTIFY_FIELD_STATUS: 4a08x\n"},
    {"NullText",  ScriptedEntry::PrinterNull(5),       "OnCommentChanged",   "PRINTER_NOTIFY_FIELD_COMMENT: \n"},
};
// clang-format on

TEST_P(PrinterField, RaisesItsEventWithThePrinterAndWritesItsTrace)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    const CapturedTrace trace;
    EXPECT_THAT(Tell({0, {GetParam().entry}}),
                ElementsAre(std::string("printer: ") + GetParam().event + "(printer Label)"));
    EXPECT_THAT(trace.Lines("PRINTER_NOTIFY_FIELD_"), ElementsAre(GetParam().trace));
}

TEST_P(PrinterField, IsToldAlsoWhenNothingHasChanged)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(Tell({
                       0, {GetParam().entry, GetParam().entry}
    })
                  .size(),
              2u);
}

INSTANTIATE_TEST_SUITE_P(Row, PrinterField, testing::ValuesIn(fieldRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(PrinterNotificationsHandlerTest, FieldThatNobodyAskedForIsDropped)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    for (const WORD field : std::initializer_list<WORD>{0, 4, 7, 8, 12, 13, 15, 19, 20, 27, 999}) {
        EXPECT_THAT(Tell({0, {ScriptedEntry::Printer(field, 1)}}), IsEmpty()) << field;
    }
}

// ---- rename ----

TEST_F(PrinterNotificationsHandlerTest, RenameComesWithTheOldAndTheNewName)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    const CapturedTrace trace;
    EXPECT_THAT(Tell(Renamed(L"Shipping")),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')"));
    EXPECT_THAT(Tell(Renamed(L"Receiving")),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Shipping', 'Receiving')"));
    EXPECT_THAT(trace.Lines("PRINTER_NOTIFY_FIELD_"), ElementsAre("PRINTER_NOTIFY_FIELD_PRINTER_NAME: Shipping\n",
                                                                  "PRINTER_NOTIFY_FIELD_PRINTER_NAME: Receiving\n"));
}

TEST_F(PrinterNotificationsHandlerTest, EmptyNameIsToldAndIsNeverAnOldName)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_THAT(Tell(Renamed(L"")), ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', '')"));
    EXPECT_THAT(Tell({0, {ScriptedEntry::PrinterNull(PRINTER_NOTIFY_FIELD_PRINTER_NAME)}}),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', '')"));
    EXPECT_THAT(Tell(Renamed(L"Shipping")),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')"));
}

TEST_F(PrinterNotificationsHandlerTest, RenameThatNobodyHeardLeavesAStaleOldName)
{
    const Connection queueSink = Watch(*QueueOf(*printer.Get()).Get(), "queue");
    EXPECT_THAT(Tell(Renamed(L"Shipping")), IsEmpty());
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_THAT(Tell(Renamed(L"Receiving")),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Receiving')"));
}

TEST_F(PrinterNotificationsHandlerTest, OldNameIsAtFirstTheOneOfTheSpooler)
{
    printer.Reset();
    printer = OpenPrinter(L"lAbEl");
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_THAT(Tell(Renamed(L"Shipping")),
                ElementsAre("printer: OnPrinterNameChanged(printer lAbEl, 'Label', 'Shipping')"));
}

// ---- who is told ----

TEST_F(PrinterNotificationsHandlerTest, EverySinkOfOnePrinterObjectGetsTheRightArguments)
{
    const Connection first = Watch(*printer.Get(), "first");
    const Connection second = Watch(*printer.Get(), "second");
    EXPECT_THAT(Tell({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}}),
                ElementsAre("first: OnStatusChanged(printer Label)", "second: OnStatusChanged(printer Label)"));
}

TEST_F(PrinterNotificationsHandlerTest, EachFurtherPrinterObjectGetsOneArgumentMore)
{
    const auto second = OpenPrinter();
    const auto third = OpenPrinter();
    const Connection firstSink = Watch(*printer.Get(), "first");
    const Connection secondSink = Watch(*second.Get(), "second");
    const Connection thirdSink = Watch(*third.Get(), "third");
    EXPECT_THAT(Tell(Renamed(L"Shipping")),
                ElementsAre("first: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')",
                            "second: OnPrinterNameChanged(printer Label, printer Label, 'Label', 'Shipping')",
                            "third: OnPrinterNameChanged(printer Label, printer Label, printer Label, 'Label', "
                            "'Shipping')"));
}

TEST_F(PrinterNotificationsHandlerTest, LastArgumentAddedIsTheObjectThatFires)
{
    const auto second = OpenPrinter();
    std::vector<IUnknown*> firstArguments;
    const auto sink = EventSink::Create(log, "printer", PrinterEventName);
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        firstArguments.push_back(parameters->rgvarg[parameters->cArgs - 1].pdispVal);
        return S_OK;
    };
    const Connection firstSink = Connect(*printer.Get(), sink.Get());
    const Connection secondSink = Connect(*second.Get(), sink.Get());
    Tell({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}});
    EXPECT_THAT(firstArguments,
                ElementsAre(static_cast<IPrinter*>(printer.Get()), static_cast<IPrinter*>(second.Get())));
}

TEST_F(PrinterNotificationsHandlerTest, SinkThatLacksTheEventDisturbsNobody)
{
    const auto lacking = EventSink::Create(log, "lacking", PrinterEventName);
    lacking->onInvoke = [](DISPID, DISPPARAMS*) { return DISP_E_MEMBERNOTFOUND; };
    const Connection first = Connect(*printer.Get(), lacking.Get());
    const Connection second = Watch(*printer.Get(), "second");
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(Tell({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_STATUS, 1)}}),
                    ElementsAre("lacking: OnStatusChanged(printer Label)", "second: OnStatusChanged(printer Label)"));
    }
}

TEST_F(PrinterNotificationsHandlerTest, SinkMayReadTheNewValueFromThePrinterItIsGiven)
{
    std::string comment;
    const auto sink = EventSink::Create(log, "printer", PrinterEventName);
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        ComPtr<IPrinter> given;
        parameters->rgvarg[0].pdispVal->QueryInterface(IID_PPV_ARGS(&given));
        OBstr text;
        given->get_Comment(text.Receive());
        comment = FromBstr(text.Get()).nstring();
        return S_OK;
    };
    const Connection connection = Connect(*printer.Get(), sink.Get());
    Tell({0, {ScriptedEntry::Printer(PRINTER_NOTIFY_FIELD_COMMENT, L"ignored")}});
    EXPECT_EQ(comment, "Shipping labels");
}

// ---- odometer ----

TEST_F(PrinterNotificationsHandlerTest, OdometerIsToldWhenPagesHaveBeenPrintedAndOnceOnly)
{
    const DWORD jobId = AddJob({});
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_THAT(Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 2)}),
                ElementsAre("printer: OnOdometerChanged(printer Label)"));
    notices.PassQuietSecond();
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(PrinterNotificationsHandlerTest, OdometerThatChangedWhileNobodyListenedIsToldInTheNextQuietSecond)
{
    const DWORD jobId = AddJob({});
    const Connection queueSink = Watch(*QueueOf(*printer.Get()).Get(), "queue");
    Tell({ScriptedEntry::Job(jobId, JOB_NOTIFY_FIELD_PAGES_PRINTED, 2)});
    notices.PassQuietSecond();
    EXPECT_THAT(log.Take(), IsEmpty());
    const Connection sink = Watch(*printer.Get(), "printer");
    notices.PassQuietSecond();
    EXPECT_THAT(log.Take(), ElementsAre("printer: OnOdometerChanged(printer Label)"));
    notices.PassQuietSecond();
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(PrinterNotificationsHandlerTest, OdometerOfTheStartIsNoChange)
{
    DWORD pages = 7;
    const double distance = 1.5;
    printer.Reset();
    ::SpoolerSetData(printerName, L"Gantry", L"Odometer Pages", REG_DWORD, &pages, sizeof pages);
    ::SpoolerSetData(printerName, L"Gantry", L"Odometer Distance", REG_BINARY, &distance, sizeof distance);
    printer = OpenPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    notices.PassQuietSecond();
    EXPECT_THAT(log.Take(), IsEmpty());
}

} // namespace
