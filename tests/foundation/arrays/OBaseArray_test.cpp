// SPDX-License-Identifier: MIT
#include "foundation/arrays/OBaseArray.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstring>
#include <numeric>
#include <vector>

#include "support/AssertCatcher.h"

namespace {

/// A base array with its members in sight; bytes are set and read as a row of numbers.
template <size_t elementSize>
struct TestArray : OBaseArray<elementSize> {
    using OBaseArray<elementSize>::m_pData;
    using OBaseArray<elementSize>::m_nSize;
    using OBaseArray<elementSize>::m_nMaxSize;
    using OBaseArray<elementSize>::m_nGrowBy;

    TestArray() = default;
    explicit TestArray(std::vector<BYTE> bytes) { Set(bytes); }

    void Set(const std::vector<BYTE>& bytes)
    {
        this->SetSize(static_cast<int>(bytes.size() / elementSize));
        std::memcpy(this->GetData(), bytes.data(), bytes.size());
    }

    std::vector<BYTE> Get() const
    {
        const BYTE* const data = this->GetData();
        return {data, data + static_cast<size_t>(m_nSize) * elementSize};
    }
};

std::vector<BYTE> Counting(size_t count)
{
    std::vector<BYTE> bytes(count);
    std::iota(bytes.begin(), bytes.end(), BYTE{1});
    return bytes;
}

using Bytes = std::vector<BYTE>;

template <typename T>
class OBaseArrayOfEachSize : public ::testing::Test {
};

template <size_t elementSize>
using Size = std::integral_constant<size_t, elementSize>;
using Sizes = ::testing::Types<Size<1>, Size<2>, Size<4>, Size<6>, Size<8>, Size<12>, Size<16>, Size<24>>;
TYPED_TEST_SUITE(OBaseArrayOfEachSize, Sizes);

TYPED_TEST(OBaseArrayOfEachSize, CountsInElementsOfItsSize)
{
    TestArray<TypeParam::value> array(Counting(3 * TypeParam::value));
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(array.GetAddress(2) - array.GetData(), static_cast<ptrdiff_t>(2 * TypeParam::value));
    EXPECT_EQ(array.Get(), Counting(3 * TypeParam::value));
}

TYPED_TEST(OBaseArrayOfEachSize, InsertsRemovesAndFindsWholeElements)
{
    constexpr size_t size = TypeParam::value;
    TestArray<size> array(Counting(3 * size));
    array.InsertAt(1, 2);
    EXPECT_EQ(array.GetSize(), 5);
    const Bytes all = array.Get();
    EXPECT_EQ(Bytes(all.begin() + size, all.begin() + 3 * size), Bytes(2 * size, BYTE{0}));

    const Bytes last(all.end() - size, all.end());
    EXPECT_EQ(array.Find(last.data()), 4);

    array.RemoveAt(1, 2);
    EXPECT_EQ(array.Get(), Counting(3 * size));
}

TYPED_TEST(OBaseArrayOfEachSize, NamesItsSizeInAnAssert)
{
    TestArray<TypeParam::value> array;
    EXPECT_EQ(BrokenAssert([&] { array.SetSize(-1); }),
              "OBaseArray<" + std::to_string(TypeParam::value) + ">::SetSize ASSERT(nNewSize >= 0)");
}

TEST(OBaseArray, StartsWithNothing)
{
    const TestArray<4> array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
    EXPECT_EQ(array.m_nGrowBy, 0);
}

TEST(OBaseArray, HasItsMembersInOrderAfterTheVirtualTable)
{
    TestArray<4> array;
    const auto offset = [&](const void* member) {
        return static_cast<const char*>(member) - reinterpret_cast<const char*>(&array);
    };
    EXPECT_EQ(offset(&array.m_pData), 8);
    EXPECT_EQ(offset(&array.m_nSize), 16);
    EXPECT_EQ(offset(&array.m_nMaxSize), 20);
    EXPECT_EQ(offset(&array.m_nGrowBy), 24);
    EXPECT_EQ(sizeof(OBaseArray<4>), 32u);
}

TEST(OBaseArray, FirstSetSizeLeavesNoSlackAndTheSecondAddsTheFloorStep)
{
    TestArray<4> array;
    array.SetSize(1);
    EXPECT_EQ(array.m_nMaxSize, 1);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 5);
}

