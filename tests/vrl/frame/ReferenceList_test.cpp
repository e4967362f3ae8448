// SPDX-License-Identifier: MIT
#include "vrl/frame/ReferenceList.h"

#include "support/AllocationFailure.h"
#include "support/com/RecordingSinkOwner.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

class ReferenceListTest : public ::testing::Test {
protected:
    std::vector<SinkOwner*> Visited()
    {
        std::vector<SinkOwner*> visited;
        ReferenceList::Scope(*list).ForEach([&](SinkOwner& owner, IDispatch*) { visited.push_back(&owner); });
        return visited;
    }

    using Owners = std::vector<SinkOwner*>;

    std::shared_ptr<ReferenceList> list = std::make_shared<ReferenceList>("added\n", "removed\n");
    RecordingSinkOwner first;
    RecordingSinkOwner second;
    RecordingSinkOwner third;
};

TEST_F(ReferenceListTest, IsEmptyUntilSomebodyComes)
{
    EXPECT_TRUE(list->IsEmpty());
    list->Add(first);
    EXPECT_FALSE(list->IsEmpty());
}

TEST_F(ReferenceListTest, VisitsEachOnceInTheOrderOfComing)
{
    list->Add(second);
    list->Add(first);
    list->Add(second);
    EXPECT_EQ(Visited(), (Owners{&second, &first}));
}

TEST_F(ReferenceListTest, VisitGivesTheIdentityWithAReference)
{
    list->Add(first);
    ReferenceList::Scope(*list).ForEach([&](SinkOwner&, IDispatch* identity) {
        EXPECT_EQ(identity, first.Object());
        EXPECT_EQ(first.references, 1u);
    });
    EXPECT_EQ(first.references, 0u);
}

TEST_F(ReferenceListTest, PassesOverAnObjectThatIsAboutToDie)
{
    list->Add(first);
    list->Add(second);
    first.alive = false;
    EXPECT_EQ(Visited(), (Owners{&second}));
}

TEST_F(ReferenceListTest, HoldsNoReference)
{
    list->Add(first);
    EXPECT_EQ(first.references, 0u);
}

TEST_F(ReferenceListTest, RemovedObjectIsGone)
{
    list->Add(first);
    list->Add(second);
    list->Remove(first);
    EXPECT_EQ(Visited(), (Owners{&second}));
}

TEST_F(ReferenceListTest, RemovingWhatIsNotThereDoesNothing)
{
    list->Add(first);
    list->Remove(second);
    EXPECT_EQ(Visited(), (Owners{&first}));
}

TEST_F(ReferenceListTest, ObjectThatLeavesOnAWalkTakesNobodysTurn)
{
    list->Add(first);
    list->Add(second);
    list->Add(third);
    Owners visited;
    ReferenceList::Scope(*list).ForEach([&](SinkOwner& owner, IDispatch*) {
        visited.push_back(&owner);
        if (&owner != &second) return;
        list->Remove(first);
        list->Remove(second);
    });
    EXPECT_EQ(visited, (Owners{&first, &second, &third}));
}

TEST_F(ReferenceListTest, ObjectThatIsTakenOutAheadOfTheWalkIsNotVisited)
{
    list->Add(first);
    list->Add(second);
    Owners visited;
    ReferenceList::Scope(*list).ForEach([&](SinkOwner& owner, IDispatch*) {
        visited.push_back(&owner);
        list->Remove(second);
    });
    EXPECT_EQ(visited, (Owners{&first}));
}

TEST_F(ReferenceListTest, ObjectThatComesOnAWalkIsVisited)
{
    list->Add(first);
    Owners visited;
    ReferenceList::Scope(*list).ForEach([&](SinkOwner& owner, IDispatch*) {
        visited.push_back(&owner);
        list->Add(second);
    });
    EXPECT_EQ(visited, (Owners{&first, &second}));
}

TEST_F(ReferenceListTest, WalkThatThrowsGivesTheLockBack)
{
    list->Add(first);
    const auto walk = [&] {
        ReferenceList::Scope(*list).ForEach([](SinkOwner&, IDispatch*) { throw std::runtime_error("sink"); });
    };
    EXPECT_THROW(walk(), std::runtime_error);
    EXPECT_EQ(first.references, 0u);
    std::jthread([&] { list->Remove(first); }).join();
    EXPECT_TRUE(list->IsEmpty());
}

TEST_F(ReferenceListTest, IsTheSamePlaceForAllThreads)
{
    list->Add(first);
    std::jthread other;
    {
        ReferenceList::Scope scope(*list);
        other = std::jthread([&] { list->Remove(first); });
        EXPECT_FALSE(list->IsEmpty()); // the other thread waits for the scope
    }
    other.join();
    EXPECT_TRUE(list->IsEmpty());
}

TEST_F(ReferenceListTest, ObjectLeavesAllItsLists)
{
    const auto other = std::make_shared<ReferenceList>("added\n", "removed\n");
    list->Add(first);
    other->Add(first);
    other->Add(second);
    EXPECT_TRUE(first.IsListed());
    first.LeaveLists();
    EXPECT_FALSE(first.IsListed());
    EXPECT_TRUE(list->IsEmpty());
    EXPECT_FALSE(other->IsEmpty());
}

TEST_F(ReferenceListTest, RemovedObjectIsListedNoLonger)
{
    list->Add(first);
    list->Remove(first);
    EXPECT_FALSE(first.IsListed());
}

TEST_F(ReferenceListTest, ListMayDieBeforeItsObjects)
{
    list->Add(first);
    list.reset();
    EXPECT_TRUE(first.IsListed());
    first.LeaveLists();
    EXPECT_FALSE(first.IsListed());
}

TEST_F(ReferenceListTest, AddingWithoutMemoryLeavesTheObjectOut)
{
    for (int allowed = 0;; ++allowed) {
        bool thrown = false;
        {
            const AllocationFailure failure(allowed);
            try {
                list->Add(first);
            } catch (const std::bad_alloc&) {
                thrown = true;
            }
        }
        if (!thrown) break;
        EXPECT_TRUE(list->IsEmpty()) << allowed;
        EXPECT_FALSE(first.IsListed()) << allowed;
    }
    EXPECT_EQ(Visited(), (Owners{&first}));
}

} // namespace
