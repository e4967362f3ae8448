// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/RunTogether.h"
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/product/ProductDialogs.h"
#include "support/product/ProductHeap.h"
#include "support/com/RecordingSink.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Getters.h"

#include <gmock/gmock.h>
#include <olectl.h>

#include <algorithm>
#include <functional>
#include <thread>

namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::Gt;
using ::testing::SizeIs;

/// References that are held on an object, of a class of ours.
ULONG ReferencesOf(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

class Lifetime : public IntegrationTest {};

// Counts

TEST_F(Lifetime, ObjectStartsWithOneReference)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(Lifetime, BindingTakesNoReferenceOnThePrinter)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(Lifetime, FailedBindingTakesNoReferenceOnThePrinter)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), L"No such printer")), couldNotOpenPrinter);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(Lifetime, EveryInterfaceSharesOneCount)
{
    const auto printer = CreatePrinter();
    ComPtr<IDispatch> dispatch;
    ComPtr<ISupportErrorInfo> errors;
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(printer.As(&dispatch), S_OK);
    EXPECT_EQ(printer.As(&errors), S_OK);
    EXPECT_EQ(printer.As(&container), S_OK);
    EXPECT_EQ(ReferencesOf(printer.Get()), 4u);
    EXPECT_EQ(ReferencesOf(container.Get()), 4u);
}

