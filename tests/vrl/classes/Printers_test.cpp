// SPDX-License-Identifier: MIT
#include "vrl/classes/Printers.h"

#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"
#include "support/Raising.h"
#include "support/RowName.h"
#include "support/com/Answer.h"
#include "support/com/ClientPrinter.h"
#include "support/com/ScriptedSink.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/Printer.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Module.h"

#include <comutil.h>
#include <gmock/gmock.h>

#include <functional>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;

using Microsoft::WRL::ComPtr;

/// An argument that the caller keeps.
VARIANT ObjectArgument(IDispatch* object)
{
    VARIANT argument;
    ::VariantInit(&argument);
    argument.vt = VT_DISPATCH;
    argument.pdispVal = object;
    return argument;
}

class PrintersTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ASSERT_EQ(CreateInstance(printers.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        printers.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        SpoolerTest::TearDown();
    }

    static void AddPrinterNamed(const wchar_t* name)
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = name;
        AddPrinter(printer);
    }

    Answer Add(const wchar_t* name) { return AnswerOf(printers->Add(_variant_t(name))); }
    Answer Add(IDispatch& object) { return AnswerOf(printers->Add(ObjectArgument(&object))); }
    Answer Remove(const wchar_t* name) { return AnswerOf(printers->Remove(_variant_t(name))); }
    Answer Remove(IDispatch& object) { return AnswerOf(printers->Remove(ObjectArgument(&object))); }

    long Count()
    {
        long count = 99;
        EXPECT_EQ(printers->get_Count(&count), S_OK);
        return count;
    }

    static std::wstring NameOf(IPrinter& printer)
    {
        OwnedBstr name;
        EXPECT_EQ(printer.get_Name(name.Receive()), S_OK);
        return TextOf(name.Get());
    }

    /// Names of the entries, by their numbers.
    std::vector<std::wstring> Names()
    {
        std::vector<std::wstring> names;
        for (long number = 1; number <= Count(); ++number) {
            ComPtr<IPrinter> printer;
            EXPECT_EQ(printers->get_Item(_variant_t(number), &printer), S_OK);
            names.push_back(NameOf(*printer.Get()));
        }
        return names;
    }

    /// A `Printer` that is bound to "Label".
    static ComPtr<Printer> Bound()
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        EXPECT_EQ(printer->Initialize(NewBstr(printerName).Get()), S_OK);
        return printer;
    }

    /// How many references an object has, without one for the test.
    static ULONG References(IPrinter& object)
    {
        object.AddRef();
        return object.Release();
    }

    ComPtr<Printers> printers;
    ClientPrinter client;
    ClientPrinter other{L"Other"};
};

// Count, Item

TEST_F(PrintersTest, IsEmptyAtFirstAndTouchesNoSpooler)
{
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrintersTest, CountNeedsAPlaceToGo)
{
    EXPECT_EQ(AnswerOf(printers->get_Count(nullptr)), invalidArgument);
}

TEST_F(PrintersTest, ItemGivesAnEntryByItsNumberWithAReference)
{
    Add(client);
    Add(other);
    const ULONG before = other.references;
    IPrinter* item = nullptr;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(2L), &item)), succeeded);
    EXPECT_EQ(item, &other);
    EXPECT_EQ(other.references, before + 1);
    item->Release();
}

TEST_F(PrintersTest, ItemRefusesNumbersOutsideOfTheCollection)
{
    Add(client);
    for (const long number : {0L, 2L, -1L}) {
        ComPtr<IPrinter> item;
        EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(number), &item)), invalidArgument) << number;
        EXPECT_EQ(item, nullptr);
    }
}

VARIANT Number(VARTYPE type, LONGLONG value)
{
    VARIANT number{};
    number.vt = type;
    number.llVal = value;
    return number;
}

