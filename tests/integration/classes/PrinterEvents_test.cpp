// SPDX-License-Identifier: MIT
#include "support/product/PrinterEventsTest.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

// What each field of a notice becomes is held by tests/vrl/tracking/PrinterNotificationsHandler_test.cpp. Here: the
// road from a change at the spooler to the sinks of the module's own objects.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PrinterEvents : public PrinterEventsTest {
protected:
    static ComPtr<IPrintJobSchedule> ScheduleOf(IPrinter& source)
    {
        ComPtr<IPrintJobSchedule> schedule;
        EXPECT_EQ(source.get_DefaultSchedule(&schedule), S_OK);
        return schedule;
    }

    /// Another program changes one number of the printer's.
    void ChangeNumber(DWORD PRINTER_INFO_2W::*field, DWORD value)
    {
        Peek(buffer);
        reinterpret_cast<PRINTER_INFO_2W*>(buffer.data())->*field = value;
        const PrinterHandle handle = OpenFor(PRINTER_ACCESS_ADMINISTER);
        EXPECT_TRUE(::SetPrinterW(handle.Get(), 2, buffer.data(), 0));
    }

    std::vector<BYTE> buffer;
};

// Setters come back as events

struct SetterRow {
    const char* name;
    HRESULT (*set)(IPrinter& printer);
    const char* event;
};

class PrinterSetterEvent : public PrinterEvents, public testing::WithParamInterface<SetterRow> {
protected:
    void Furnish() override
    {
        PrinterEvents::Furnish();
        ::SpoolerAddPort({.name = L"LPT2:"});
    }
};

// clang-format off
const SetterRow setterRows[] = {
    {"ShareName", [](IPrinter& printer) { return printer.put_ShareName(NewBstr(L"GATE8").Get()); }, "OnShareNameChanged"},
    {"PortName",  [](IPrinter& printer) { return printer.put_PortName(NewBstr(L"LPT2:").Get()); },  "OnPortNameChanged"},
    {"Comment",   [](IPrinter& printer) { return printer.put_Comment(NewBstr(L"Broad").Get()); },   "OnCommentChanged"},
    {"Location",  [](IPrinter& printer) { return printer.put_Location(NewBstr(L"Hall").Get()); },   "OnLocationChanged"},
};
// clang-format on

TEST_P(PrinterSetterEvent, ComesBackToTheSinkOnce)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(GetParam().set(*printer.Get()), S_OK);
    EXPECT_THAT(Told(), ElementsAre(std::string("printer: ") + GetParam().event + "(printer Label)"));
}

TEST_P(PrinterSetterEvent, ComesToTheSinksOfAnotherObjectToo)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(GetParam().set(*BoundPrinter().Get()), S_OK);
    EXPECT_THAT(Told(), ElementsAre(std::string("printer: ") + GetParam().event + "(printer Label)"));
}

