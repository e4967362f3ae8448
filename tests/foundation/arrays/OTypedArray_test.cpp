// SPDX-License-Identifier: MIT
#include "foundation/arrays/OTypedArray.h"

#include <gmock/gmock.h>
#include <oaidl.h>

#include <climits>
#include <cstring>
#include <type_traits>
#include <vector>

#include "support/AssertCatcher.h"

class PrinterInfo;

template <>
inline constexpr const char* arrayElementName<PrinterInfo*> = "class PrinterInfo *";

namespace {

struct TestArray : OTypedArray<int> {
    using OTypedArray<int>::m_nMaxSize;

    TestArray() = default;
    explicit TestArray(const std::vector<int>& values)
    {
        for (const int value : values) Add(value);
    }
    std::vector<int> Get() const { return {GetData(), GetData() + GetSize()}; }
};

using Ints = std::vector<int>;

TEST(OTypedArray, StandsOnTheBodyOfCodeForItsElementSize)
{
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<1>, OTypedArray<char>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<1>, OTypedArray<unsigned char>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<2>, OTypedArray<wchar_t>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<4>, OTypedArray<int>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<4>, OTypedArray<unsigned long>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<8>, OTypedArray<void*>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<8>, OTypedArray<PrinterInfo*>>));
    EXPECT_TRUE((std::is_base_of_v<OBaseArray<24>, OTypedArray<VARIANT>>));
}

TEST(OTypedArray, AddsNoDataToItsBase)
{
    EXPECT_EQ(sizeof(OTypedArray<int>), sizeof(OBaseArray<4>));
    EXPECT_EQ(sizeof(OTypedArray<VARIANT>), sizeof(OBaseArray<24>));
}

TEST(OTypedArray, CannotBeCopiedByTheLanguage)
{
    EXPECT_FALSE(std::is_copy_constructible_v<OTypedArray<int>>);
    EXPECT_FALSE(std::is_copy_assignable_v<OTypedArray<int>>);
}

/// Breaks one ASSERT of each operation that has one and gives the records.
template <typename T>
std::vector<std::string> BrokenAsserts()
{
    OTypedArray<T> array;
    const OTypedArray<T>& view = array;
    return {
        BrokenAssert([&] { static_cast<void>(view.GetAt(0)); }),
        BrokenAssert([&] { static_cast<void>(array.ElementAt(-1)); }),
        BrokenAssert([&] { static_cast<void>(view.ElementAt(0)); }),
        BrokenAssert([&] { static_cast<void>(array[0]); }),
        BrokenAssert([&] { static_cast<void>(view[-1]); }),
        BrokenAssert([&] { array.SetAt(0, T{}); }),
        BrokenAssert([&] { array.SetAtGrow(-1, T{}); }),
    };
}

std::vector<std::string> RecordsOf(const std::string& name)
{
    const std::string inside = " ASSERT(nIndex >= 0 && nIndex < m_nSize)";
    return {
        name + "::GetAt" + inside,
        name + "::ElementAt" + inside,
        name + "::ElementAt" + inside,
        name + "::ElementAt" + inside,
        name + "::ElementAt" + inside,
        name + "::SetAt" + inside,
        name + "::SetAtGrow ASSERT(nIndex >= 0)",
    };
}

TEST(OTypedArray, NamesItsInstantiationInAsserts)
{
    EXPECT_EQ(BrokenAsserts<char>(), RecordsOf("OTypedArray<char>"));
    EXPECT_EQ(BrokenAsserts<unsigned char>(), RecordsOf("OTypedArray<unsigned char>"));
    EXPECT_EQ(BrokenAsserts<wchar_t>(), RecordsOf("OTypedArray<wchar_t>"));
    EXPECT_EQ(BrokenAsserts<int>(), RecordsOf("OTypedArray<int>"));
    EXPECT_EQ(BrokenAsserts<unsigned long>(), RecordsOf("OTypedArray<unsigned long>"));
    EXPECT_EQ(BrokenAsserts<void*>(), RecordsOf("OTypedArray<void *>"));
    EXPECT_EQ(BrokenAsserts<PrinterInfo*>(), RecordsOf("OTypedArray<class PrinterInfo *>"));
    EXPECT_EQ(BrokenAsserts<VARIANT>(), RecordsOf("OTypedArray<struct tagVARIANT>"));
}

TEST(OTypedArray, AssertRecordTellsTheFileBelowTheSourceTree)
{
    OTypedArray<int> array;
    BrokenAssert([&] { array.SetAt(0, 1); });
    EXPECT_STREQ(LastAssert().file, "driver/foundation/OTypedArray.h");
    EXPECT_GT(LastAssert().line, 0);
    BrokenAssert([&] { array.RemoveAt(0); });
    EXPECT_STREQ(LastAssert().file, "driver/foundation/OBaseArray.cpp");
}