TEST_F(PrintersTest, ItemTakesFourTypesOfNumber)
{
    Add(client);
    Add(other);
    for (const VARTYPE type : {VT_I4, VT_I2, VT_I8, VT_INT}) {
        ComPtr<IPrinter> item;
        EXPECT_EQ(AnswerOf(printers->get_Item(Number(static_cast<VARTYPE>(type), 2), &item)), succeeded) << type;
        EXPECT_EQ(item.Get(), &other) << type;
    }
}

TEST_F(PrintersTest, ItemRefusesAnyOtherType)
{
    Add(client);
    VARIANT one = Number(VT_I4, 1);
    VARIANT byReference{};
    byReference.vt = VT_VARIANT | VT_BYREF;
    byReference.pvarVal = &one;
    const _variant_t others[] = {_variant_t(1.0), _variant_t(1.0f), _variant_t(true), _variant_t()};
    for (const _variant_t& index : others) {
        ComPtr<IPrinter> item;
        EXPECT_EQ(AnswerOf(printers->get_Item(index, &item)), invalidArgument) << index.vt;
    }
    for (const VARTYPE type : {VT_UI4, VT_UI2, VT_UI1, VT_I1, VT_UI8, VT_UINT, VT_DISPATCH, VT_UNKNOWN}) {
        ComPtr<IPrinter> item;
        EXPECT_EQ(AnswerOf(printers->get_Item(Number(static_cast<VARTYPE>(type), 0), &item)), invalidArgument) << type;
    }
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(byReference, &item)), invalidArgument);
}

TEST_F(PrintersTest, ItemRefusesANumberThatIsNoLong)
{
    Add(client);
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(Number(VT_I8, 0x100000001LL), &item)), invalidArgument);
}

/// A member whose VARIANT is called as the platform passes it: as the address of the caller's own.
using ItemByAddress = HRESULT(STDMETHODCALLTYPE*)(IPrinters*, VARIANT*, IPrinter**);

ItemByAddress ItemOf(IPrinters& printers)
{
    constexpr size_t slot = 8; // of get_Item
    return reinterpret_cast<ItemByAddress>((*reinterpret_cast<void***>(&printers))[slot]);
}

TEST_F(PrintersTest, ItemTakesANumberOverFromTheCaller)
{
    Add(client);
    for (const VARTYPE type : {VT_I4, VT_I2, VT_I8, VT_INT}) {
        VARIANT index = Number(static_cast<VARTYPE>(type), 1);
        ComPtr<IPrinter> item;
        EXPECT_EQ(ItemOf(*printers.Get())(printers.Get(), &index, &item), S_OK);
        EXPECT_EQ(index.vt, VT_EMPTY) << type;
    }
    VARIANT refused = Number(VT_I4, 9);
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(ItemOf(*printers.Get())(printers.Get(), &refused, &item)), invalidArgument);
    EXPECT_EQ(refused.vt, VT_EMPTY);
}

TEST_F(PrintersTest, ItemLeavesTheCallerHisTextAndWhatItRefuses)
{
    Add(client);
    _variant_t name(L"Client's");
    ComPtr<IPrinter> item;
    EXPECT_EQ(ItemOf(*printers.Get())(printers.Get(), &name, &item), S_OK);
    EXPECT_EQ(name.vt, VT_BSTR);
    VARIANT real = Number(VT_R8, 0);
    EXPECT_EQ(AnswerOf(ItemOf(*printers.Get())(printers.Get(), &real, &item)), invalidArgument);
    EXPECT_EQ(real.vt, VT_R8);
}

TEST_F(PrintersTest, ItemFindsTheFirstEntryOfAName)
{
    ClientPrinter twin(L"Other");
    Add(client);
    Add(other);
    Add(twin);
    const ULONG before = other.references;
    IPrinter* item = nullptr;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"Other"), &item)), succeeded);
    EXPECT_EQ(item, &other);
    EXPECT_EQ(other.references, before + 1);
    item->Release();
    Remove(twin);
    Remove(twin);
}