TEST_P(PrinterSetterEvent, StaysOutIfTheValueIsTheOldOne)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(GetParam().set(*printer.Get()), S_OK);
    Told();
    EXPECT_EQ(GetParam().set(*printer.Get()), S_OK);
    EXPECT_THAT(Told(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterSetterEvent, testing::ValuesIn(setterRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(PrinterEvents, SharingAPrinterThatHadNoShareNameComesBackAsAShareName)
{
    AddPrinterNamed(L"Office");
    const auto office = BoundPrinter(L"Office");
    const Connection sink = Watch(*office.Get(), "printer");
    EXPECT_EQ(office->put_Shared(VARIANT_TRUE), S_OK);
    EXPECT_THAT(Told(L"Office"), ElementsAre("printer: OnShareNameChanged(printer Office)"));
    EXPECT_EQ(Text(*office.Get(), &IPrinter::get_ShareName), L"Office");
}

TEST_F(PrinterEvents, NoEventTellsThatAPrinterIsNoLongerShared)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(printer->put_Shared(VARIANT_FALSE), S_OK);
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
}

TEST_F(PrinterEvents, TimesOfTheDefaultScheduleComeBack)
{
    const auto schedule = ScheduleOf(*printer.Get());
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(schedule->put_StartTime(NewBstr(L"03:07").Get()), S_OK);
    EXPECT_THAT(Told(), ElementsAre("printer: OnStartTimeChanged(printer Label)"));
    EXPECT_EQ(schedule->put_UntilTime(NewBstr(L"04:08").Get()), S_OK);
    EXPECT_THAT(Told(), ElementsAre("printer: OnUntilTimeChanged(printer Label)"));
}

TEST_F(PrinterEvents, DefaultPriorityIsNotThePriorityThatEventsTellOf)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(ScheduleOf(*printer.Get())->put_Priority(42), S_OK);
    EXPECT_THAT(Told(), IsEmpty());
    ChangeNumber(&PRINTER_INFO_2W::Priority, 42);
    EXPECT_THAT(Told(), ElementsAre("printer: OnPriorityChanged(printer Label)"));
}

TEST_F(PrinterEvents, OneChangeOfSeveralFieldsRaisesTheEventOfEach)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    Peek(buffer);
    auto& info = *reinterpret_cast<PRINTER_INFO_2W*>(buffer.data());
    info.pComment = const_cast<wchar_t*>(L"Broad");
    info.StartTime = 700;
    info.Priority = 5;
    EXPECT_TRUE(::SetPrinterW(OpenFor(PRINTER_ACCESS_ADMINISTER).Get(), 2, buffer.data(), 0));
    EXPECT_THAT(Told(),
                ElementsAre("printer: OnCommentChanged(printer Label)", //
                            "printer: OnPriorityChanged(printer Label)", "printer: OnStartTimeChanged(printer Label)"));
}

TEST_F(PrinterEvents, ComeOnTheThreadThatFetchesTheNotices)
{
    DWORD sinkThread = 0;
    const auto sink = EventSink::Create(log, "printer", PrinterEventName);
    sink->onInvoke = [&](DISPID, DISPPARAMS*) {
        sinkThread = ::GetCurrentThreadId();
        return S_OK;
    };
    const Connection connection = Connect(*printer.Get(), sink.Get());
    EXPECT_EQ(SetComment(*printer.Get(), L"Broad"), S_OK);
    EXPECT_THAT(Told(), testing::SizeIs(1));
    std::set<DWORD> fetching;
    for (const auto& call : SpoolerLog()) {
        if (call.call == SpoolerCall::FindNextPrinterChangeNotification) fetching.insert(call.threadId);
    }
    EXPECT_THAT(fetching, ElementsAre(sinkThread));
    EXPECT_NE(sinkThread, ::GetCurrentThreadId());
}

TEST_F(PrinterEvents, SinkReadsTheNewValueFromThePrinterItIsGiven)
{
    std::wstring comment;
    const auto sink = EventSink::Create(log, "printer", PrinterEventName);
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        ComPtr<IPrinter> given;
        EXPECT_EQ(parameters->rgvarg[0].pdispVal->QueryInterface(IID_PPV_ARGS(&given)), S_OK);
        comment = Text(*given.Get(), &IPrinter::get_Comment);
        return S_OK;
    };
    const Connection connection = Connect(*printer.Get(), sink.Get());
    EXPECT_EQ(SetComment(*printer.Get(), L"Broad \u8FD4\u54C1"), S_OK);
    EXPECT_THAT(Told(), testing::SizeIs(1));
    EXPECT_EQ(comment, L"Broad \u8FD4\u54C1");
}

// Status

TEST_F(PrinterEvents, PausedAndResumedQueueIsAChangeOfTheStatus)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(QueueOf(*printer.Get())->Pause(), S_OK);
    EXPECT_THAT(Told(), ElementsAre("printer: OnStatusChanged(printer Label)"));
    EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Paused");
    EXPECT_EQ(QueueOf(*printer.Get())->Resume(), S_OK);
    EXPECT_THAT(Told(), ElementsAre("printer: OnStatusChanged(printer Label)"));
}

