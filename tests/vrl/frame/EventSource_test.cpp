// SPDX-License-Identifier: MIT
#include "vrl/frame/EventSource.h"

#include "support/RowName.h"
#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"
#include "support/LockProbe.h"
#include "support/Raising.h"
#include "support/com/ScriptedSink.h"
#include "vrl/frame/AutomationObject.h"
#include "vrl/frame/ReferenceList.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

/// An automation object with events of its own making, which stands in a list while it has sinks.
class Talker final : public AutomationObject<Talker, IPrintJobsFilter>, public EventSource<Talker, _IPrinterEvents> {
public:
    ~Talker() { ++destroyed; }

    HRESULT FirstSinkConnecting() noexcept
    {
        ++firstSinks;
        if (FAILED(firstStep)) return firstStep;
        return Contain([&] {
            const ReferenceList::Scope scope(*list);
            if (IsConnected()) list->Add(*this);
        });
    }

    void LastSinkGone() noexcept
    {
        const ReferenceList::Scope scope(*list);
        if (!IsConnected()) list->Remove(*this);
    }

    void CheckSinkResult(HRESULT hr) const noexcept override { checked.push_back(hr); }

    HRESULT firstStep = S_OK;
    std::atomic<int> firstSinks = 0;
    std::shared_ptr<ReferenceList> list = std::make_shared<ReferenceList>("added\n", "removed\n");
    mutable std::vector<HRESULT> checked;
    static inline int destroyed;
};

namespace {

using Microsoft::WRL::ComPtr;

class EventSourceTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Talker::destroyed = 0;
        ASSERT_EQ(CreateInstance(talker.GetAddressOf()), S_OK);
        list = talker->list;
        ASSERT_EQ(talker->ConnectionPointContainer()->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
    }

    void TearDown() override
    {
        Drop();
        EXPECT_EQ(Talker::destroyed, 1);
        EXPECT_EQ(first.references, 0u);
        EXPECT_EQ(second.references, 0u);
    }

    /// Gives back the test's references on the object.
    void Drop()
    {
        point.Reset();
        talker.Reset();
    }

    DWORD Advise(ScriptedSink& sink)
    {
        DWORD cookie = 0;
        EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
        return cookie;
    }

    HRESULT Fire() { return talker->Fire(7, EventArguments()); }

    ScriptedSink first;
    ScriptedSink second;
    std::shared_ptr<ReferenceList> list;
    ComPtr<Talker> talker;
    ComPtr<IConnectionPoint> point;
};

// The fire step