TEST_F(PrintersTest, ItemKnowsNamesByTheirLettersCase)
{
    Add(L"label");
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"Label"), &item)), printerNotRecognized);
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"label"), &item)), succeeded);
}

TEST_F(PrintersTest, ItemOfANameThatNoEntryHasIsNotRecognized)
{
    Add(client);
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"None"), &item)), printerNotRecognized);
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L""), &item)), printerNotRecognized);
    EXPECT_EQ(AnswerOf(printers->get_Item(Number(VT_BSTR, 0), &item)), printerNotRecognized);
}

TEST_F(PrintersTest, ItemGivesTheFailureOfAnEntryWhoseNameCannotBeRead)
{
    ComPtr<Printer> unbound;
    ASSERT_EQ(CreateInstance(unbound.GetAddressOf()), S_OK);
    Add(client);
    Add(*unbound.Get());
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"Client's"), &item)), succeeded) << "found before";
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"Other"), &item)), printerNotInitialized);
    unbound->Release(); // kept by the argument
}

TEST_F(PrintersTest, ItemWithoutAPlaceToGoIsAnAccessViolationThatIsReported)
{
    Add(client);
    const ULONG before = client.references;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(1L), nullptr)).result, HRESULT_FROM_WIN32(ERROR_INVALID_ADDRESS));
    EXPECT_EQ(client.references, before) << "nothing leaks";
}

// Add