TEST_F(PrinterEvents, TroubleAtTheDeviceIsAChangeOfTheStatus)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    ::SpoolerSetTrouble(printerName, {.printerStatus = PRINTER_STATUS_PAPER_OUT});
    EXPECT_THAT(Told(), ElementsAre("printer: OnStatusChanged(printer Label)"));
    EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Paper Out");
}

// Who is told what

TEST_F(PrinterEvents, BothSinksOfOnePrinterObjectGetTheSameArguments)
{
    const Connection first = Watch(*printer.Get(), "first");
    const Connection second = Watch(*printer.Get(), "second");
    ::SpoolerRenamePrinter(printerName, L"Shipping");
    EXPECT_THAT(Told(L"Shipping"), ElementsAre("first: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')",
                                               "second: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')"));
}

/// Three `Printer` objects on one printer, each with a sink that keeps which objects it was handed.
class ThreePrinterObjects : public PrinterEvents {
protected:
    static constexpr size_t count = 3;

    void SetUp() override
    {
        PrinterEvents::SetUp();
        objects = {printer, BoundPrinter(L"LABEL"), BoundPrinter()};
        for (size_t i = 0; i < count; ++i) {
            const auto sink = EventSink::Create(log, "sink " + std::to_string(i + 1), PrinterEventName);
            sink->onInvoke = [this, i](DISPID, DISPPARAMS* parameters) {
                handed.at(i).clear();
                for (UINT argument = parameters->cArgs; argument > 0; --argument) {
                    const VARIANT& value = parameters->rgvarg[argument - 1];
                    handed.at(i).push_back(value.vt == VT_DISPATCH ? NumberOf(value.pdispVal) : 0);
                }
                return S_OK;
            };
            connections.at(i) = Connect(*objects.at(i).Get(), sink.Get());
        }
    }

    void TearDown() override
    {
        for (Connection& connection : connections) connection.Close();
        objects = {};
        PrinterEvents::TearDown();
    }

    /// 1, 2 or 3 for one of the objects.
    size_t NumberOf(IDispatch* object) const
    {
        for (size_t i = 0; i < count; ++i) {
            if (object == static_cast<IDispatch*>(objects.at(i).Get())) return i + 1;
        }
        return 99;
    }

    std::array<ComPtr<IPrinter>, count> objects;
    std::array<Connection, count> connections;
    std::array<std::vector<size_t>, count> handed; // as the sink reads them; 0 is no object
};

// Deliberate: the list of arguments grows from object to object, so a sink of the second is given one argument too
// many.
TEST_F(ThreePrinterObjects, EachFurtherSinkIsHandedThePrintersBeforeItsOwnAsWell)
{
    EXPECT_EQ(SetComment(*printer.Get(), L"Broad"), S_OK);
    EXPECT_THAT(Told(), ElementsAre("sink 1: OnCommentChanged(printer Label)",
                                    "sink 2: OnCommentChanged(printer Label, printer Label)",
                                    "sink 3: OnCommentChanged(printer Label, printer Label, printer Label)"));
    EXPECT_THAT(handed[0], ElementsAre(1));
    EXPECT_THAT(handed[1], ElementsAre(2, 1));
    EXPECT_THAT(handed[2], ElementsAre(3, 2, 1));
}

TEST_F(ThreePrinterObjects, NamesOfARenameComeAfterAllThePrinters)
{
    ::SpoolerRenamePrinter(printerName, L"Shipping");
    EXPECT_THAT(Told(L"Shipping"),
                ElementsAre("sink 1: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')",
                            "sink 2: OnPrinterNameChanged(printer Label, printer Label, 'Label', 'Shipping')",
                            "sink 3: OnPrinterNameChanged(printer Label, printer Label, printer Label, 'Label', "
                            "'Shipping')"));
    EXPECT_THAT(handed[2], ElementsAre(3, 2, 1, 0, 0));
}

