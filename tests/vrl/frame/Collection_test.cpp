// SPDX-License-Identifier: MIT
#include "vrl/frame/Collection.h"

#include "support/BackgroundCall.h"
#include "support/LockProbe.h"
#include "support/Raising.h"
#include "support/com/ScriptedSink.h"

#include <gmock/gmock.h>

#include <optional>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Objects = Collection<IDispatch>;

class CollectionTest : public ::testing::Test {
protected:
    /// Puts an object into the collection, with a reference of the entry's own.
    void Add(ScriptedSink& object) { collection->Add(Objects::Entry::Share(&object)); }

    std::vector<IDispatch*> Entries() const
    {
        std::vector<IDispatch*> entries;
        for (const auto& entry : collection->Entries()) entries.push_back(entry.Get());
        return entries;
    }

    ScriptedSink first;
    ScriptedSink second;
    std::optional<Objects> collection{std::in_place};
};

TEST_F(CollectionTest, IsEmptyAtFirst)
{
    EXPECT_EQ(collection->GetCount(), 0);
    EXPECT_THAT(Entries(), IsEmpty());
}

TEST_F(CollectionTest, KeepsTheOrderOfAddingAndTheSameObjectTwice)
{
    Add(second);
    Add(first);
    Add(second);
    EXPECT_EQ(collection->GetCount(), 3);
    EXPECT_THAT(Entries(), ElementsAre(&second, &first, &second));
}

TEST_F(CollectionTest, HasOneReferenceForEachEntry)
{
    Add(first);
    Add(first);
    Add(second);
    EXPECT_EQ(first.references, 2u);
    EXPECT_EQ(second.references, 1u);
}

TEST_F(CollectionTest, DoesNotTakeNothing)
{
    collection->Add({});
    EXPECT_EQ(collection->GetCount(), 0);
}

TEST_F(CollectionTest, GivesAnEntryByItsNumberWithAReference)
{
    Add(first);
    Add(second);
    EXPECT_EQ(collection->At(1).Get(), &first);
    const auto entry = collection->At(2);
    EXPECT_EQ(entry.Get(), &second);
    EXPECT_EQ(second.references, 2u);
}