TEST_F(PrintersTest, AddOfANameMakesAPrinter)
{
    EXPECT_EQ(Add(L"Label"), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Label"));
    ComPtr<IPrinter> item;
    ASSERT_EQ(printers->get_Item(_variant_t(1L), &item), S_OK);
    EXPECT_EQ(References(*item.Get()), 2u) << "the collection's and ours";
}

TEST_F(PrintersTest, AddOfANameTwiceGivesTwoEntriesOnOneSharedPrinter)
{
    Add(L"Label");
    Add(L"LABEL");
    EXPECT_THAT(Names(), ElementsAre(L"Label", L"Label"));
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrintersTest, AddOfAnUnknownNameGivesThePrintersFailureAndAddsNothing)
{
    EXPECT_EQ(Add(L"None"), couldNotOpenPrinter);
    EXPECT_EQ(Count(), 0);
}

TEST_F(PrintersTest, AddOfAnObjectTakesTwoReferencesAndKeepsOneForGood)
{
    EXPECT_EQ(Add(client), succeeded);
    EXPECT_EQ(client.references, 2u);
    EXPECT_EQ(Add(client), succeeded);
    EXPECT_EQ(client.references, 4u);
    EXPECT_THAT(Names(), ElementsAre(L"Client's", L"Client's"));
    EXPECT_EQ(AnswerOf(printers->RemoveAll()), succeeded);
    EXPECT_EQ(client.references, 2u);
}

TEST_F(PrintersTest, AddOfAPrinterOfOursCountsTheSame)
{
    const auto printer = Bound();
    EXPECT_EQ(Add(*printer.Get()), succeeded);
    EXPECT_EQ(References(*printer.Get()), 3u);
    printers->RemoveAll();
    EXPECT_EQ(References(*printer.Get()), 2u);
    printer->Release(); // the one that is kept
}

TEST_F(PrintersTest, AddRefusesWhatIsNeitherNameNorPrinter)
{
    client.hasInterface = false;
    EXPECT_EQ(Add(client), invalidArgument);
    EXPECT_EQ(client.references, 0u);
    for (const VARIANT& argument :
         {Number(VT_DISPATCH, 0), Number(VT_BSTR, 0), Number(VT_I4, 1), Number(VT_EMPTY, 0)}) {
        EXPECT_EQ(AnswerOf(printers->Add(argument)), invalidArgument) << argument.vt;
    }
    EXPECT_EQ(Add(L""), invalidArgument) << "an empty name is none";
    VARIANT unknown = ObjectArgument(&other);
    unknown.vt = VT_UNKNOWN;
    EXPECT_EQ(AnswerOf(printers->Add(unknown)), invalidArgument);
    EXPECT_EQ(Count(), 0);
}

TEST_F(PrintersTest, AddOfAnObjectWithTwoPointersCallsThatOfThePrinter)
{
    // As those of an object in another apartment are: its IDispatch is not its IPrinter.
    struct Face : ScriptedSink {
        explicit Face(IPrinter& behind) : printer(behind) {}
        STDMETHODIMP QueryInterface(REFIID iid, void** object) override { return printer.QueryInterface(iid, object); }
        IPrinter& printer;
    } face(client);
    EXPECT_EQ(Add(face), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Client's"));
    EXPECT_EQ(client.references, 2u);
}

TEST_F(PrintersTest, AddWithoutMemoryLeavesNothingBehind)
{
    Add(client);
    for (int allowed = 0;; ++allowed) {
        const _variant_t name(L"Label");
        HRESULT result = S_OK;
        bool failed = false;
        {
            const AllocationFailure failure(allowed);
            result = printers->Add(name);
            failed = AllocationFailure::Happened();
        }
        if (!failed) break;
        if (FAILED(result)) {
            EXPECT_EQ(Count(), 1) << allowed;
            EXPECT_EQ(XPrinterPool::GetCount(), 0) << allowed;
        } else {
            printers->Remove(name);
        }
        AnswerOf(result);
        ASSERT_LT(allowed, 500);
    }
    EXPECT_EQ(Count(), 2);
}

// Remove

TEST_F(PrintersTest, RemoveTakesTheFirstEntryOfAName)
{
    Add(client);
    Add(other);
    Add(client);
    EXPECT_EQ(Remove(L"Client's"), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Other", L"Client's"));
    EXPECT_EQ(client.references, 3u) << "one for the entry, two that are kept";
}

TEST_F(PrintersTest, RemoveOfAnObjectGoesByItsNameAndKeepsOneMoreReference)
{
    ClientPrinter twin(L"Other");
    Add(client);
    Add(other);
    EXPECT_EQ(Remove(twin), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Client's"));
    EXPECT_EQ(twin.references, 1u);
    EXPECT_EQ(other.references, 1u);
}

TEST_F(PrintersTest, RemoveOfANameThatIsNotThereFailsWithoutAText)
{
    Add(client);
    const Answer silent{E_INVALIDARG, ""};
    EXPECT_EQ(Remove(L"None"), silent);
    EXPECT_EQ(Remove(L"client's"), silent) << "the letters' case counts";
    EXPECT_EQ(Remove(other), silent);
    EXPECT_EQ(Count(), 1);
}

TEST_F(PrintersTest, RemoveRefusesWhatIsNeitherNameNorPrinter)
{
    Add(client);
    EXPECT_EQ(AnswerOf(printers->Remove(Number(VT_I4, 1))), invalidArgument);
    EXPECT_EQ(AnswerOf(printers->Remove(Number(VT_DISPATCH, 0))), invalidArgument);
    EXPECT_EQ(Remove(L""), invalidArgument);
    EXPECT_EQ(Count(), 1);
}

TEST_F(PrintersTest, RemoveGivesTheFailureOfAnObjectWithoutAName)
{
    ComPtr<Printer> unbound;
    ASSERT_EQ(CreateInstance(unbound.GetAddressOf()), S_OK);
    Add(client);
    EXPECT_EQ(Remove(*unbound.Get()), printerNotInitialized);
    EXPECT_EQ(Count(), 1);
    unbound->Release(); // kept by the argument
}

TEST_F(PrintersTest, RemoveAllEmptiesTheCollection)
{
    Add(client);
    Add(L"Label");
    EXPECT_EQ(AnswerOf(printers->RemoveAll()), succeeded);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
    EXPECT_EQ(AnswerOf(printers->RemoveAll()), succeeded);
}

TEST_F(PrintersTest, LetsGoOfItsEntriesAtItsEnd)
{
    std::vector<std::wstring> order;
    client.onRelease = [&] { order.push_back(client.name); };
    other.onRelease = [&] { order.push_back(other.name); };
    Add(other);
    Add(client);
    order.clear();
    printers.Reset();
    EXPECT_THAT(order, ElementsAre(L"Other", L"Client's"));
}

// _NewEnum

TEST_F(PrintersTest, NewEnumGivesEachEntry)
{
    Add(client);
    Add(L"Label");
    ComPtr<IUnknown> unknown;
    ASSERT_EQ(AnswerOf(printers->get__NewEnum(&unknown)), succeeded);
    ComPtr<IEnumVARIANT> enumerator;
    ASSERT_EQ(unknown.As(&enumerator), S_OK);
    printers->RemoveAll();

    _variant_t items[3];
    ULONG fetched = 0;
    EXPECT_EQ(enumerator->Next(3, items, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(items[0].pdispVal, &client);
    ComPtr<IPrinter> second;
    ASSERT_EQ(items[1].pdispVal->QueryInterface(IID_PPV_ARGS(&second)), S_OK);
    EXPECT_EQ(NameOf(*second.Get()), L"Label");
}

TEST_F(PrintersTest, NewEnumWithoutAPlaceToGoIsAnAccessViolationThatIsReported)
{
    Add(client);
    EXPECT_EQ(AnswerOf(printers->get__NewEnum(nullptr)).result, HRESULT_FROM_WIN32(ERROR_INVALID_ADDRESS));
    EXPECT_EQ(client.references, 2u) << "nothing leaks";
}

// Create

TEST_F(PrintersTest, CreateGivesAPrinterWithACountOfZeroAndAddsNothing)
{
    IPrinter* printer = nullptr;
    ASSERT_EQ(AnswerOf(printers->Create(&printer)), succeeded);
    EXPECT_EQ(printer->AddRef(), 1u) << "the caller's first";
    EXPECT_EQ(Count(), 0);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
    EXPECT_EQ(printer->Initialize(NewBstr(printerName).Get()), S_OK);
    EXPECT_EQ(NameOf(*printer), printerName);
    EXPECT_EQ(printer->Release(), 0u);
    EXPECT_EQ(XPrinterPool::GetCount(), 0) << "it has gone with its last reference";
}

TEST_F(PrintersTest, CreatedPrinterMayGoIntoTheCollection)
{
    IPrinter* printer = nullptr;
    ASSERT_EQ(printers->Create(&printer), S_OK);
    EXPECT_EQ(Add(*printer), succeeded);
    EXPECT_EQ(References(*printer), 2u);
    EXPECT_EQ(printer->Release(), 1u);
}

TEST_F(PrintersTest, CreateWithoutAPlaceToGoIsAnAccessViolationThatIsReported)
{
    EXPECT_EQ(AnswerOf(printers->Create(nullptr)).result, HRESULT_FROM_WIN32(ERROR_INVALID_ADDRESS));
}

TEST_F(PrintersTest, CreateWithoutMemoryFailsAndLeavesNothing)
{
    for (int allowed = 0;; ++allowed) {
        IPrinter* printer = nullptr;
        HRESULT result = S_OK;
        {
            const AllocationFailure failure(allowed);
            result = printers->Create(&printer);
        }
        if (SUCCEEDED(result)) {
            printer->AddRef();
            printer->Release();
            break;
        }
        EXPECT_EQ(AnswerOf(result).result, E_OUTOFMEMORY) << allowed;
        EXPECT_EQ(printer, nullptr) << allowed;
        ASSERT_LT(allowed, 500);
    }
}

// A client's own printers

TEST_F(PrintersTest, EntriesMayChangeTheCollectionWhileTheirNamesAreRead)
{
    Add(client);
    Add(other);
    client.onName = [&] { return printers->RemoveAll(); };
    ComPtr<IPrinter> item;
    EXPECT_EQ(AnswerOf(printers->get_Item(_variant_t(L"Other"), &item)), succeeded)
        << "as it was when it was asked for";
    EXPECT_EQ(item.Get(), &other);
    EXPECT_EQ(Count(), 0);
}

TEST_F(PrintersTest, AnEntryThatBlocksHoldsNobodyElseUp)
{
    const OWaitHandle entered(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    Add(client);
    client.onName = [&] {
        ::SetEvent(entered.Get());
        ::WaitForSingleObject(release.Get(), INFINITE);
        return S_OK;
    };
    const BackgroundCall blocked([&] {
        ComPtr<IPrinter> item;
        printers->get_Item(_variant_t(L"Client's"), &item);
    });
    ::WaitForSingleObject(entered.Get(), INFINITE);
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(Add(other), succeeded);
    ::SetEvent(release.Get());
    EXPECT_TRUE(blocked.Ends());
}

class RaisingPrinter : public PrintersTest, public ::testing::WithParamInterface<RaisedKind> {
protected:
    void SetUp() override
    {
        PrintersTest::SetUp();
        raise = [] { GetParam().raise(); };
    }

    std::function<void()> raise;
};

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingPrinter, ::testing::ValuesIn(raisedKinds), rowName);

TEST_P(RaisingPrinter, InItsNameIsAFailureOfTheMember)
{
    Add(client);
    client.onName = [&] {
        raise();
        return S_OK;
    };
    ComPtr<IPrinter> item;
    EXPECT_TRUE(FAILED(AnswerOf(printers->get_Item(_variant_t(L"Client's"), &item)).result));
    EXPECT_TRUE(FAILED(Remove(L"Client's").result));
    EXPECT_TRUE(FAILED(Remove(client).result));
    client.onName = nullptr;
    EXPECT_THAT(Names(), ElementsAre(L"Client's"));
}

TEST_P(RaisingPrinter, WhenItIsAskedForItsInterfaceIsNoPrinter)
{
    client.onQueryInterface = raise;
    EXPECT_EQ(Add(client), invalidArgument);
    EXPECT_EQ(Remove(client), invalidArgument);
    EXPECT_EQ(Count(), 0);
}

TEST_P(RaisingPrinter, WhenItIsLetGoOfIsForgotten)
{
    Add(client);
    Add(other);
    client.onRelease = raise;
    EXPECT_EQ(Remove(L"Client's"), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Other"));
    client.onRelease = nullptr;
    Add(client);
    client.onRelease = raise;
    EXPECT_EQ(AnswerOf(printers->RemoveAll()), succeeded);
    EXPECT_EQ(Count(), 0);
    client.onRelease = nullptr;
}

// Several threads at once

TEST_F(PrintersTest, MayBeUsedByManyThreadsAtOnce)
{
    constexpr int rounds = 150;
    AddPrinterNamed(L"Second");
    const auto repeat = [&](auto work) {
        return std::jthread([&, work] {
            for (int round = 0; round < rounds; ++round) work();
        });
    };
    {
        const std::jthread threads[] = {
            repeat([&] { printers->Add(_variant_t(L"Label")); }),
            repeat([&] { printers->Add(_variant_t(L"Second")); }),
            repeat([&] { printers->Remove(_variant_t(L"Label")); }),
            repeat([&] {
                ComPtr<IPrinter> item;
                printers->get_Item(_variant_t(1L), &item);
                printers->get_Item(_variant_t(L"Second"), item.ReleaseAndGetAddressOf());
            }),
            repeat([&] {
                ComPtr<IUnknown> unknown;
                ComPtr<IEnumVARIANT> enumerator;
                printers->get__NewEnum(&unknown);
                unknown.As(&enumerator);
                _variant_t item;
                while (enumerator->Next(1, &item, nullptr) == S_OK) item.Clear();
            }),
            repeat([&] { printers->RemoveAll(); }),
        };
    }
    EXPECT_EQ(printers->RemoveAll(), S_OK);
    EXPECT_EQ(Count(), 0);
}

} // namespace
