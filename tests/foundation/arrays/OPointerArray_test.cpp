// SPDX-License-Identifier: MIT
#include "foundation/arrays/OPointerArray.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "support/AssertCatcher.h"

namespace {

struct Thing {
    ~Thing() { ++destroyed; }
    int number = 0;
    static inline int destroyed = 0;
};

class OPointerArrayTest : public ::testing::Test {
protected:
    Thing first{1};
    Thing second{2};
    OPointerArray<Thing> array;
};

TEST_F(OPointerArrayTest, StandsOnTheArrayOfUntypedPointersAndAddsNoData)
{
    EXPECT_TRUE((std::is_base_of_v<OTypedArray<void*>, OPointerArray<Thing>>));
    EXPECT_EQ(sizeof(OPointerArray<Thing>), sizeof(OTypedArray<void*>));
}

TEST_F(OPointerArrayTest, GivesBackThePointersThatWerePutIn)
{
    EXPECT_EQ(array.Add(&first), 0);
    EXPECT_EQ(array.Add(&second), 1);
    EXPECT_EQ(array.GetAt(0), &first);
    EXPECT_EQ(array[1], &second);
    EXPECT_EQ(array.GetAt(1)->number, 2);
    const OPointerArray<Thing>& view = array;
    EXPECT_EQ(view.ElementAt(0), &first);
    EXPECT_EQ(view[1], &second);
}

TEST_F(OPointerArrayTest, ElementsCanBeSetInEveryWay)
{
    array.SetAtGrow(2, &first);
    EXPECT_EQ(array.GetAt(0), nullptr);
    array.SetAt(0, &second);
    array.ElementAt(1) = &first;
    EXPECT_EQ(array.GetAt(1), &first);
    array[1] = &second;
    EXPECT_EQ(array.GetAt(0), &second);
    EXPECT_EQ(array.GetAt(1), &second);
    EXPECT_EQ(array.GetAt(2), &first);
}

TEST_F(OPointerArrayTest, InsertsRemovesAppendsAndCopies)
{
    array.InsertAt(0, &first, 2);
    array.InsertAt(1, &second);
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(array.GetAt(1), &second);
    array.RemoveAt(0);

    OPointerArray<Thing> other;
    other.Copy(array);
    EXPECT_EQ(other.Append(array), 2);
    EXPECT_EQ(other.GetSize(), 4);
    EXPECT_EQ(other.GetAt(2), &second);
    EXPECT_EQ(other.GetAt(3), &first);
}

TEST_F(OPointerArrayTest, FindComparesThePointersAndNotWhatTheyPointTo)
{
    second.number = first.number;
    array.Add(&first);
    array.Add(&second);
    array.Add(&second);
    EXPECT_EQ(array.Find(&second), 1);
    EXPECT_EQ(array.Find(&second, 2), 2);
    EXPECT_EQ(array.Find(nullptr), -1);
}

TEST_F(OPointerArrayTest, OwnsNothingThatItsElementsPointTo)
{
    const int before = Thing::destroyed;
    {
        OPointerArray<Thing> shortLived;
        shortLived.Add(&first);
        shortLived.Add(&second);
        shortLived.RemoveAt(0);
        shortLived.RemoveAll();
        shortLived.Add(&first);
    }
    EXPECT_EQ(Thing::destroyed, before);
}

TEST_F(OPointerArrayTest, NamesTheSharedInstantiationInAsserts)
{
    EXPECT_EQ(BrokenAssert([&] { static_cast<void>(array.GetAt(0)); }),
              "OTypedArray<void *>::GetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)");
    EXPECT_EQ(BrokenAssert([&] { array.RemoveAt(0); }), "OBaseArray<8>::RemoveAt ASSERT(nIndex + nCount <= m_nSize)");
}

} // namespace
