// SPDX-License-Identifier: MIT
#include "vrl/classes/Printer.h"

#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Answer.h"
#include "support/com/BstrText.h"
#include "support/com/Getters.h"
#include "support/com/ScriptedSink.h"
#include "support/spooler/HeldCall.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/classes/PrintQueue.h"
#include "vrl/classes/PrinterCapabilities.h"
#include "vrl/classes/PrinterConfiguration.h"
#include "vrl/classes/PrinterPort.h"
#include "vrl/classes/PrinterStatus.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Module.h"

#include <gmock/gmock.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;
using ::testing::Contains;

class PrinterTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ASSERT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        printer.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        SpoolerTest::TearDown();
    }

    static void AddPrinterNamed(const wchar_t* name)
    {
        SpoolerPrinter other = LabelPrinter();
        other.printerName = name;
        AddPrinter(other);
    }

    HRESULT Initialize(const wchar_t* name) { return printer->Initialize(NewBstr(name).Get()); }

    std::wstring Text(HRESULT (STDMETHODCALLTYPE IPrinter::*get)(BSTR*))
    {
        OwnedBstr text;
        EXPECT_EQ((printer.Get()->*get)(text.Receive()), S_OK);
        return TextOf(text.Get());
    }

    std::wstring Name() { return Text(&IPrinter::get_Name); }

    /// What the status says, which is that of the printer that it is bound to.
    std::wstring StatusText()
    {
        ComPtr<IPrinterStatus> status;
        EXPECT_EQ(printer->get_Status(&status), S_OK);
        OwnedBstr text;
        EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
        return TextOf(text.Get());
    }

    ComPtr<Printer> printer;
    std::vector<BYTE> buffer;
};

// Binding

TEST_F(PrinterTest, CreationTouchesNoSpooler)
{
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterTest, InitializeOpensThePrinterOnceForAllItsParts)
{
    EXPECT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrinterTest, NameIsTheOneGivenAndNotTheSpoolersSpelling)
{
    EXPECT_EQ(Initialize(L"lAbEl"), S_OK);
    EXPECT_EQ(Name(), L"lAbEl");
}

TEST_F(PrinterTest, EqualNameInOtherLettersKeepsThePrinterAndItsName)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"LABEL"), S_OK);
    EXPECT_EQ(Name(), L"Label");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrinterTest, OtherNameGivesTheOldPrinterBackForAllParts)
{
    AddPrinterNamed(L"Other");
    ::SpoolerSetPrinterStatus(L"Other", PRINTER_STATUS_DOOR_OPEN);
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"Other"), S_OK);
    EXPECT_EQ(Name(), L"Other");
    EXPECT_EQ(StatusText(), L"Door Open");
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrinterTest, OldPrinterGoesBeforeTheNewOneIsOpened)
{
    AddPrinterNamed(L"Other");
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    const HeldCall opening(SpoolerCall::OpenPrinterW);
    const BackgroundCall initialize([this] { EXPECT_EQ(Initialize(L"Other"), S_OK); });
    ASSERT_TRUE(opening.WaitUntilMade());
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
    opening.Release();
    EXPECT_TRUE(initialize.Ends());
}

TEST_F(PrinterTest, UnknownNameFailsAndAGoodOneBindsItAfterwards)
{
    EXPECT_EQ(AnswerOf(Initialize(L"No such printer")), couldNotOpenPrinter);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
    EXPECT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Name(), L"Label");
}

TEST_F(PrinterTest, FailureOfANewNameUnbindsTheObjectAndLeavesItsPartsWithTheOldPrinter)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(AnswerOf(Initialize(L"No such printer")), couldNotOpenPrinter);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
    EXPECT_EQ(StatusText(), L"Paper Out");
}

TEST_F(PrinterTest, OldNameBindsTheObjectAgainAfterTheFailureOfANewOne)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    Initialize(L"No such printer");
    EXPECT_EQ(Initialize(L"LABEL"), S_OK);
    EXPECT_EQ(Name(), L"Label");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW, spoolerAnyLevel, L"Label"), 1u);
}