/// Keeps what `Invoke` got.
class InvokeRecorder : public ScriptedSink {
public:
    STDMETHODIMP Invoke(DISPID eventId, REFIID interfaceId, LCID locale, WORD callFlags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override
    {
        id = eventId;
        iid = interfaceId;
        lcid = locale;
        flags = callFlags;
        count = parameters->cArgs;
        resultType = result->vt;
        noMore = !exception && !argumentError;
        return S_OK;
    }

    DISPID id = 0;
    IID iid{};
    LCID lcid = 0;
    WORD flags = 0;
    UINT count = 99;
    VARTYPE resultType = VT_ERROR;
    bool noMore = false;
};

TEST_F(EventSourceTest, CallsASinkAsAMethodOfTheEventsNumber)
{
    InvokeRecorder recorder;
    Advise(recorder);
    EventArguments arguments;
    arguments.InsertAtFront(5L);
    EXPECT_EQ(talker->Fire(7, arguments), S_OK);
    EXPECT_EQ(recorder.id, 7);
    EXPECT_EQ(recorder.iid, IID_NULL);
    EXPECT_EQ(recorder.lcid, 1024u);
    EXPECT_EQ(recorder.flags, DISPATCH_METHOD);
    EXPECT_EQ(recorder.count, 1u);
    EXPECT_EQ(recorder.resultType, VT_EMPTY);
    EXPECT_TRUE(recorder.noMore);
    Drop();
}

TEST_F(EventSourceTest, ClearsWhatASinkGivesBack)
{
    ScriptedSink given;
    struct GivingSink : ScriptedSink {
        STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override
        {
            result->vt = VT_DISPATCH;
            result->pdispVal = object;
            object->AddRef();
            return S_OK;
        }
        IDispatch* object = nullptr;
    } giving;
    giving.object = &given;
    Advise(giving);
    Fire();
    EXPECT_EQ(given.references, 0u);
    Drop();
}

TEST_F(EventSourceTest, FiresWithoutSinksToNobody)
{
    EXPECT_EQ(Fire(), S_OK);
    EXPECT_TRUE(talker->checked.empty());
}

TEST_F(EventSourceTest, CallsSinksInTheirOrderAndGivesTheLastResult)
{
    std::vector<int> order;
    first.onInvoke = [&](DISPID, DISPPARAMS*) {
        order.push_back(1);
        return E_ACCESSDENIED;
    };
    second.onInvoke = [&](DISPID, DISPPARAMS*) {
        order.push_back(2);
        return S_FALSE;
    };
    Advise(first);
    Advise(second);
    EXPECT_EQ(Fire(), S_FALSE);
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST_F(EventSourceTest, LooksAtTheResultOfEachSink)
{
    first.onInvoke = [](DISPID, DISPPARAMS*) { return DISP_E_MEMBERNOTFOUND; };
    Advise(first);
    Advise(second);
    Fire();
    EXPECT_EQ(talker->checked, (std::vector<HRESULT>{DISP_E_MEMBERNOTFOUND, S_OK}));
}

TEST_F(EventSourceTest, CallsASinkWithoutTheObjectsLock)
{
    const LockProbe lock(talker->ObjectLock());
    bool free = false;
    first.onInvoke = [&](DISPID, DISPPARAMS*) {
        free = lock.IsFree();
        return S_OK;
    };
    Advise(first);
    Fire();
    EXPECT_TRUE(free);
}

TEST_F(EventSourceTest, HoldsASinkWhileItIsCalled)
{
    DWORD cookie = 0;
    ULONG held = 0;
    first.onInvoke = [&](DISPID, DISPPARAMS*) {
        EXPECT_EQ(point->Unadvise(cookie), S_OK);
        held = first.references;
        return S_OK;
    };
    cookie = Advise(first);
    Fire();
    EXPECT_EQ(held, 1u);
    EXPECT_EQ(first.references, 0u);
}

TEST_F(EventSourceTest, PassesOverASinkThatAnotherHasDisconnected)
{
    DWORD cookie = 0;
    first.onInvoke = [&](DISPID, DISPPARAMS*) { return point->Unadvise(cookie); };
    Advise(first);
    cookie = Advise(second);
    Fire();
    EXPECT_EQ(second.invocations, 0);
}

TEST_F(EventSourceTest, TellsASinkThatConnectsMeanwhileNothingYet)
{
    first.onInvoke = [&](DISPID, DISPPARAMS*) {
        Advise(second);
        return S_OK;
    };
    Advise(first);
    Fire();
    EXPECT_EQ(second.invocations, 0);
    first.onInvoke = nullptr;
    Fire();
    EXPECT_EQ(second.invocations, 1);
}

// The first sink and the last

TEST_F(EventSourceTest, StandsInItsListAsLongAsItHasASink)
{
    const DWORD one = Advise(first);
    const DWORD two = Advise(second);
    EXPECT_FALSE(list->IsEmpty());
    EXPECT_EQ(talker->firstSinks, 1);
    EXPECT_EQ(point->Unadvise(one), S_OK);
    EXPECT_FALSE(list->IsEmpty());
    EXPECT_EQ(point->Unadvise(two), S_OK);
    EXPECT_TRUE(list->IsEmpty());
}

TEST_F(EventSourceTest, TakesTheFirstStepBeforeItAsksTheSink)
{
    int steps = 0;
    first.onQueryInterface = [&] { steps = talker->firstSinks; };
    Advise(first);
    EXPECT_EQ(steps, 1);
}

TEST_F(EventSourceTest, LeavesItsListBeforeItLetsGoOfTheLastSink)
{
    bool listed = true;
    const DWORD cookie = Advise(first);
    first.onRelease = [&] { listed = !list->IsEmpty(); };
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_FALSE(listed);
    first.onRelease = nullptr;
}

TEST_F(EventSourceTest, RefusedFirstStepLeavesTheNextSinkTheFirst)
{
    talker->firstStep = E_POINTER;
    DWORD cookie = 99;
    EXPECT_EQ(point->Advise(&first, &cookie), E_POINTER);
    EXPECT_EQ(cookie, 0u);
    talker->firstStep = S_OK;
    Advise(first);
    EXPECT_EQ(talker->firstSinks, 2);
    EXPECT_FALSE(list->IsEmpty());
}

TEST_F(EventSourceTest, CountsASinkThatIsRefusedAfterTheFirstStep)
{
    first.refusesEvents = true;
    DWORD cookie = 99;
    EXPECT_EQ(point->Advise(&first, &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
    EXPECT_FALSE(list->IsEmpty());
    Advise(second);
    EXPECT_EQ(talker->firstSinks, 1);
}

TEST_F(EventSourceTest, CountsAnAdviseWithoutASink)
{
    DWORD cookie = 99;
    EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(point->Advise(&first, nullptr), E_POINTER);
    EXPECT_EQ(talker->firstSinks, 1);
    EXPECT_FALSE(list->IsEmpty());
}

TEST_F(EventSourceTest, UnknownCookieTakesTheObjectOutOfItsList)
{
    Advise(first);
    EXPECT_EQ(point->Unadvise(12345), CONNECT_E_NOCONNECTION);
    EXPECT_TRUE(list->IsEmpty());
}

TEST_F(EventSourceTest, CountBelowZeroComesBackWithoutAFirstSink)
{
    EXPECT_EQ(point->Unadvise(12345), CONNECT_E_NOCONNECTION);
    Advise(first);
    EXPECT_EQ(talker->firstSinks, 0);
}

TEST_F(EventSourceTest, SinkThatFindsTheObjectUnlistedListsItAgain)
{
    Advise(first);
    list->Remove(*talker.Get()); // as a first step on another thread that has not come so far yet
    Advise(second);
    EXPECT_FALSE(list->IsEmpty());
}

TEST_F(EventSourceTest, SinkThatComesWhileTheLastOneGoesIsListed)
{
    const DWORD cookie = Advise(first);
    std::optional<BackgroundCall> unadvise;
    std::optional<BackgroundCall> advise;
    {
        const ReferenceList::Scope scope(*list); // both wait for the list: in which order they come is open
        unadvise.emplace([&] { EXPECT_EQ(point->Unadvise(cookie), S_OK); });
        EXPECT_TRUE(unadvise->IsHeldUp());
        advise.emplace([&] { Advise(second); });
        EXPECT_TRUE(advise->IsHeldUp());
    }
    EXPECT_TRUE(unadvise->Ends());
    EXPECT_TRUE(advise->Ends());
    EXPECT_FALSE(list->IsEmpty());
    Fire();
    EXPECT_EQ(second.invocations, 1);
}

TEST_F(EventSourceTest, ListAgreesWithTheSinksHoweverThreadsConnectAndDisconnect)
{
    struct QuietSink : ScriptedSink {
        STDMETHODIMP_(ULONG) AddRef() override { return 1; }
        STDMETHODIMP_(ULONG) Release() override { return 1; }
    } sink; // uncounted, for any thread
    constexpr int rounds = 2000;
    const auto connect = [&] {
        for (int i = 0; i < rounds; ++i) {
            DWORD cookie = 0;
            point->Advise(&sink, &cookie);
            if (!talker->IsListed()) ADD_FAILURE() << "connected and not listed in round " << i;
            point->Unadvise(cookie);
        }
    };
    {
        std::jthread one(connect);
        std::jthread two(connect);
    }
    EXPECT_TRUE(list->IsEmpty());
}

// The end

TEST_F(EventSourceTest, LetsGoOfItsSinksAtItsEnd)
{
    Advise(first);
    Advise(second);
    Drop();
    EXPECT_EQ(first.references, 0u);
    EXPECT_EQ(second.references, 0u);
}

TEST_F(EventSourceTest, LeavesEveryListBeforeItDies)
{
    const auto other = std::make_shared<ReferenceList>("added\n", "removed\n");
    Advise(first);
    other->Add(*talker.Get());
    Drop();
    EXPECT_TRUE(list->IsEmpty());
    EXPECT_TRUE(other->IsEmpty());
}

TEST_F(EventSourceTest, HasLeftEveryListWhenItsSinksGo)
{
    bool listed = true;
    Advise(first);
    first.onRelease = [&] { listed = !list->IsEmpty(); };
    Drop();
    EXPECT_FALSE(listed);
}

TEST_F(EventSourceTest, SinkMayCountTheObjectThatLetsGoOfIt)
{
    Advise(first);
    first.onRelease = [raw = talker.Get()] {
        ComPtr<IUnknown> unknown;
        EXPECT_EQ(raw->QueryInterface(IID_PPV_ARGS(&unknown)), S_OK);
    };
    Drop();
    EXPECT_EQ(Talker::destroyed, 1);
}

TEST_F(EventSourceTest, SinkMayDisconnectFromTheObjectThatLetsGoOfIt)
{
    IConnectionPoint* const raw = point.Get();
    const DWORD cookie = Advise(first);
    first.onRelease = [&] { EXPECT_EQ(raw->Unadvise(cookie), CONNECT_E_NOCONNECTION); };
    Drop();
    EXPECT_EQ(Talker::destroyed, 1);
}

TEST_F(EventSourceTest, DyingObjectTakesNoSink)
{
    IConnectionPoint* const raw = point.Get();
    Advise(first);
    first.onRelease = [&] {
        DWORD cookie = 99;
        EXPECT_EQ(raw->Advise(&second, &cookie), CONNECT_E_CANNOTCONNECT);
        EXPECT_EQ(cookie, 0u);
    };
    Drop();
    EXPECT_TRUE(list->IsEmpty());
    EXPECT_EQ(Talker::destroyed, 1);
}

TEST_F(EventSourceTest, DyingObjectHasNoIdentity)
{
    bool named = true;
    Advise(first);
    first.onRelease = [&, raw = talker.Get()] { named = raw->Identity() != nullptr; };
    Drop();
    EXPECT_FALSE(named);
}

TEST_F(EventSourceTest, IdentityIsTheDualInterfaceWithAReference)
{
    talker->AddRef();
    const ULONG before = talker->Release();
    const ComPtr<IDispatch> identity = talker->Identity();
    EXPECT_EQ(identity.Get(), static_cast<IPrintJobsFilter*>(talker.Get()));
    talker->AddRef();
    EXPECT_EQ(talker->Release(), before + 1);
}

TEST_F(EventSourceTest, ObjectWaitsWithItsEndForAWalkOverItsList)
{
    Advise(first);
    std::optional<BackgroundCall> drop;
    {
        const ReferenceList::Scope walk(*list);
        drop.emplace([this] { Drop(); });
        EXPECT_TRUE(drop->IsHeldUp());
        EXPECT_EQ(Talker::destroyed, 0);
    }
    EXPECT_TRUE(drop->Ends());
}

// Memory

TEST_F(EventSourceTest, RefusesASinkForWhichThereIsNoMemory)
{
    for (int allowed = 0;; ++allowed) {
        DWORD cookie = 99;
        HRESULT result = S_OK;
        bool failed = false;
        {
            const AllocationFailure failure(allowed);
            result = point->Advise(&first, &cookie);
            failed = AllocationFailure::Happened();
        }
        if (!failed) break;
        if (FAILED(result)) {
            EXPECT_EQ(cookie, 0u) << allowed;
            EXPECT_EQ(first.references, 0u) << allowed;
        }
        ASSERT_LT(allowed, 50);
    }
}

TEST_F(EventSourceTest, SinkThatIsNotTakenGoesOutsideOfTheObjectsLock)
{
    const LockProbe lock(talker->ObjectLock());
    std::optional<bool> free;
    Advise(first);
    Advise(first); // the next one needs a block: two slots are in use
    second.onRelease = [&] {
        if (!free) free = lock.IsFree();
    };
    DWORD cookie = 0;
    for (int allowed = 0; !free && allowed < 20; ++allowed) {
        const AllocationFailure failure(allowed);
        point->Advise(&second, &cookie);
    }
    second.onRelease = nullptr;
    EXPECT_EQ(free, true);
}

TEST_F(EventSourceTest, DisconnectedSinkGoesOutsideOfTheObjectsLock)
{
    const LockProbe lock(talker->ObjectLock());
    std::optional<bool> free;
    const DWORD cookie = Advise(first);
    first.onRelease = [&] { free = lock.IsFree(); };
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    first.onRelease = nullptr;
    EXPECT_EQ(free, true);
}

TEST_F(EventSourceTest, EnumeratorsThatCannotBeMadeLeaveNull)
{
    Advise(first);
    const auto expectNull = [](auto make) {
        for (int allowed = 0;; ++allowed) {
            IUnknown* made = &*reinterpret_cast<IUnknown*>(16); // anything but null
            HRESULT result = S_OK;
            {
                const AllocationFailure failure(allowed);
                result = make(&made);
            }
            if (SUCCEEDED(result)) {
                made->Release();
                return;
            }
            EXPECT_EQ(result, E_OUTOFMEMORY) << allowed;
            EXPECT_EQ(made, nullptr) << allowed;
        }
    };
    expectNull([&](IUnknown** made) { return point->EnumConnections(reinterpret_cast<IEnumConnections**>(made)); });
    expectNull([&](IUnknown** made) {
        auto* const container = talker->ConnectionPointContainer();
        return container->EnumConnectionPoints(reinterpret_cast<IEnumConnectionPoints**>(made));
    });
}

// What a sink raises

class RaisingSink : public EventSourceTest, public ::testing::WithParamInterface<RaisedKind> {
protected:
    /// A call that raises at each sink but the first this often.
    void Raise() const { GetParam().raise(); }
};

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingSink, ::testing::ValuesIn(raisedKinds), rowName);

TEST_P(RaisingSink, InAnEventIsAFailureAndTheOthersAreCalled)
{
    first.onInvoke = [&](DISPID, DISPPARAMS*) {
        Raise();
        return S_OK;
    };
    Advise(first);
    Advise(second);
    EXPECT_EQ(Fire(), S_OK);
    EXPECT_EQ(second.invocations, 1);
    ASSERT_EQ(talker->checked.size(), 2u);
    EXPECT_TRUE(FAILED(talker->checked[0]));
}

TEST_P(RaisingSink, WhenItIsCountedForAnEventIsPassedOver)
{
    Advise(first);
    Advise(second);
    first.onAddRef = [&] { Raise(); };
    EXPECT_EQ(Fire(), S_OK);
    EXPECT_EQ(first.invocations, 0);
    EXPECT_EQ(second.invocations, 1);
    EXPECT_TRUE(LockProbe(talker->ObjectLock()).IsFree());
}

TEST_P(RaisingSink, WhenItIsReleasedAfterAnEventIsForgotten)
{
    Advise(first);
    Advise(second);
    first.onRelease = [&] { Raise(); };
    EXPECT_EQ(Fire(), S_OK);
    EXPECT_EQ(second.invocations, 1);
    first.onRelease = nullptr;
    first.Release(); // what could not be given back
}

TEST_P(RaisingSink, AskedForItsEventsIsRefused)
{
    first.onQueryInterface = [&] { Raise(); };
    DWORD cookie = 99;
    EXPECT_EQ(point->Advise(&first, &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
}

TEST_P(RaisingSink, WhenItIsDisconnectedIsGone)
{
    const DWORD cookie = Advise(first);
    first.onRelease = [&] { Raise(); };
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
    first.references = 0; // it could not give the reference back
}

TEST_P(RaisingSink, DoesNotKeepTheObjectFromDying)
{
    Advise(first);
    Advise(second);
    first.onRelease = [&] { Raise(); };
    Drop();
    EXPECT_EQ(Talker::destroyed, 1);
    EXPECT_EQ(second.references, 0u);
    first.references = 0;
}

TEST_P(RaisingSink, IsLeftOutOfAnEnumeratorThatCannotCountIt)
{
    Advise(first);
    Advise(second);
    first.onAddRef = [&] { Raise(); };
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(point->EnumConnections(&connections), S_OK);
    CONNECTDATA data{};
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_OK);
    EXPECT_EQ(data.pUnk, &second);
    data.pUnk->Release();
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_FALSE);
    first.onAddRef = nullptr;
}

TEST_P(RaisingSink, AskedByAnEnumeratorFailsTheCallAsAWhole)
{
    Advise(first);
    Advise(second);
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(point->EnumConnections(&connections), S_OK);
    second.onQueryInterface = [&] { Raise(); };
    const ULONG before = first.references;
    CONNECTDATA data[2];
    ULONG fetched = 99;
    EXPECT_TRUE(FAILED(connections->Next(2, data, &fetched)));
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(data[0].pUnk, nullptr);
    EXPECT_EQ(data[1].pUnk, nullptr);
    EXPECT_EQ(first.references, before);
    second.onQueryInterface = nullptr;
    EXPECT_EQ(connections->Next(1, data, nullptr), S_OK); // from where it stood
    EXPECT_EQ(data[0].pUnk, &first);
    data[0].pUnk->Release();
}

} // namespace