TEST_F(ThreePrinterObjects, EachEventBeginsItsListOfArgumentsAfresh)
{
    for (const wchar_t* const comment : {L"Broad", L"Narrow"}) {
        EXPECT_EQ(SetComment(*printer.Get(), comment), S_OK);
        Told();
        EXPECT_THAT(handed[2], ElementsAre(3, 2, 1)) << comment;
    }
}

TEST_F(ThreePrinterObjects, ListGrowsOnlyByObjectsThatHaveASinkInTheOrderOfTheirFirst)
{
    connections[0].Close();
    connections[0] = Watch(*objects[0].Get(), "late");
    connections[1].Close();
    EXPECT_EQ(SetComment(*printer.Get(), L"Broad"), S_OK);
    EXPECT_THAT(Told(), ElementsAre("sink 3: OnCommentChanged(printer Label)",
                                    "late: OnCommentChanged(printer Label, printer Label)"));
    EXPECT_THAT(handed[2], ElementsAre(3));
}

struct AnswerRow {
    const char* name;
    HRESULT answer;
};

class SinkAnswer : public PrinterEvents, public testing::WithParamInterface<AnswerRow> {};

TEST_P(SinkAnswer, DisturbsNoOtherSinkAndNoLaterEvent)
{
    const auto second = BoundPrinter();
    const Connection answering = Watch(*printer.Get(), "answering", GetParam().answer);
    const Connection neighbour = Watch(*printer.Get(), "neighbour");
    const Connection other = Watch(*second.Get(), "other");
    for (const wchar_t* const comment : {L"Broad", L"Narrow"}) {
        EXPECT_EQ(SetComment(*printer.Get(), comment), S_OK);
        EXPECT_THAT(Told(), ElementsAre("answering: OnCommentChanged(printer Label)",
                                        "neighbour: OnCommentChanged(printer Label)",
                                        "other: OnCommentChanged(printer Label, printer Label)"));
    }
}

INSTANTIATE_TEST_SUITE_P(Each, SinkAnswer,
                         testing::Values(AnswerRow{"WithoutTheMember", DISP_E_MEMBERNOTFOUND},
                                         AnswerRow{"Failing", E_FAIL}, AnswerRow{"OutOfMemory", E_OUTOFMEMORY},
                                         AnswerRow{"OddSuccess", S_FALSE}),
                         [](const auto& row) { return std::string(row.param.name); });

// Rename

TEST_F(PrinterEvents, RenameComesWithTheOldAndTheNewName)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    ::SpoolerRenamePrinter(L"Label", L"Shipping");
    EXPECT_THAT(Told(L"Shipping"), ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Shipping')"));
    ::SpoolerRenamePrinter(L"Shipping", L"Receiving");
    EXPECT_THAT(Told(L"Receiving"),
                ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Shipping', 'Receiving')"));
}

TEST_F(PrinterEvents, RenameThatNoSinkHeardLeavesAStaleOldName)
{
    const auto queueSink = EventSink::Create(log, "queue");
    const Connection queue(QueueOf(*printer.Get()).Get(), __uuidof(_IPrintQueueEvents), queueSink.Get());
    ::SpoolerRenamePrinter(L"Label", L"Shipping");
    EXPECT_THAT(Told(L"Shipping"), IsEmpty());
    const Connection sink = Watch(*printer.Get(), "printer");
    ::SpoolerRenamePrinter(L"Shipping", L"Receiving");
    EXPECT_THAT(Told(L"Receiving"), ElementsAre("printer: OnPrinterNameChanged(printer Label, 'Label', 'Receiving')"));
}

TEST_F(PrinterEvents, WhatHappensBeforeTheFirstSinkOrAfterTheLastIsNotTold)
{
    EXPECT_EQ(SetComment(*printer.Get(), L"Before"), S_OK);
    Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_EQ(SetComment(*printer.Get(), L"Meanwhile"), S_OK);
    EXPECT_THAT(Told(), ElementsAre("printer: OnCommentChanged(printer Label)"));
    sink.Close();
    EXPECT_EQ(SetComment(*printer.Get(), L"Afterwards"), S_OK);
    EXPECT_THAT(Told(), IsEmpty());
}

} // namespace