TEST_F(Lifetime, RefusedInterfaceTakesNoReference)
{
    const auto printer = CreatePrinter();
    ComPtr<IStream> stream;
    EXPECT_EQ(printer.As(&stream), E_NOINTERFACE);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(Lifetime, AnyInterfaceKeepsTheObjectAlive)
{
    auto printer = BoundPrinter();
    ComPtr<ISupportErrorInfo> errors;
    EXPECT_EQ(printer.As(&errors), S_OK);
    printer.Reset();
    EXPECT_EQ(errors.As(&printer), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(Lifetime, TypeInformationTakesNoReferenceOnTheObject)
{
    const auto printer = CreatePrinter();
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(printer->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type), S_OK);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(Lifetime, TypeInformationOutlivesTheObjectAndLetsTheModuleGo)
{
    auto printer = CreatePrinter();
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(printer->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type), S_OK);
    printer.Reset();
    OwnedBstr name;
    EXPECT_EQ(type->GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(TextOf(name.Get()), L"IPrinter");
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

TEST_F(Lifetime, TypeInformationIsGivenOutWithAReferenceOfTheCallers)
{
    const auto printer = CreatePrinter();
    ComPtr<ITypeInfo> first;
    EXPECT_EQ(printer->GetTypeInfo(0, LOCALE_USER_DEFAULT, &first), S_OK);
    const ULONG before = ReferencesOf(first.Get());
    ComPtr<ITypeInfo> second;
    EXPECT_EQ(printer->GetTypeInfo(0, LOCALE_USER_DEFAULT, &second), S_OK);
    EXPECT_EQ(ReferencesOf(first.Get()), before + 1);
    second.Reset();
    EXPECT_EQ(ReferencesOf(first.Get()), before);
}

TEST_F(Lifetime, LateBoundCallsTakeNoReference)
{
    const auto printer = BoundPrinter();
    const LateBound late(printer.Get());
    const ULONG before = ReferencesOf(printer.Get());
    late.Get("Comment");
    late.Put("Comment", L"New");
    late.Call("Initialize", {L"No such printer"});
    late.Get("NoSuchMember");
    EXPECT_EQ(ReferencesOf(printer.Get()), before);
}

TEST_F(Lifetime, ErrorInformationTakesNoReferenceAndOutlivesTheModulesObjects)
{
    auto printer = CreatePrinter();
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
    printer.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
    EXPECT_EQ(AnswerOf(couldNotOpenPrinter.result), couldNotOpenPrinter);
}

TEST_F(Lifetime, ErrorInformationStaysWithItsThread)
{
    const auto printer = CreatePrinter();
    std::thread([&] { EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result); }).join();
    EXPECT_EQ(AnswerOf(S_OK), succeeded);
}

class LifetimeOfPart : public Lifetime, public ::testing::WithParamInterface<PrinterGetter> {
protected:
    static ComPtr<IUnknown> PartOf(IPrinter& printer)
    {
        ComPtr<IUnknown> part;
        EXPECT_EQ(GetParam().call(printer, part.GetAddressOf()), S_OK);
        return part;
    }
};

TEST_P(LifetimeOfPart, IsCountedOnceByThePrinterAndOnceByEachCaller)
{
    const auto printer = CreatePrinter();
    const auto part = PartOf(*printer.Get());
    EXPECT_EQ(ReferencesOf(part.Get()), 2u);
    const auto again = PartOf(*printer.Get());
    EXPECT_EQ(ReferencesOf(part.Get()), 3u);
}

TEST_P(LifetimeOfPart, TakesNoReferenceOnThePrinter)
{
    const auto printer = BoundPrinter();
    const auto part = PartOf(*printer.Get());
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_P(LifetimeOfPart, IsLeftWithTheCallersReferenceWhenThePrinterGoes)
{
    auto printer = BoundPrinter();
    const auto part = PartOf(*printer.Get());
    printer.Reset();
    EXPECT_EQ(ReferencesOf(part.Get()), 1u);
}

TEST_P(LifetimeOfPart, CanGoFirst)
{
    const auto printer = BoundPrinter();
    auto part = PartOf(*printer.Get());
    part.Reset();
    EXPECT_EQ(PartOf(*printer.Get()).Reset(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Each, LifetimeOfPart, ::testing::ValuesIn(printerChildren), rowName);

// Half-built objects and short memory

class ShortMemory : public Lifetime {
protected:
    static void SetUpTestSuite() { WarmUp(); }

    static constexpr auto internalError = static_cast<HRESULT>(0x8007054F);

    /// What a member answers when it finds no memory: texts take it as an internal failure.
    static auto FailureForWantOfMemory()
    {
        return AnyOf(outOfMemory, Answer{internalError, "ASSERT(core)"}, Answer{internalError, "ASSERT(wdata)"},
                     Answer{internalError, "ASSERT(ndata)"});
    }

    /// Deliberate: a notification thread leaves its handler of printer notices behind, which owns a lock and a name.
    static constexpr size_t blocksOfAnEndedThread = 4;

    static Answer WithoutText(const Answer& answer) { return {answer.result, ""}; }

    /// Runs `scenario` with each block of memory refused in turn that the product asks for in it, and at last with
    /// none. Gives the answers of the runs with a refusal.
    static std::vector<Answer> RefuseEachBlock(const std::function<Answer(ProductHeap& heap, int block)>& scenario,
                                               size_t keptBlocks = 0)
    {
        std::vector<Answer> answers;
        for (bool refused = true; refused;) {
            SCOPED_TRACE(::testing::Message() << "block " << answers.size());
            const ProductDialogs dialogs(Product());
            ProductHeap heap(Product());
            answers.push_back(scenario(heap, static_cast<int>(answers.size())));
            refused = heap.HasRefused();
            EXPECT_LE(heap.LiveBlocks(), keptBlocks);
            EXPECT_EQ(Product().CanUnloadNow(), S_OK);
        }
        EXPECT_EQ(answers.back(), succeeded);
        answers.pop_back();
        return answers;
    }

    /// The same for one member of a bound printer, which has to be in order after it.
    static std::vector<Answer> RefuseEachBlock(const std::function<HRESULT(IPrinter& printer)>& member)
    {
        return RefuseEachBlock([&](ProductHeap& heap, int block) {
            const auto printer = BoundPrinter();
            heap.Refuse(block);
            const Answer answer = AnswerOf(member(*printer.Get()));
            heap.Refill();
            EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ModelName), L"Label Driver");
            return answer;
        });
    }
};

TEST_F(ShortMemory, CreationFailsWholeWhicheverBlockIsRefused)
{
    const auto answers = RefuseEachBlock([](ProductHeap& heap, int block) {
        ComPtr<IPrinter> printer;
        heap.Refuse(block);
        const HRESULT result = Product().CreateInstance(__uuidof(Printer), __uuidof(IPrinter), Address(printer));
        EXPECT_EQ(FAILED(result), printer.Get() == nullptr);
        return WithoutText(AnswerOf(result));
    });
    EXPECT_GE(answers.size(), 7u); // the printer and its six parts at least
    EXPECT_THAT(answers, Each(Answer{E_OUTOFMEMORY, ""}));
}

TEST_F(ShortMemory, PartThatCannotBeMadeIsNamedInTheErrorInformation)
{
    const auto answers = RefuseEachBlock([](ProductHeap& heap, int block) {
        ComPtr<IPrinter> printer;
        heap.Refuse(block);
        return AnswerOf(Product().CreateInstance(__uuidof(Printer), __uuidof(IPrinter), Address(printer)));
    });
    EXPECT_GE(std::ranges::count(answers, Answer{E_OUTOFMEMORY, "CreateInstance failed"}), 6);
}

TEST_F(ShortMemory, BindingFailsOrSucceedsAndCanBeDoneAgain)
{
    const auto answers = RefuseEachBlock([](ProductHeap& heap, int block) {
        const auto printer = CreatePrinter();
        heap.Refuse(block);
        const Answer answer = AnswerOf(Initialize(*printer.Get(), printerName));
        heap.Refill();
        EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), printerName)), succeeded);
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
        EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Ready");
        return answer;
    });
    EXPECT_THAT(answers, Each(AnyOf(FailureForWantOfMemory(), succeeded)));
    EXPECT_THAT(answers, Contains(outOfMemory));
}

