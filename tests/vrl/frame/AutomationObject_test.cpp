// SPDX-License-Identifier: MIT
#include "vrl/frame/AutomationObject.h"

#include "support/AllocationFailure.h"
#include "support/Raising.h"
#include "support/com/ErrorInformation.h"
#include "vrl/frame/Bound.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sample {

/// What a `SampleObject` object is bound to.
class Thing {
public:
    OString GetText() const { return _text; }
    void SetText(const OString& text) { _text = text; }
    bool IsOpen() const { return _open; }
    void SetOpen(bool open) { _open = open; }
    double GetLength() const { return 2.5; }
    DWORD Add(DWORD number, DWORD other) const { return number + other; }
    HRESULT Answer(long code) const { return static_cast<HRESULT>(code); }

private:
    OString _text{L"text"};
    bool _open = true;
};

struct ThingRef {
    Thing* thing;
    explicit operator bool() const noexcept { return thing != nullptr; }
    Thing& operator*() const noexcept { return *thing; }
};

class SampleObject;

} // namespace sample

__CRT_UUID_DECL(sample::SampleObject, 0x3f0f1d2a, 0x5f0c, 0x4b53, 0x9d, 0x6e, 0x0f, 0x6b, 0x2a, 0x7b, 0x91, 0x44)

namespace sample {

using NotBound_E = FixedException<0x80042999, "Sample object not initialized">;

/// One member in each shape, and hooks into the object's life.
class SampleObject final : public AutomationObject<SampleObject, IPrintJobsFilter> {
public:
    SampleObject() { ++alive; }
    ~SampleObject() { --alive; }

    HRESULT FinalConstruct() noexcept { return constructed; }
    void BeforeLastRelease() noexcept
    {
        if (beforeLastRelease) beforeLastRelease();
    }
    void FinalRelease()
    {
        ++finalReleases;
        if (finalRelease) finalRelease();
    }
    Bound<ThingRef>::Hold CheckBound() const
    {
        ++checks;
        return bound.Check<NotBound_E>();
    }

    HRESULT GetText(Checks order, BSTR* out) { return Get("SampleObject::get_Text", order, out, &Thing::GetText); }
    HRESULT GetOpen(VARIANT_BOOL* out)
    {
        return Get("SampleObject::get_Open", Checks::OutThenBound, out, &Thing::IsOpen);
    }
    HRESULT GetLength(float* out)
    {
        return Get("SampleObject::get_Length", Checks::OutThenBound, out, &Thing::GetLength);
    }
    HRESULT GetSum(long* out) { return Get("SampleObject::get_Sum", Checks::OutThenBound, out, &Thing::Add, 40u, 2u); }
    HRESULT GetRaised(BSTR* out, void (*raise)())
    {
        const auto query = [=](const ThingRef&) {
            raise();
            return OString();
        };
        return Get("SampleObject::get_Raised", Checks::OutThenBound, out, query);
    }
    HRESULT PutText(BSTR text) { return Put("SampleObject::put_Text", &Thing::SetText, text); }
    HRESULT PutOpen(VARIANT_BOOL open) { return Put("SampleObject::put_Open", &Thing::SetOpen, open); }
    HRESULT Answer(long code) { return Call("SampleObject::Answer", &Thing::Answer, code); }
    HRESULT GetPart(IPrintJobsFilter** out) { return GetChild("SampleObject::get_Part", out, part); }

    Bound<ThingRef> bound{_lock};
    Microsoft::WRL::ComPtr<SampleObject> part;
    std::function<void()> beforeLastRelease;
    std::function<void()> finalRelease;
    mutable int checks = 0;

    static inline HRESULT constructed = S_OK;
    static inline int alive = 0;
    static inline int finalReleases = 0;
};

} // namespace sample