TEST_F(PrinterTest, TwoObjectsOfOneNameShareThePrinter)
{
    ComPtr<Printer> second;
    ASSERT_EQ(CreateInstance(second.GetAddressOf()), S_OK);
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    ASSERT_EQ(second->Initialize(NewBstr(L"lABEL").Get()), S_OK);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrinterTest, PartFailingToBindEndsTheBindingAndTheObjectStaysInitialized)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK); // whatever is made once is made now
    std::vector<Answer> answers;
    std::set<bool> bound;
    for (int allowed = 0;; ++allowed) {
        printer.Reset();
        ASSERT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        const auto name = NewBstr(L"Label");
        HRESULT result = S_OK;
        bool failed = false;
        {
            const AllocationFailure failure(allowed);
            result = printer->Initialize(name.Get());
            failed = AllocationFailure::Happened();
        }
        if (!failed) break;
        answers.push_back(AnswerOf(result));
        OwnedBstr read;
        if (FAILED(result)) bound.insert(printer->get_Name(read.Receive()) == S_OK);
    }
    EXPECT_THAT(answers, Contains(outOfMemory));
    EXPECT_EQ(bound, (std::set<bool>{false, true})); // failed before the object was bound, and at one of its parts
}

TEST_F(PrinterTest, BoundPrinterHoldsSevenCounts)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    XPrinter* const shared = XPrinterPool::Acquire(OString("Label"));
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(XPrinterPool::GetCount(), 1) << i;
        XPrinterPool::Release(shared);
    }
    EXPECT_EQ(XPrinterPool::GetCount(), 1); // seven of eight are gone
    for (int i = 0; i < 6; ++i) XPrinterPool::Acquire(OString("Label"));
}

// Threads

TEST_F(PrinterTest, MemberWorksOnItsPrinterToTheEndWhileTheObjectIsBoundToAnother)
{
    AddPrinterNamed(L"Other");
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    std::wstring comment;
    const HeldCall read(SpoolerCall::GetPrinterW);
    const BackgroundCall reader([&] { comment = Text(&IPrinter::get_Comment); });
    ASSERT_TRUE(read.WaitUntilMade());
    EXPECT_EQ(Initialize(L"Other"), S_OK);
    EXPECT_EQ(XPrinterPool::GetCount(), 2); // the reader has the old one still
    read.Release();
    ASSERT_TRUE(reader.Ends());
    EXPECT_EQ(comment, L"Shipping labels");
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrinterTest, ReaderOfPartsAndPrinterNeverMeetsAnUnboundObjectWhileTheNameStaysTheSame)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    ComPtr<IPrinterStatus> status;
    ASSERT_EQ(printer->get_Status(&status), S_OK);
    std::atomic<bool> done = false;
    int unbound = 0;
    std::jthread reader([&] {
        while (!done) {
            OwnedBstr name;
            unsigned long pages = 0;
            if (FAILED(printer->get_Name(name.Receive()))) ++unbound;
            if (FAILED(status->get_OdometerPages(&pages))) ++unbound;
        }
    });
    for (int i = 0; i < 1500; ++i) Initialize(i % 2 ? L"Label" : L"LABEL");
    done = true;
    reader.join();
    EXPECT_EQ(unbound, 0);
}

TEST_F(PrinterTest, ReadersAndTwoBindersAtOnceEndWell)
{
    AddPrinterNamed(L"Other");
    std::atomic<int> binders = 2;
    const auto bind = [&] {
        for (int i = 0; i < 150; ++i) Initialize(i % 2 ? L"Label" : L"Other");
        --binders;
    };
    std::vector<std::jthread> threads;
    threads.emplace_back(bind);
    threads.emplace_back(bind);
    threads.emplace_back([&] {
        while (binders > 0) {
            OwnedBstr text;
            const HRESULT result = printer->get_Comment(text.Receive());
            if (result != S_OK && result != printerNotInitialized.result) ADD_FAILURE() << std::hex << result;
        }
    });
    threads.clear();
    EXPECT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"Other"), S_OK);
    EXPECT_EQ(Name(), L"Other");
}