TEST_F(ShortMemory, NameFailsForWantOfIt)
{
    EXPECT_THAT(RefuseEachBlock([](IPrinter& printer) {
                    OwnedBstr name;
                    return printer.get_Name(name.Receive());
                }),
                AllOf(SizeIs(Gt(0u)), Each(FailureForWantOfMemory())));
}

// Deliberate: a read of the spooler for which there is no memory is a failed read, and that gives an empty text.
TEST_F(ShortMemory, CommentIsEmptyWithoutABufferAndFailsWithoutAText)
{
    const auto answers = RefuseEachBlock([](IPrinter& printer) {
        OwnedBstr comment;
        return printer.get_Comment(comment.Receive());
    });
    EXPECT_THAT(answers, Each(AnyOf(FailureForWantOfMemory(), succeeded)));
    EXPECT_THAT(answers, Contains(outOfMemory));
    EXPECT_EQ(std::ranges::count(answers, succeeded), 1);
}

TEST_F(ShortMemory, StatusTextFailsOrReadsAsReady)
{
    const auto answers = RefuseEachBlock([](ProductHeap& heap, int block) {
        const auto status = StatusOf(*BoundPrinter().Get());
        OwnedBstr text;
        heap.Refuse(block);
        const Answer answer = AnswerOf(status->get_Text(text.Receive()));
        heap.Refill();
        EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Ready");
        return answer;
    });
    EXPECT_THAT(answers, Each(AnyOf(FailureForWantOfMemory(), succeeded)));
    EXPECT_THAT(answers, Contains(outOfMemory));
}

TEST_F(ShortMemory, FileIsNotSentWithoutABufferForIt)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    const auto answers = RefuseEachBlock(
        [&](IPrinter& printer) { return printer.SendFile(NewBstr(file).Get(), NewBstr(L"Order").Get()); });
    EXPECT_THAT(answers, Each(AnyOf(FailureForWantOfMemory(), saysFalse)));
    EXPECT_EQ(std::ranges::count(answers, saysFalse), 1);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), SpoolerCalls(SpoolerCall::EndDocPrinter));
}

TEST_F(ShortMemory, FailureItselfIsReportedWithoutIt)
{
    const auto answers = RefuseEachBlock([](ProductHeap& heap, int block) {
        const auto printer = CreatePrinter();
        heap.Refuse(block);
        OwnedBstr name;
        const HRESULT result = printer->get_Name(name.Receive());
        heap.Refill();
        EXPECT_THAT(result, AnyOf(printerNotInitialized.result, E_OUTOFMEMORY));
        AnswerOf(result);
        return succeeded;
    });
    EXPECT_FALSE(answers.empty());
}