TEST(OTypedArray, IndexAtTheSizeIsOutside)
{
    TestArray array({1, 2});
    EXPECT_EQ(BrokenAssert([&] { array.SetAt(1, 5); }), "");
    EXPECT_EQ(BrokenAssert([&] { array.SetAt(2, 5); }),
              "OTypedArray<int>::SetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)");
}

TEST(OTypedArray, AddLeavesNoSlackFirstAndTheFloorStepNext)
{
    TestArray array;
    EXPECT_EQ(array.Add(10), 0);
    EXPECT_EQ(array.m_nMaxSize, 1);
    EXPECT_EQ(array.Add(20), 1);
    EXPECT_EQ(array.m_nMaxSize, 5);
    EXPECT_EQ(array.Get(), (Ints{10, 20}));
}

TEST(OTypedArray, GetAtGivesAValueAndElementAtTheElement)
{
    TestArray array({1, 2, 3});
    EXPECT_TRUE((std::is_same_v<decltype(array.GetAt(0)), int>));
    array.ElementAt(1) = 20;
    array[2] = 30;
    EXPECT_EQ(array.GetAt(1), 20);
    const TestArray& view = array;
    EXPECT_EQ(view[2], 30);
    EXPECT_EQ(view.ElementAt(0), 1);
    EXPECT_EQ(&array.ElementAt(1), array.GetData() + 1);
}

TEST(OTypedArray, SetAtGrowInsideSetsOnly)
{
    TestArray array({1, 2});
    array.SetAtGrow(1, 9);
    EXPECT_EQ(array.Get(), (Ints{1, 9}));
}

TEST(OTypedArray, SetAtGrowPastTheEndFillsUpWithZeros)
{
    TestArray array({1, 2});
    array.SetAtGrow(4, 9);
    EXPECT_EQ(array.Get(), (Ints{1, 2, 0, 0, 9}));
    EXPECT_EQ(array.m_nMaxSize, 5);
    array.SetAtGrow(5, 10);
    EXPECT_EQ(array.m_nMaxSize, 9) << "the growth rule applies";
}

TEST(OTypedArray, SetAtGrowAtTheLargestIndexBreaksTheAssertOfTheSize)
{
    TestArray array({1});
    EXPECT_EQ(BrokenAssert([&] { array.SetAtGrow(INT_MAX, 1); }), "OBaseArray<4>::SetSize ASSERT(nNewSize >= 0)");
}

TEST(OTypedArray, InsertAtStoresTheValueInEachNewPlace)
{
    TestArray array({1, 2});
    array.InsertAt(1, 7, 3);
    EXPECT_EQ(array.Get(), (Ints{1, 7, 7, 7, 2}));
    array.InsertAt(0, 5);
    EXPECT_EQ(array.Get(), (Ints{5, 1, 7, 7, 7, 2}));
}

TEST(OTypedArray, InsertAtFarPastTheEndLeavesZerosBetween)
{
    TestArray array({1, 2});
    array.InsertAt(10, 7, 2);
    EXPECT_EQ(array.GetSize(), 12);
    EXPECT_EQ(array.Get(), (Ints{1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 7, 7}));
}

TEST(OTypedArray, InsertAtBreaksTheAssertsOfTheBase)
{
    TestArray array({1});
    EXPECT_EQ(BrokenAssert([&] { array.InsertAt(-1, 7); }), "OBaseArray<4>::InsertAt ASSERT(nIndex >= 0)");
    EXPECT_EQ(BrokenAssert([&] { array.InsertAt(0, 7, 0); }), "OBaseArray<4>::InsertAt ASSERT(nCount > 0)");
}

TEST(OTypedArray, AnElementOfItsOwnCanBeAdded)
{
    TestArray array({1});
    for (int round = 0; round < 100; ++round) array.Add(array[0]);
    EXPECT_THAT(array.Get(), ::testing::Each(1));
}

TEST(OTypedArray, AppendAndCopyTakeWholeArrays)
{
    TestArray array({1});
    EXPECT_EQ(array.Append(TestArray({2, 3})), 1);
    EXPECT_EQ(array.Get(), (Ints{1, 2, 3}));
    array.Copy(TestArray({4}));
    EXPECT_EQ(array.Get(), (Ints{4}));
}

TEST(OTypedArray, FindComparesValues)
{
    const TestArray array({5, 6, 5});
    const int five = 5;
    EXPECT_EQ(array.Find(&five), 0);
    EXPECT_EQ(array.Find(&five, 1), 2);
}

TEST(OTypedArray, VariantIsCopiedAsPlainBytesWithoutAReferenceOfItsOwn)
{
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = 42;
    OTypedArray<VARIANT> array;
    array.Add(number);
    array.InsertAt(0, number);
    EXPECT_EQ(array.GetSize(), 2);
    EXPECT_EQ(std::memcmp(&array[1], &number, sizeof number), 0);
    EXPECT_EQ(array.GetAt(0).lVal, 42);
}

} // namespace