// Properties

TEST_F(PrinterTest, TextGettersReadTheirField)
{
    static constexpr struct {
        HRESULT (STDMETHODCALLTYPE IPrinter::*get)(BSTR*);
        const wchar_t* text;
    } rows[] = {
        {&IPrinter::get_Name,       L"Label"          },
        {&IPrinter::get_ServerName, L"\\\\STORE"      },
        {&IPrinter::get_ShareName,  L"LABELS"         },
        {&IPrinter::get_PortName,   L"LPT1:"          },
        {&IPrinter::get_ModelName,  L"Label Driver"   },
        {&IPrinter::get_Comment,    L"Shipping labels"},
        {&IPrinter::get_Location,   L"Gate 7"         },
    };
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    for (const auto& row : rows) EXPECT_EQ(Text(row.get), row.text);
}

TEST_F(PrinterTest, FlagGettersReadTheirBit)
{
    static constexpr struct {
        HRESULT (STDMETHODCALLTYPE IPrinter::*get)(VARIANT_BOOL*);
        DWORD bit;
    } rows[] = {
        {&IPrinter::get_Local,   PRINTER_ATTRIBUTE_LOCAL  },
        {&IPrinter::get_Network, PRINTER_ATTRIBUTE_NETWORK},
        {&IPrinter::get_Shared,  PRINTER_ATTRIBUTE_SHARED },
    };
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    for (const auto& row : rows) {
        VARIANT_BOOL value = 99;
        ::SpoolerSetPrinterAttributes(printerName, row.bit);
        EXPECT_EQ((printer.Get()->*row.get)(&value), S_OK);
        EXPECT_EQ(value, -1) << row.bit;
        ::SpoolerSetPrinterAttributes(printerName, ~row.bit);
        EXPECT_EQ((printer.Get()->*row.get)(&value), S_OK);
        EXPECT_EQ(value, 0) << row.bit;
    }
}

TEST_F(PrinterTest, TextSettersWriteTheirField)
{
    static constexpr struct {
        HRESULT (STDMETHODCALLTYPE IPrinter::*put)(BSTR);
        wchar_t* PRINTER_INFO_2W::*field;
        const wchar_t* value;
    } rows[] = {
        {&IPrinter::put_ShareName, &PRINTER_INFO_2W::pShareName, L"SHELF 12"                   },
        {&IPrinter::put_PortName,  &PRINTER_INFO_2W::pPortName,  L"LPT2:"                      },
        {&IPrinter::put_Comment,   &PRINTER_INFO_2W::pComment,   L"Returns \u2014 \u8FD4\u54C1"},
        {&IPrinter::put_Location,  &PRINTER_INFO_2W::pLocation,  L"Gate 8"                     },
    };
    ::SpoolerAddPort({.name = L"LPT2:"});
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    for (const auto& row : rows) {
        EXPECT_EQ((printer.Get()->*row.put)(NewBstr(row.value).Get()), S_OK);
        EXPECT_STREQ(Peek(buffer).*row.field, row.value);
    }
}

TEST_F(PrinterTest, SharedSetterTurnsSharingOffAndOn)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(printer->put_Shared(VARIANT_FALSE), S_OK);
    EXPECT_EQ(Peek(buffer).Attributes & PRINTER_ATTRIBUTE_SHARED, 0u);
    EXPECT_EQ(printer->put_Shared(VARIANT_TRUE), S_OK);
    EXPECT_NE(Peek(buffer).Attributes & PRINTER_ATTRIBUTE_SHARED, 0u);
}

TEST_F(PrinterTest, SettersPassOnWhatTheSpoolerRefuses)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(AnswerOf(printer->put_PortName(NewBstr(L"COM77:").Get())), invalidPort);
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"a,b").Get())), shareNameNotValid);
    FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_FALSE)), SystemAnswer(ERROR_ACCESS_DENIED));
}