TEST_F(ShortMemory, SinkIsNotConnectedWithoutIt)
{
    const auto sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
    const auto answers = RefuseEachBlock(
        [&](ProductHeap& heap, int block) {
            const auto printer = BoundPrinter();
            ComPtr<IConnectionPointContainer> container;
            ComPtr<IConnectionPoint> point;
            EXPECT_EQ(printer.As(&container), S_OK);
            EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
            DWORD cookie = 0;
            heap.Refuse(block);
            const HRESULT result = point->Advise(sink.Get(), &cookie);
            heap.Refill();
            EXPECT_EQ(point->Unadvise(cookie), FAILED(result) ? CONNECT_E_NOCONNECTION : S_OK);
            EXPECT_EQ(sink->References(), 1u);
            return WithoutText(AnswerOf(result));
        },
        blocksOfAnEndedThread);
    // Without memory for the printer's name its thread can't watch it, which is no failure of the connection.
    const Answer brokenAssertion{internalError, ""};
    EXPECT_THAT(answers, Each(AnyOf(Answer{E_OUTOFMEMORY, ""}, brokenAssertion, succeeded)));
    EXPECT_THAT(answers, Contains(Answer{E_OUTOFMEMORY, ""}));
}

// Many threads

class ManyThreads : public Lifetime {
protected:
    static constexpr int threadCount = 8;
    static constexpr int rounds = 25;

    static void ReadAll(IPrinter& printer)
    {
        EXPECT_EQ(Text(printer, &IPrinter::get_ModelName), L"Label Driver");
        EXPECT_EQ(Text(printer, &IPrinter::get_PortName), L"LPT1:");
        EXPECT_EQ(Bool(printer, &IPrinter::get_Local), VARIANT_TRUE);
        EXPECT_EQ(Text(*StatusOf(printer).Get(), &IPrinterStatus::get_Text), L"Ready");
    }
};

TEST_F(ManyThreads, EachWithItsOwnObjectsOfOnePrinter)
{
    RunTogether(threadCount, [](int) {
        for (int round = 0; round < rounds; ++round) ReadAll(*BoundPrinter().Get());
    });
}

TEST_F(ManyThreads, EachWithItsOwnPrinter)
{
    RunTogether(threadCount, [](int thread) {
        const std::wstring name = L"Printer " + std::to_wstring(thread);
        AddPrinterNamed(name.c_str());
        for (int round = 0; round < rounds; ++round) {
            const auto printer = BoundPrinter(name);
            EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), name);
            ReadAll(*printer.Get());
        }
    });
}

TEST_F(ManyThreads, ShareOneHandleAsLongAsAnObjectOfThePrinterLives)
{
    const auto printer = BoundPrinter();
    RunTogether(threadCount, [](int) {
        for (int round = 0; round < rounds; ++round) ReadAll(*BoundPrinter(L"LABEL").Get());
    });
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(ManyThreads, ReadAndWriteOneObject)
{
    const auto printer = BoundPrinter();
    RunTogether(threadCount, [&](int thread) {
        const std::wstring comment(static_cast<size_t>(thread) + 1, static_cast<wchar_t>(L'a' + thread));
        for (int round = 0; round < rounds; ++round) {
            EXPECT_EQ(printer->put_Comment(NewBstr(comment).Get()), S_OK);
            const std::wstring read = Text(*printer.Get(), &IPrinter::get_Comment);
            EXPECT_EQ(read, std::wstring(static_cast<size_t>(read.front() - L'a') + 1, read.front())); // one of ours
            ReadAll(*printer.Get());
        }
    });
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(ManyThreads, TakeAndDropTheParts)
{
    const auto printer = BoundPrinter();
    RunTogether(threadCount, [&](int thread) {
        const PrinterGetter& getter = printerChildren[static_cast<size_t>(thread) % std::size(printerChildren)];
        for (int round = 0; round < rounds * 10; ++round) {
            ComPtr<IUnknown> part;
            EXPECT_EQ(getter.call(*printer.Get(), part.GetAddressOf()), S_OK);
        }
    });
    EXPECT_EQ(ReferencesOf(StatusOf(*printer.Get()).Get()), 2u);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(ManyThreads, HoldPartsWhileTheirPrintersGo)
{
    RunTogether(threadCount, [](int) {
        for (int round = 0; round < rounds; ++round) {
            const auto status = StatusOf(*BoundPrinter().Get());
            EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Ready");
        }
    });
}

TEST_F(ManyThreads, FailAndSucceedSideBySideEachWithItsOwnErrorInformation)
{
    RunTogether(threadCount, [](int) {
        const auto printer = CreatePrinter();
        for (int round = 0; round < rounds; ++round) {
            EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), L"No such printer")), couldNotOpenPrinter);
            EXPECT_EQ(AnswerOf(printer->SendFile(nullptr, nullptr)), printerNotInitialized);
            EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), printerName)), succeeded);
            EXPECT_EQ(AnswerOf(printer->get_Name(nullptr)), invalidArgument);
        }
    });
}