namespace {

using Microsoft::WRL::ComPtr;
using sample::SampleObject;
using sample::Thing;

constexpr HRESULT notBound = static_cast<HRESULT>(0x80042999);

class AutomationObjectTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        SampleObject::constructed = S_OK;
        SampleObject::finalReleases = 0;
        ASSERT_EQ(CreateInstance(object.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        object.Reset();
        EXPECT_EQ(SampleObject::alive, 0);
        EXPECT_TRUE(Module::IsIdle());
    }

    void Bind() { object->bound.Set(sample::ThingRef{&thing}); }

    static ULONG ReferencesOf(IDispatch& counted)
    {
        counted.AddRef();
        return counted.Release();
    }

    Thing thing;
    ComPtr<SampleObject> object;
};

// Life

TEST_F(AutomationObjectTest, IsMadeWithOneReference)
{
    EXPECT_EQ(ReferencesOf(*object.Get()), 1u);
}

TEST_F(AutomationObjectTest, LastReleaseEndsItOnce)
{
    object.Reset();
    EXPECT_EQ(SampleObject::finalReleases, 1);
    EXPECT_EQ(SampleObject::alive, 0);
}

TEST_F(AutomationObjectTest, FailedConstructionEndsItAndIsTheResult)
{
    SampleObject::constructed = E_ACCESSDENIED;
    SampleObject* made = object.Get();
    EXPECT_EQ(CreateInstance(&made), E_ACCESSDENIED);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(SampleObject::finalReleases, 1);
    EXPECT_EQ(SampleObject::alive, 1);
}

TEST_F(AutomationObjectTest, CreationWithoutMemoryIsAResult)
{
    SampleObject* made = object.Get();
    const AllocationFailure failure(0);
    EXPECT_EQ(CreateInstance(&made), E_OUTOFMEMORY);
    EXPECT_EQ(made, nullptr);
}

TEST_F(AutomationObjectTest, CreationForAnInterfaceThatItHasNotLeavesNothing)
{
    void* made = object.Get();
    EXPECT_EQ(CreateObject<SampleObject>(IID_IStream, &made), E_NOINTERFACE);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(SampleObject::alive, 1);
}

TEST_F(AutomationObjectTest, EndLeavesTheObjectCountable)
{
    object->finalRelease = [raw = object.Get()] {
        raw->AddRef();
        raw->Release();
        ComPtr<IUnknown> unknown;
        EXPECT_EQ(raw->QueryInterface(IID_PPV_ARGS(&unknown)), S_OK);
    };
    object.Reset();
    EXPECT_EQ(SampleObject::finalReleases, 1);
}

TEST_F(AutomationObjectTest, EndThatRaisesEndsTheObjectAllTheSame)
{
    for (const RaisedKind& kind : raisedKinds) {
        ComPtr<SampleObject> other;
        ASSERT_EQ(CreateInstance(other.GetAddressOf()), S_OK);
        other->finalRelease = [&] { kind.raise(); };
        other.Reset();
        EXPECT_EQ(SampleObject::alive, 1) << kind.name;
    }
}

TEST_F(AutomationObjectTest, IsAskedBeforeEachReleaseOfItsOnlyReference)
{
    std::vector<ULONG> counts;
    object->beforeLastRelease = [&, raw = object.Get()] {
        raw->beforeLastRelease = nullptr;
        counts.push_back(ReferencesOf(*raw));
    };
    object->AddRef();
    object->Release();
    EXPECT_TRUE(counts.empty()); // two references, then one
    object.Reset();
    EXPECT_EQ(counts, (std::vector<ULONG>{1}));
}

TEST_F(AutomationObjectTest, ReferenceThatIsTakenBeforeTheLastReleaseKeepsItAlive)
{
    ComPtr<SampleObject> kept;
    object->beforeLastRelease = [&, raw = object.Get()] {
        raw->beforeLastRelease = nullptr;
        kept = raw;
    };
    object.Reset();
    EXPECT_EQ(SampleObject::alive, 1);
    EXPECT_EQ(SampleObject::finalReleases, 0);
}

TEST_F(AutomationObjectTest, IsCountedForStrangersOnlyWhileItLives)
{
    bool counted = true;
    EXPECT_TRUE(object->AddRefIfAlive());
    EXPECT_EQ(object->Release(), 1u);
    object->finalRelease = [&, raw = object.Get()] { counted = raw->AddRefIfAlive(); };
    object.Reset();
    EXPECT_FALSE(counted);
}

// Shapes of members

TEST_F(AutomationObjectTest, TextGoesOutAsANewBstr)
{
    Bind();
    OBstr text;
    EXPECT_EQ(object->GetText(Checks::BoundThenOut, text.Receive()), S_OK);
    EXPECT_STREQ(text.Get(), L"text");
}

TEST_F(AutomationObjectTest, BooleanGoesOutAsMinusOneOrZero)
{
    Bind();
    VARIANT_BOOL open = 99;
    EXPECT_EQ(object->GetOpen(&open), S_OK);
    EXPECT_EQ(open, -1);
    thing.SetOpen(false);
    EXPECT_EQ(object->GetOpen(&open), S_OK);
    EXPECT_EQ(open, 0);
}

TEST_F(AutomationObjectTest, NumberGoesOutInTheTypeOfTheProperty)
{
    Bind();
    float length = 0;
    EXPECT_EQ(object->GetLength(&length), S_OK);
    EXPECT_EQ(length, 2.5F);
}

TEST_F(AutomationObjectTest, QueryGetsItsArguments)
{
    Bind();
    long sum = 0;
    EXPECT_EQ(object->GetSum(&sum), S_OK);
    EXPECT_EQ(sum, 42);
}

TEST_F(AutomationObjectTest, ChecksRunInTheOrderThatTheMemberSays)
{
    static constexpr struct {
        Checks order;
        bool out;
        HRESULT result;
    } rows[] = {
        {Checks::BoundThenOut, false, notBound    },
        {Checks::BoundThenOut, true,  notBound    },
        {Checks::OutThenBound, false, E_INVALIDARG},
        {Checks::OutThenBound, true,  notBound    },
    };
    for (const auto& row : rows) {
        BSTR text = nullptr;
        EXPECT_EQ(object->GetText(row.order, row.out ? &text : nullptr), row.result);
    }
    Bind();
    EXPECT_EQ(object->GetText(Checks::BoundThenOut, nullptr), E_INVALIDARG);
    EXPECT_EQ(object->GetText(Checks::OutThenBound, nullptr), E_INVALIDARG);
}

TEST_F(AutomationObjectTest, FailedGetterLeavesANullPointer)
{
    wchar_t other[] = L"other";
    BSTR text = other;
    EXPECT_EQ(object->GetText(Checks::BoundThenOut, &text), notBound);
    EXPECT_EQ(text, nullptr);
    text = other;
    EXPECT_EQ(object->GetText(Checks::OutThenBound, &text), notBound);
    EXPECT_EQ(text, nullptr);
}

TEST_F(AutomationObjectTest, GetterThatRaisesIsAFailureAndLeavesANullPointer)
{
    Bind();
    for (const RaisedKind& kind : raisedKinds) {
        wchar_t other[] = L"other";
        BSTR text = other;
        EXPECT_TRUE(FAILED(object->GetRaised(&text, kind.raise))) << kind.name;
        EXPECT_EQ(text, nullptr) << kind.name;
    }
}

TEST_F(AutomationObjectTest, MemberTakesItsHoldOnce)
{
    Bind();
    object->checks = 0;
    OBstr text;
    object->GetText(Checks::BoundThenOut, text.Receive());
    object->PutText(text.Get());
    EXPECT_EQ(object->checks, 2);
}

TEST_F(AutomationObjectTest, SetterTakesATextOrABoolean)
{
    Bind();
    wchar_t text[] = L"other";
    EXPECT_EQ(object->PutText(text), S_OK);
    EXPECT_EQ(thing.GetText(), "other");
    EXPECT_EQ(object->PutText(nullptr), S_OK);
    EXPECT_TRUE(thing.GetText().IsEmpty());
    EXPECT_EQ(object->PutOpen(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(thing.IsOpen());
    EXPECT_EQ(object->PutOpen(1), S_OK);
    EXPECT_TRUE(thing.IsOpen());
}

TEST_F(AutomationObjectTest, SetterAndMethodNeedABoundObject)
{
    EXPECT_EQ(object->PutText(nullptr), notBound);
    EXPECT_EQ(TakeErrorInformation().description, "Sample object not initialized");
    EXPECT_EQ(object->Answer(0), notBound);
}

TEST_F(AutomationObjectTest, MethodGivesWhatItsOperationGives)
{
    Bind();
    EXPECT_EQ(object->Answer(S_FALSE), S_FALSE);
    EXPECT_EQ(object->Answer(E_ACCESSDENIED), E_ACCESSDENIED);
}

TEST_F(AutomationObjectTest, ChildIsGivenWithAReferenceByAnUnboundObjectToo)
{
    ASSERT_EQ(CreateInstance(object->part.GetAddressOf()), S_OK);
    ComPtr<IPrintJobsFilter> part;
    EXPECT_EQ(object->GetPart(&part), S_OK);
    EXPECT_EQ(part.Get(), object->part.Get());
    EXPECT_EQ(ReferencesOf(*part.Get()), 2u);
    EXPECT_EQ(object->GetPart(nullptr), E_INVALIDARG);
}

} // namespace