TEST_F(PrinterTest, SettersFailUnbound)
{
    EXPECT_EQ(AnswerOf(printer->put_ShareName(nullptr)), printerNotInitialized);
    EXPECT_EQ(AnswerOf(printer->put_PortName(nullptr)), printerNotInitialized);
    EXPECT_EQ(AnswerOf(printer->put_Comment(nullptr)), printerNotInitialized);
    EXPECT_EQ(AnswerOf(printer->put_Location(nullptr)), printerNotInitialized);
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_TRUE)), printerNotInitialized);
    EXPECT_EQ(AnswerOf(printer->SendFile(nullptr, nullptr)), printerNotInitialized);
}

// The order of the checks

std::vector<PrinterGetter> AllGetters()
{
    std::vector<PrinterGetter> getters(std::begin(printerTexts), std::end(printerTexts));
    getters.insert(getters.end(), std::begin(printerFlags), std::end(printerFlags));
    getters.insert(getters.end(), std::begin(printerChildren), std::end(printerChildren));
    return getters;
}

TEST_F(PrinterTest, GettersTestBindingAndOutPointerEachInItsOwnOrder)
{
    for (const PrinterGetter& getter : AllGetters()) {
        const bool bindingFirst = getter.first == PrinterGetter::First::Binding;
        EXPECT_EQ(AnswerOf(getter.call(*printer.Get(), nullptr)),
                  bindingFirst ? printerNotInitialized : invalidArgument)
            << getter;
    }
}

TEST_F(PrinterTest, GettersRefuseANullOutPointerBound)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    for (const PrinterGetter& getter : AllGetters()) {
        EXPECT_EQ(AnswerOf(getter.call(*printer.Get(), nullptr)), invalidArgument) << getter;
    }
}

TEST_F(PrinterTest, GettersOfTextsAndFlagsFailUnbound)
{
    const auto expectFailure = [&](const PrinterGetter& getter) {
        BYTE out[16] = {};
        EXPECT_EQ(AnswerOf(getter.call(*printer.Get(), out)), printerNotInitialized) << getter;
    };
    for (const PrinterGetter& getter : printerTexts) expectFailure(getter);
    for (const PrinterGetter& getter : printerFlags) expectFailure(getter);
}

// Files

TEST_F(PrinterTest, SendsAFileUnderTheNameOfTheJob)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", std::string("^XA\0^XZ\n", 8));
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(file).Get(), NewBstr(L"Order 12").Get())), succeeded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 1u);
    const auto log = SpoolerLog();
    const auto started = std::ranges::find(log, SpoolerCall::StartDocPrinterW, &SpoolerCallRecord::call);
    EXPECT_STREQ(started->document, L"Order 12");
    const auto bytes = SpoolerJobBytes(printerName, started->jobId);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), std::string("^XA\0^XZ\n", 8));
}

TEST_F(PrinterTest, FileThatCannotBeSentSaysFalseAndIsNoFailure)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(L"C:\\no such file.lbl").Get(), nullptr)), saysFalse);
}

// Parts

TEST_F(PrinterTest, PartsAreThereBeforeTheBindingAndStayTheSame)
{
    std::set<IDispatch*> parts;
    for (const PrinterGetter& getter : printerChildren) {
        ComPtr<IDispatch> unbound;
        EXPECT_EQ(getter.call(*printer.Get(), unbound.GetAddressOf()), S_OK) << getter;
        ASSERT_EQ(Initialize(L"Label"), S_OK);
        ComPtr<IDispatch> bound;
        EXPECT_EQ(getter.call(*printer.Get(), bound.GetAddressOf()), S_OK) << getter;
        EXPECT_EQ(bound.Get(), unbound.Get()) << getter;
        parts.insert(bound.Get());
    }
    EXPECT_EQ(parts.size(), std::size(printerChildren));
}