TEST_F(CollectionTest, RefusesNumbersOutsideOfIt)
{
    Add(first);
    for (const long number : {0L, 2L, -1L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        EXPECT_THROW(collection->At(number), InvalidArgument_E) << number;
    }
}

TEST_F(CollectionTest, RemovesTheFirstEntryOfAnObject)
{
    Add(first);
    Add(second);
    Add(first);
    EXPECT_TRUE(collection->Remove(&first));
    EXPECT_THAT(Entries(), ElementsAre(&second, &first));
    EXPECT_EQ(first.references, 1u);
    EXPECT_TRUE(collection->Remove(&first));
    EXPECT_FALSE(collection->Remove(&first));
    EXPECT_THAT(Entries(), ElementsAre(&second));
}

TEST_F(CollectionTest, RemovesAllFromTheFirstToTheLast)
{
    std::vector<int> order;
    first.onRelease = [&] { order.push_back(1); };
    second.onRelease = [&] { order.push_back(2); };
    Add(second);
    Add(first);
    Add(second);
    collection->RemoveAll();
    EXPECT_THAT(order, ElementsAre(2, 1, 2));
    EXPECT_EQ(collection->GetCount(), 0);
    EXPECT_EQ(first.references + second.references, 0u);
}

TEST_F(CollectionTest, LetsGoOfWhatIsLeftAtItsEnd)
{
    Add(first);
    Add(second);
    collection.reset();
    EXPECT_EQ(first.references + second.references, 0u);
}

TEST_F(CollectionTest, CanBeChangedWhileItsEntriesAreWalked)
{
    Add(first);
    Add(second);
    for (const auto& entry : collection->Entries()) {
        collection->RemoveAll();
        EXPECT_TRUE(entry) << "held by the walk";
    }
    EXPECT_EQ(first.references + second.references, 0u);
}

TEST_F(CollectionTest, LetsGoOfEntriesOutsideOfItsLock)
{
    const LockProbe removing(collection->Lock());
    const LockProbe removingAll(collection->Lock());
    std::vector<bool> free;
    first.onRelease = [&] { free.push_back((free.empty() ? removing : removingAll).IsFree()); };
    Add(first);
    Add(first);
    collection->Remove(&first);
    collection->RemoveAll();
    EXPECT_THAT(free, ElementsAre(true, true));
}

TEST_F(CollectionTest, WaitsForWhoeverHasItsLock)
{
    OLockGuard guard(collection->Lock());
    const BackgroundCall call([&] { collection->GetCount(); });
    EXPECT_TRUE(call.IsHeldUp());
    guard.Unlock();
    EXPECT_TRUE(call.Ends());
}

TEST_F(CollectionTest, StandsWhatItsEntriesRaise)
{
    for (const RaisedKind& kind : raisedKinds) {
        Add(first);
        Add(second);
        first.onRelease = kind.raise;
        collection->RemoveAll();
        EXPECT_EQ(collection->GetCount(), 0) << kind.name;
        EXPECT_EQ(second.references, 0u) << kind.name;
        first.onRelease = nullptr;
        first.references = 0;

        first.onAddRef = kind.raise;
        Add(first);
        EXPECT_EQ(collection->GetCount(), 0) << kind.name << ": what can't be counted isn't taken";
        first.onAddRef = nullptr;
    }
}

TEST_F(CollectionTest, PassesOverEntriesThatCanNoLongerBeCounted)
{
    Add(first);
    Add(second);
    first.onAddRef = raisedKinds[0].raise;
    EXPECT_THAT(Entries(), ElementsAre(&second));
    first.onAddRef = nullptr;
}

// Enumerators

class CollectionEnumerator : public CollectionTest {
protected:
    /// The next object that the enumerator gives, with no reference for the test; null at the end.
    static IDispatch* Next(IEnumVARIANT& enumerator)
    {
        VARIANT item;
        ULONG fetched = 99;
        if (enumerator.Next(1, &item, &fetched) != S_OK) return nullptr;
        EXPECT_EQ(fetched, 1u);
        EXPECT_EQ(item.vt, VT_DISPATCH);
        IDispatch* const object = item.pdispVal;
        ::VariantClear(&item);
        return object;
    }
};

TEST_F(CollectionEnumerator, GivesTheObjectsInOrder)
{
    Add(second);
    Add(first);
    const auto enumerator = collection->NewEnum();
    EXPECT_EQ(Next(*enumerator.Get()), &second);
    EXPECT_EQ(Next(*enumerator.Get()), &first);
    EXPECT_EQ(Next(*enumerator.Get()), nullptr);
}

TEST_F(CollectionEnumerator, OfAnEmptyCollectionGivesNothing)
{
    EXPECT_EQ(Next(*collection->NewEnum().Get()), nullptr);
}

TEST_F(CollectionEnumerator, HoldsTheObjectsItself)
{
    Add(first);
    auto enumerator = collection->NewEnum();
    EXPECT_EQ(first.references, 2u);
    collection->RemoveAll();
    EXPECT_EQ(first.references, 1u);
    EXPECT_EQ(Next(*enumerator.Get()), &first) << "later changes don't show";
    enumerator.Reset();
    EXPECT_EQ(first.references, 0u);
}

TEST_F(CollectionEnumerator, GivesNullForWhatIsNoDispatch)
{
    first.refusesEvents = true;
    Add(first);
    VARIANT item;
    EXPECT_EQ(collection->NewEnum()->Next(1, &item, nullptr), S_OK);
    EXPECT_EQ(item.vt, VT_DISPATCH);
    EXPECT_EQ(item.pdispVal, nullptr);
}

TEST_F(CollectionEnumerator, AsksTheEntriesOutsideOfTheLock)
{
    const LockProbe lock(collection->Lock());
    bool free = false;
    Add(first);
    first.onQueryInterface = [&] { free = lock.IsFree(); };
    collection->NewEnum();
    EXPECT_TRUE(free);
}

TEST_F(CollectionEnumerator, StandsWhatItsObjectsRaise)
{
    for (const RaisedKind& kind : raisedKinds) {
        Add(first);
        first.onQueryInterface = kind.raise;
        EXPECT_EQ(Next(*collection->NewEnum().Get()), nullptr) << kind.name;
        first.onQueryInterface = nullptr;

        auto enumerator = collection->NewEnum();
        first.onAddRef = kind.raise;
        VARIANT item;
        EXPECT_EQ(enumerator->Next(1, &item, nullptr), S_OK) << kind.name;
        EXPECT_EQ(item.pdispVal, nullptr) << kind.name;
        first.onAddRef = nullptr;

        first.onRelease = kind.raise;
        enumerator.Reset();
        collection->RemoveAll();
        first.onRelease = nullptr;
        first.references = 0;
    }
}

TEST_F(CollectionEnumerator, ClonesShareNoPosition)
{
    Add(first);
    Add(second);
    const auto enumerator = collection->NewEnum();
    Next(*enumerator.Get());
    Microsoft::WRL::ComPtr<IEnumVARIANT> clone;
    ASSERT_EQ(enumerator->Clone(&clone), S_OK);
    EXPECT_EQ(Next(*clone.Get()), &second);
    EXPECT_EQ(Next(*enumerator.Get()), &second);
    EXPECT_EQ(clone->Reset(), S_OK);
    EXPECT_EQ(Next(*clone.Get()), &first);
    EXPECT_EQ(Next(*enumerator.Get()), nullptr);
}

// Several threads at once

/// An object that threads may count.
struct SharedObject : ScriptedSink {
    std::atomic<long> count = 0;
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++count); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--count); }
};