TEST(OBaseArray, RoomGrowsByTheTable)
{
    static constexpr struct {
        int size, maxSize, growBy, newSize, newMaxSize;
    } rows[] = {
        {10,   10,   0,  11,   14   },
        {10,   10,   0,  14,   14   },
        {10,   10,   0,  15,   15   },
        {80,   80,   0,  81,   90   },
        {8191, 8191, 0,  8192, 9214 },
        {8192, 8192, 0,  8193, 9216 },
        {9000, 9000, 0,  9001, 10024},
        {10,   10,   3,  11,   13   },
        {10,   10,   3,  14,   14   },
        {10,   10,   -5, 11,   11   },
        {80,   800,  0,  801,  810  }, // by the size, not the room
    };
    for (const auto& row : rows) {
        TestArray<1> array;
        array.SetSize(row.maxSize, row.growBy);
        array.SetSize(row.size);
        array.SetSize(row.newSize);
        EXPECT_EQ(array.m_nMaxSize, row.newMaxSize) << row.size << " to " << row.newSize << " by " << row.growBy;
        EXPECT_EQ(array.GetSize(), row.newSize);
    }
}

TEST(OBaseArray, GrowingByOneToNineThousandEndsInStepsOfTheCeiling)
{
    TestArray<1> array;
    std::vector<int> stepsPastCeiling;
    int room = 0;
    for (int size = 1; size <= 12000; ++size) {
        array.SetSize(size);
        const int step = array.m_nMaxSize - room;
        EXPECT_LE(step, 1024);
        if (step > 0 && size > 8192) stepsPastCeiling.push_back(step);
        room = array.m_nMaxSize;
    }
    ASSERT_GE(stepsPastCeiling.size(), 3u);
    EXPECT_THAT(stepsPastCeiling, ::testing::Each(1024));
}

TEST(OBaseArray, FixedStepStaysUntilZeroReturnsToTheComputedOne)
{
    TestArray<4> array;
    array.SetSize(1, 3);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 4);
    array.SetSize(5, -1);
    EXPECT_EQ(array.m_nMaxSize, 7);
    array.SetSize(8, 0);
    EXPECT_EQ(array.m_nMaxSize, 11);
}

TEST(OBaseArray, StepSurvivesSizeZero)
{
    TestArray<4> array;
    array.SetSize(5, 7);
    array.RemoveAll();
    EXPECT_EQ(array.m_nGrowBy, 7);
    array.SetSize(1);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 8);
}

TEST(OBaseArray, StepIsStoredAlsoWhenTheSizeBecomesZero)
{
    TestArray<4> array;
    array.SetSize(0, 9);
    EXPECT_EQ(array.m_nGrowBy, 9);
}

TEST(OBaseArray, NegativeSizeBreaksTheAssertBeforeTheStepIsStored)
{
    TestArray<4> array;
    EXPECT_EQ(BrokenAssert([&] { array.SetSize(-1, 9); }), "OBaseArray<4>::SetSize ASSERT(nNewSize >= 0)");
    EXPECT_EQ(array.m_nGrowBy, 0);
}

TEST(OBaseArray, StepThatLeavesThirtyTwoBitsGivesJustTheNewSize)
{
    TestArray<1> array;
    array.SetSize(1, INT_MAX);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 2);
}

TEST(OBaseArray, SizeZeroGivesTheBlockBack)
{
    TestArray<4> array;
    array.SetSize(5);
    array.SetSize(0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
    EXPECT_TRUE(array.IsEmpty());
}

TEST(OBaseArray, ShrinkingKeepsTheRoomAndTheBlock)
{
    TestArray<1> array({1, 2, 3, 4});
    const BYTE* const block = array.GetData();
    array.SetSize(2);
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.m_nMaxSize, 4);
    EXPECT_EQ(array.Get(), (Bytes{1, 2}));
    EXPECT_EQ(block[2], 3) << "a shrinking size leaves the bytes";
}