TEST_F(ManyThreads, ConnectAndDisconnectSinks)
{
    const auto printer = BoundPrinter();
    const auto sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
    RunTogether(threadCount, [&](int) {
        ComPtr<IConnectionPointContainer> container;
        ComPtr<IConnectionPoint> point;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
        for (int round = 0; round < rounds; ++round) {
            DWORD cookie = 0;
            EXPECT_EQ(point->Advise(sink.Get(), &cookie), S_OK);
            EXPECT_EQ(point->Unadvise(cookie), S_OK);
        }
    });
    EXPECT_EQ(sink->References(), 1u);
    EXPECT_EQ(ReferencesOf(printer.Get()), 1u);
}

TEST_F(ManyThreads, UseOneObjectLateBound)
{
    const auto printer = BoundPrinter();
    RunTogether(threadCount, [&](int) {
        const LateBound late(printer.Get());
        for (int round = 0; round < rounds; ++round) {
            EXPECT_EQ(late.Get("ModelName").value, _variant_t(L"Label Driver"));
            EXPECT_EQ(late.Call("SendFile", {L"C:\\no such file", L""}).result, S_OK);
        }
    });
}

TEST_F(ManyThreads, LastReferenceMayGoOnAnyOfThem)
{
    auto printer = BoundPrinter();
    std::thread([moved = std::move(printer)]() mutable { moved.Reset(); }).join();
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

TEST_F(ManyThreads, WaitForTheSpoolerOnTheirOwnPrinterOnly)
{
    AddPrinterNamed(L"Slow");
    const auto slow = BoundPrinter(L"Slow");
    const auto quick = BoundPrinter();
    const OWaitHandle entered(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    SpoolerFailure hold;
    hold.call = SpoolerCall::GetPrinterW;
    hold.effect = SpoolerEffect::Hold;
    hold.printer = L"Slow";
    hold.entered = entered.Get();
    hold.release = release.Get();
    ::SpoolerInject(hold);

    std::thread waiting([&] { EXPECT_EQ(Text(*slow.Get(), &IPrinter::get_Comment), L"Shipping labels"); });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), 60000), WAIT_OBJECT_0);
    ReadAll(*quick.Get()); // while the other is held in the spooler
    EXPECT_EQ(AnswerOf(CreatePrinter()->get_Name(nullptr)), printerNotInitialized);
    ::SetEvent(release.Get());
    waiting.join();
}

// Handles of the process

TEST_F(Lifetime, RoundsOfWholeLivesLeaveNoKernelHandle)
{
    const auto live = [] {
        const auto printer = BoundPrinter();
        const auto sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
        ComPtr<IConnectionPointContainer> container;
        ComPtr<IConnectionPoint> point;
        DWORD cookie = 0;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
        EXPECT_EQ(point->Advise(sink.Get(), &cookie), S_OK);
        EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
        EXPECT_EQ(point->Unadvise(cookie), S_OK);
    };
    live(); // what is made once for the process
    DWORD before = 0;
    DWORD after = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &before);
    for (int round = 0; round < 10; ++round) live();
    ::GetProcessHandleCount(::GetCurrentProcess(), &after);
    EXPECT_EQ(after, before);
}

} // namespace