TEST_F(PrinterTest, EachPartKeepsThePrinterOpenWhenItsParentHasGone)
{
    for (const PrinterGetter& getter : printerChildren) {
        ComPtr<Printer> parent;
        ASSERT_EQ(CreateInstance(parent.GetAddressOf()), S_OK);
        ASSERT_EQ(parent->Initialize(NewBstr(printerName).Get()), S_OK);
        ComPtr<IDispatch> part;
        EXPECT_EQ(getter.call(*parent.Get(), part.GetAddressOf()), S_OK);
        parent.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 1) << getter;
        part.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0) << getter;
    }
}

TEST_F(PrinterTest, PartsGoAtTheEndAfterThePrinterIsGivenBack)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    printer.Reset();
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
    EXPECT_TRUE(Module::IsIdle());
}

// Sinks

class PrinterSinkTest : public PrinterTest {
protected:
    void SetUp() override
    {
        PrinterTest::SetUp();
        ASSERT_EQ(printer->ConnectionPointContainer()->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
    }

    void TearDown() override
    {
        Drop();
        watched.Release();
        PrinterTest::TearDown();
        EXPECT_EQ(sink.references, 0u);
    }

    void Drop()
    {
        point.Reset();
        printer.Reset();
    }

    /// Binds the object, and holds its printer for the test.
    void Bind()
    {
        ASSERT_EQ(Initialize(L"Label"), S_OK);
        watched = XPrinterRef::Acquire(OString(printerName));
    }

    DWORD Advise()
    {
        DWORD cookie = 0;
        EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
        return cookie;
    }

    ScriptedSink sink;
    ComPtr<IConnectionPoint> point;
    XPrinterRef watched;
};

TEST_F(PrinterSinkTest, UnboundObjectRefusesASinkAndTakesItOnceItIsBound)
{
    DWORD cookie = 99;
    EXPECT_EQ(AnswerOf(point->Advise(&sink, &cookie)), (Answer{E_POINTER, ""}));
    Bind();
    Advise();
    EXPECT_TRUE(watched->HasPrinterReferences());
}

TEST_F(PrinterSinkTest, UnboundObjectHasNothingToDisconnect)
{
    EXPECT_EQ(point->Unadvise(1), CONNECT_E_NOCONNECTION);
}

TEST_F(PrinterSinkTest, ObjectIsListedFromItsFirstSinkToItsLast)
{
    Bind();
    EXPECT_FALSE(watched->HasPrinterReferences());
    const DWORD first = Advise();
    const DWORD second = Advise();
    EXPECT_TRUE(watched->HasPrinterReferences());
    point->Unadvise(first);
    EXPECT_TRUE(watched->HasPrinterReferences());
    point->Unadvise(second);
    EXPECT_FALSE(watched->HasPrinterReferences());
}

TEST_F(PrinterSinkTest, ObjectIsListedBeforeTheSinkIsAskedAndUnlistedBeforeItIsReleased)
{
    Bind();
    bool listedWhenAsked = false;
    bool listedWhenReleased = true;
    sink.onQueryInterface = [&] { listedWhenAsked = watched->HasPrinterReferences(); };
    const DWORD cookie = Advise();
    sink.onRelease = [&] { listedWhenReleased = watched->HasPrinterReferences(); };
    point->Unadvise(cookie);
    sink.onRelease = nullptr;
    EXPECT_TRUE(listedWhenAsked);
    EXPECT_FALSE(listedWhenReleased);
}

TEST_F(PrinterSinkTest, ListFiresWithThePrinterItself)
{
    Bind();
    Advise();
    DISPID event = 0;
    sink.onInvoke = [&](DISPID id, DISPPARAMS* parameters) {
        event = id;
        EXPECT_EQ(parameters->cArgs, 1u);
        EXPECT_EQ(parameters->rgvarg[0].pdispVal, static_cast<IPrinter*>(printer.Get()));
        return S_OK;
    };
    watched->LockPrinterReferences().ForEach([](SinkOwner& owner, IDispatch* identity) {
        EventArguments arguments;
        arguments.AppendAtEnd(identity);
        owner.Fire(4, arguments);
    });
    EXPECT_EQ(event, 4);
}

TEST_F(PrinterSinkTest, NewNameLeavesTheObjectWithTheEventsOfTheOldPrinter)
{
    AddPrinterNamed(L"Other");
    Bind();
    const DWORD cookie = Advise();
    ASSERT_EQ(Initialize(L"Other"), S_OK);
    EXPECT_TRUE(watched->HasPrinterReferences());
    const XPrinterRef other = XPrinterRef::Acquire(OString("Other"));
    EXPECT_FALSE(other->HasPrinterReferences());
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_TRUE(watched->HasPrinterReferences()); // looked for in the other's list
}

TEST_F(PrinterSinkTest, ObjectThatDiesWithASinkLeavesItsList)
{
    Bind();
    Advise();
    Drop();
    EXPECT_FALSE(watched->HasPrinterReferences());
}

TEST_F(PrinterSinkTest, ObjectThatDiesLeavesTheListOfItsOldPrinterToo)
{
    AddPrinterNamed(L"Other");
    Bind();
    const DWORD cookie = Advise();
    ASSERT_EQ(Initialize(L"Other"), S_OK);
    point->Unadvise(cookie);
    Advise();
    const XPrinterRef other = XPrinterRef::Acquire(OString("Other"));
    EXPECT_TRUE(other->HasPrinterReferences());
    Drop();
    EXPECT_FALSE(watched->HasPrinterReferences());
    EXPECT_FALSE(other->HasPrinterReferences());
}

TEST_F(PrinterSinkTest, OldPrinterMayGoWhileTheObjectStandsInItsList)
{
    AddPrinterNamed(L"Other");
    Bind();
    Advise();
    ASSERT_EQ(Initialize(L"Other"), S_OK);
    watched.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    Drop();
    EXPECT_EQ(sink.references, 0u);
}

TEST_F(PrinterSinkTest, SinkThatGoesWithTheObjectStillMeetsItBound)
{
    Bind();
    Advise();
    HRESULT result = E_FAIL;
    sink.onRelease = [&, raw = printer.Get()] {
        OwnedBstr name;
        result = raw->get_Name(name.Receive());
    };
    Drop();
    sink.onRelease = nullptr;
    EXPECT_EQ(result, S_OK);
}

TEST_F(PrinterSinkTest, FirstSinkForWhichThereIsNoMemoryLeavesTheNextTheFirst)
{
    Bind();
    DWORD cookie = 99;
    HRESULT result = S_OK;
    {
        const AllocationFailure failure(0);
        result = point->Advise(&sink, &cookie);
    }
    EXPECT_EQ(AnswerOf(result), outOfMemory);
    EXPECT_EQ(cookie, 0u);
    EXPECT_FALSE(watched->HasPrinterReferences());
    Advise();
    EXPECT_TRUE(watched->HasPrinterReferences());
}

// Creation

TEST(PrinterCreation, FailsWithoutLeakWhereverMemoryRunsOut)
{
    { // whatever is made once for the process is made now
        ComPtr<Printer> warm;
        CreateInstance(warm.GetAddressOf());
        AnswerOf(MethodGuard("Warm::Up", IID_NULL, [] { throw VRException(E_OUTOFMEMORY, "CreateInstance failed"); }));
    }
    const long before = LiveAllocations();
    int allowed = 0;
    for (;; ++allowed) {
        ComPtr<Printer> printer;
        HRESULT result = S_OK;
        bool failed = false;
        {
            const AllocationFailure failure(allowed);
            result = CreateInstance(printer.GetAddressOf());
            failed = AllocationFailure::Happened();
        }
        if (!failed) break;
        EXPECT_EQ(printer, nullptr) << allowed;
        EXPECT_TRUE(Module::IsIdle()) << allowed;
        EXPECT_EQ(AnswerOf(result).result, E_OUTOFMEMORY) << allowed;
    }
    EXPECT_GT(allowed, 6);
    EXPECT_EQ(LiveAllocations(), before);
}

} // namespace