TEST(OBaseArray, GrowingWithinTheRoomZeroesTheElementsThatComeBack)
{
    TestArray<1> array({1, 2, 3, 4});
    array.SetSize(1);
    array.SetSize(3);
    EXPECT_EQ(array.Get(), (Bytes{1, 0, 0}));
}

TEST(OBaseArray, GrowingPastTheRoomZeroesAllFromTheOldSizeOn)
{
    TestArray<1> array({1, 2, 3, 4});
    array.SetSize(1);
    array.SetSize(9);
    EXPECT_EQ(array.Get(), (Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(OBaseArray, IndexIsValidFromZeroToBelowTheSize)
{
    TestArray<4> array;
    array.SetSize(2);
    EXPECT_FALSE(array.IsValidIndex(-1));
    EXPECT_TRUE(array.IsValidIndex(0));
    EXPECT_TRUE(array.IsValidIndex(1));
    EXPECT_FALSE(array.IsValidIndex(2));
}

TEST(OBaseArray, FreeExtraShrinksTheRoomToTheSize)
{
    TestArray<1> array({1, 2, 3, 4});
    array.SetSize(2);
    array.FreeExtra();
    EXPECT_EQ(array.m_nMaxSize, 2);
    EXPECT_EQ(array.Get(), (Bytes{1, 2}));
}

TEST(OBaseArray, FreeExtraWithoutSlackKeepsTheBlock)
{
    TestArray<1> array({1, 2});
    const BYTE* const block = array.GetData();
    array.FreeExtra();
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.m_nMaxSize, 2);
}

TEST(OBaseArray, FreeExtraOnAnEmptyArrayKeepsItsBlockButNoRoom)
{
    TestArray<1> array({1, 2, 3});
    array.RemoveAt(0, 3);
    const BYTE* const block = array.GetData();
    array.FreeExtra();
    EXPECT_EQ(array.GetData(), block);
    EXPECT_NE(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
}

TEST(OBaseArray, SetSizeReallocatesTheBlockThatFreeExtraKept)
{
    TestArray<1> array({1, 2, 3});
    array.RemoveAt(0, 3);
    array.FreeExtra();
    array.SetSize(1);
    EXPECT_EQ(array.m_nMaxSize, 4) << "not a first block: the step counts";
    EXPECT_EQ(array.Get(), (Bytes{0}));
}

TEST(OBaseArray, AppendPutsTheOtherAtTheEndAndGivesTheOldSize)
{
    TestArray<2> array({1, 1, 2, 2});
    const TestArray<2> other({3, 3});
    EXPECT_EQ(array.Append(other), 2);
    EXPECT_EQ(array.Get(), (Bytes{1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(other.Get(), (Bytes{3, 3}));
}

TEST(OBaseArray, AppendOfAnEmptyArrayChangesNothing)
{
    TestArray<2> array({1, 1});
    const TestArray<2> other;
    EXPECT_EQ(array.Append(other), 1);
    EXPECT_EQ(array.Get(), (Bytes{1, 1}));
}

TEST(OBaseArray, AppendOfItselfBreaksTheAssert)
{
    TestArray<2> array;
    EXPECT_EQ(BrokenAssert([&] { array.Append(array); }), "OBaseArray<2>::Append ASSERT(this != &src)");
}

TEST(OBaseArray, CopyTakesOverSizeAndBytes)
{
    TestArray<2> array({9, 9, 9, 9, 9, 9});
    array.Copy(TestArray<2>({1, 2}));
    EXPECT_EQ(array.Get(), (Bytes{1, 2}));
    array.Copy(TestArray<2>());
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(OBaseArray, CopyOfItselfBreaksTheAssert)
{
    TestArray<2> array;
    EXPECT_EQ(BrokenAssert([&] { array.Copy(array); }), "OBaseArray<2>::Copy ASSERT(this != &src)");
}

TEST(OBaseArray, RemoveAtMovesTheTailDownAndKeepsTheBlock)
{
    TestArray<1> array({1, 2, 3, 4, 5});
    const BYTE* const block = array.GetData();
    array.RemoveAt(1, 2);
    EXPECT_EQ(array.Get(), (Bytes{1, 4, 5}));
    array.RemoveAt(2);
    EXPECT_EQ(array.Get(), (Bytes{1, 4}));
    array.RemoveAt(0, 2);
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.m_nMaxSize, 5);
}

TEST(OBaseArray, RemoveAtOfNothingAtTheEndIsLegal)
{
    TestArray<1> array({1, 2});
    array.RemoveAt(2, 0);
    EXPECT_EQ(array.Get(), (Bytes{1, 2}));
    TestArray<1> empty;
    empty.RemoveAt(0, 0);
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(OBaseArray, RemoveAtOutsideTheArrayBreaksAnAssert)
{
    static constexpr struct {
        int index, count;
        const char* broken;
    } rows[] = {
        {-1, 1,       "OBaseArray<1>::RemoveAt ASSERT(nIndex >= 0)"               },
        {0,  -1,      "OBaseArray<1>::RemoveAt ASSERT(nCount >= 0)"               },
        {2,  1,       "OBaseArray<1>::RemoveAt ASSERT(nIndex + nCount <= m_nSize)"},
        {3,  0,       "OBaseArray<1>::RemoveAt ASSERT(nIndex + nCount <= m_nSize)"},
        {1,  INT_MAX, "OBaseArray<1>::RemoveAt ASSERT(nIndex + nCount <= m_nSize)"},
    };
    for (const auto& row : rows) {
        TestArray<1> array({1, 2});
        EXPECT_EQ(BrokenAssert([&] { array.RemoveAt(row.index, row.count); }), row.broken) << row.index;
        EXPECT_EQ(array.Get(), (Bytes{1, 2}));
    }
}

TEST(OBaseArray, InsertAtInsideMovesTheTailUpAndZeroesTheGap)
{
    TestArray<1> array({1, 2, 3});
    array.InsertAt(1, 2);
    EXPECT_EQ(array.Get(), (Bytes{1, 0, 0, 2, 3}));
    array.InsertAt(0, 1);
    EXPECT_EQ(array.Get(), (Bytes{0, 1, 0, 0, 2, 3}));
}

TEST(OBaseArray, InsertAtFarPastTheEndZeroesWhatLiesBetween)
{
    TestArray<1> array({1, 2});
    array.InsertAt(10, 3);
    EXPECT_EQ(array.GetSize(), 13);
    EXPECT_EQ(array.Get(), (Bytes{1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(OBaseArray, InsertAtOfABadPlaceBreaksAnAssert)
{
    static constexpr struct {
        int index, count;
        const char* broken;
    } rows[] = {
        {-1,      1,       "OBaseArray<8>::InsertAt ASSERT(nIndex >= 0)" },
        {0,       0,       "OBaseArray<8>::InsertAt ASSERT(nCount > 0)"  },
        {0,       -1,      "OBaseArray<8>::InsertAt ASSERT(nCount > 0)"  },
        {INT_MAX, 1,       "OBaseArray<8>::SetSize ASSERT(nNewSize >= 0)"},
        {0,       INT_MAX, "OBaseArray<8>::SetSize ASSERT(nNewSize >= 0)"},
    };
    for (const auto& row : rows) {
        TestArray<8> array;
        array.SetSize(1);
        EXPECT_EQ(BrokenAssert([&] { array.InsertAt(row.index, row.count); }), row.broken) << row.index;
    }
}

TEST(OBaseArray, FindComparesAllBytesFromTheStartIndexOn)
{
    const TestArray<2> array({1, 2, 1, 3, 1, 2});
    const BYTE value[] = {1, 2};
    EXPECT_EQ(array.Find(value), 0);
    EXPECT_EQ(array.Find(value, 1), 2);
    EXPECT_EQ(array.Find(value, 3), -1);
    const BYTE absent[] = {2, 1};
    EXPECT_EQ(array.Find(absent), -1);
}

} // namespace