TEST(CollectionThreads, AddRemoveWalkAndEnumerateTogether)
{
    constexpr int rounds = 2000;
    SharedObject object;
    {
        Objects collection;
        const auto repeat = [&](auto work) {
            return std::jthread([&collection, &object, work] {
                for (int round = 0; round < rounds; ++round) work(collection, object);
            });
        };
        const std::jthread threads[] = {
            repeat([](Objects& all, IDispatch& one) { all.Add(Objects::Entry::Share(&one)); }),
            repeat([](Objects& all, IDispatch& one) { all.Remove(&one); }),
            repeat([](Objects& all, IDispatch&) {
                for (const auto& entry : all.Entries()) entry->GetTypeInfoCount(nullptr);
            }),
            repeat([](Objects& all, IDispatch&) {
                VARIANT item;
                if (all.NewEnum()->Next(1, &item, nullptr) == S_OK) ::VariantClear(&item);
            }),
            repeat([](Objects& all, IDispatch&) {
                try {
                    all.At(1);
                } catch (const InvalidArgument_E&) { // just now there is none
                }
            }),
            repeat([](Objects& all, IDispatch&) { all.RemoveAll(); }),
        };
    }
    EXPECT_EQ(object.count, 0);
}

TEST(CollectionThreads, ShareTheItemsOfOneEnumeratorOutAmongThem)
{
    constexpr int count = 3000;
    SharedObject object;
    std::atomic<int> given = 0;
    {
        Objects collection;
        for (int index = 0; index < count; ++index) collection.Add(Objects::Entry::Share(&object));
        const auto enumerator = collection.NewEnum();
        const auto take = [&] {
            VARIANT items[7];
            ULONG fetched = 0;
            do {
                enumerator->Next(static_cast<ULONG>(std::size(items)), items, &fetched);
                for (ULONG index = 0; index < fetched; ++index) ::VariantClear(&items[index]);
                given += static_cast<int>(fetched);
            } while (fetched > 0);
        };
        const std::jthread threads[] = {std::jthread(take), std::jthread(take), std::jthread(take)};
    }
    EXPECT_EQ(given, count);
    EXPECT_EQ(object.count, 0);
}

} // namespace
