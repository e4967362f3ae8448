// SPDX-License-Identifier: MIT
#include "foundation/text/OStringArray.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "support/AssertCatcher.h"

namespace {

using Texts = std::vector<std::string>;

/// A string array with its members in sight, filled from and read as a row of texts.
struct TestArray : OStringArray {
    using OStringArray::m_nGrowBy;
    using OStringArray::m_nMaxSize;
    using OStringArray::m_nSize;
    using OStringArray::m_pData;

    TestArray() = default;
    TestArray(std::initializer_list<const char*> texts)
    {
        for (const char* const text : texts) Add(text);
    }
    explicit TestArray(const Texts& texts)
    {
        for (const std::string& text : texts) Add(text.c_str());
    }

    Texts Get() const
    {
        Texts texts;
        for (int index = 0; index < m_nSize; ++index) texts.push_back(m_pData[index].nstring());
        return texts;
    }
};

/// How many values share a text's core.
int Holders(const OString& text)
{
    return text.Core()->reference_count;
}

TEST(OStringArray, StartsWithNothing)
{
    const TestArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
    EXPECT_EQ(array.m_nGrowBy, 0);
}

TEST(OStringArray, HasItsMembersInOrderAfterTheVirtualTable)
{
    TestArray array;
    const auto offset = [&](const void* member) {
        return static_cast<const char*>(member) - reinterpret_cast<const char*>(&array);
    };
    EXPECT_EQ(offset(&array.m_pData), 8);
    EXPECT_EQ(offset(&array.m_nSize), 16);
    EXPECT_EQ(offset(&array.m_nMaxSize), 20);
    EXPECT_EQ(offset(&array.m_nGrowBy), 24);
    EXPECT_EQ(sizeof(OStringArray), 32u);
}

TEST(OStringArray, CannotBeCopiedByTheLanguage)
{
    EXPECT_FALSE(std::is_copy_constructible_v<OStringArray>);
    EXPECT_FALSE(std::is_copy_assignable_v<OStringArray>);
}

TEST(OStringArray, FirstSetSizeLeavesNoSlackAndTheSecondAddsTheFloorStep)
{
    TestArray array;
    array.SetSize(1);
    EXPECT_EQ(array.m_nMaxSize, 1);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 5);
    EXPECT_EQ(array.Get(), (Texts{"", ""}));
}

TEST(OStringArray, RoomGrowsByTheTable)
{
    static constexpr struct {
        int size, maxSize, growBy, newSize, newMaxSize;
    } rows[] = {
        {10,   10,   0,  11,   14   },
        {10,   10,   0,  15,   15   },
        {80,   80,   0,  81,   90   },
        {9000, 9000, 0,  9001, 10024},
        {10,   10,   3,  11,   13   },
        {10,   10,   -5, 11,   11   },
        {80,   800,  0,  801,  810  }, // by the size, not the room
    };
    for (const auto& row : rows) {
        TestArray array;
        array.SetSize(row.maxSize, row.growBy);
        array.SetSize(row.size);
        array.SetSize(row.newSize);
        EXPECT_EQ(array.m_nMaxSize, row.newMaxSize) << row.size << " by " << row.growBy;
    }
}

TEST(OStringArray, FixedStepStaysUntilZeroReturnsToTheComputedOne)
{
    TestArray array;
    array.SetSize(1, 3);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 4);
    array.SetSize(5, -1);
    EXPECT_EQ(array.m_nMaxSize, 7);
    array.RemoveAll();
    EXPECT_EQ(array.m_nGrowBy, 3);
    array.SetSize(1, 0);
    array.SetSize(2);
    EXPECT_EQ(array.m_nMaxSize, 5);
}

TEST(OStringArray, ElementsShareTheCoreOfWhatTheyWereSetFrom)
{
    const OString text = "text";
    TestArray array;
    array.Add(text);
    EXPECT_EQ(Holders(text), 2);
    array.SetAtGrow(1, text);
    array.SetAt(0, text);
    EXPECT_EQ(Holders(text), 3);
}

TEST(OStringArray, SizeZeroReleasesTheElementsAndTheBlock)
{
    const OString text = "text";
    TestArray array;
    array.InsertAt(0, text, 3);
    array.RemoveAll();
    EXPECT_EQ(Holders(text), 1);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
}

TEST(OStringArray, DestructorReleasesTheElements)
{
    const OString text = "text";
    {
        TestArray array;
        array.InsertAt(0, text, 3);
    }
    EXPECT_EQ(Holders(text), 1);
}

TEST(OStringArray, ShrinkingReleasesWhatIsCutAndKeepsTheRoom)
{
    const OString text = "text";
    TestArray array;
    array.InsertAt(0, text, 3);
    array.SetSize(1);
    EXPECT_EQ(Holders(text), 2);
    EXPECT_EQ(array.m_nMaxSize, 3);
    array.SetSize(3);
    EXPECT_EQ(array.Get(), (Texts{"text", "", ""}));
}

TEST(OStringArray, GrowingMovesTheHandlesWithoutACount)
{
    const OString text = "text";
    TestArray array;
    array.Add(text);
    const OStringCore* const core = array[0].Core();
    for (int size = 2; size < 200; ++size) array.SetSize(size);
    EXPECT_EQ(Holders(text), 2);
    EXPECT_EQ(array[0].Core(), core);
}

TEST(OStringArray, IndexIsValidFromZeroToBelowTheSize)
{
    const TestArray array = {"a", "b"};
    EXPECT_FALSE(array.IsValidIndex(-1));
    EXPECT_TRUE(array.IsValidIndex(0));
    EXPECT_TRUE(array.IsValidIndex(1));
    EXPECT_FALSE(array.IsValidIndex(2));
}

TEST(OStringArray, GetAtAndElementAtGiveTheElementItself)
{
    TestArray array = {"a", "b", "c"};
    array.GetAt(0) = "A";
    array.ElementAt(1) = "B";
    array[2] = "C";
    EXPECT_EQ(array.Get(), (Texts{"A", "B", "C"}));
    const OStringArray& view = array;
    EXPECT_EQ(&view.GetAt(1), array.GetData() + 1);
    EXPECT_EQ(&view.ElementAt(1), array.GetData() + 1);
    EXPECT_EQ(&view[2], view.GetData() + 2);
    EXPECT_EQ(&view[2], view.GetAddress(2));
    EXPECT_EQ(&array[1], array.GetAddress(1));
}

TEST(OStringArray, SetAtGrowPastTheEndFillsUpWithEmptyTexts)
{
    TestArray array = {"a"};
    array.SetAtGrow(3, "d");
    EXPECT_EQ(array.Get(), (Texts{"a", "", "", "d"}));
    array.SetAtGrow(1, "b");
    EXPECT_EQ(array.Get(), (Texts{"a", "b", "", "d"}));
}

TEST(OStringArray, AddGivesTheIndex)
{
    TestArray array;
    EXPECT_EQ(array.Add("a"), 0);
    EXPECT_EQ(array.m_nMaxSize, 1);
    EXPECT_EQ(array.Add("b"), 1);
    EXPECT_EQ(array.m_nMaxSize, 5);
}

TEST(OStringArray, AnElementOfItsOwnCanBeAddedAndInserted)
{
    TestArray array = {"a"};
    for (int round = 0; round < 50; ++round) array.Add(array[0]);
    for (int round = 0; round < 50; ++round) array.InsertAt(0, array[array.GetSize() - 1]);
    EXPECT_EQ(array.GetSize(), 101);
    EXPECT_THAT(array.Get(), ::testing::Each("a"));
}

TEST(OStringArray, FreeExtraShrinksTheRoomToTheSize)
{
    TestArray array = {"a", "b", "c"};
    array.FreeExtra();
    EXPECT_EQ(array.m_nMaxSize, 3);
    EXPECT_EQ(array.Get(), (Texts{"a", "b", "c"}));
    const OString* const block = array.GetData();
    array.FreeExtra();
    EXPECT_EQ(array.GetData(), block) << "nothing to do";
}

TEST(OStringArray, FreeExtraOnAnEmptyArrayGivesTheBlockBack)
{
    TestArray array = {"a", "b"};
    array.RemoveAt(0, 2);
    EXPECT_NE(array.GetData(), nullptr);
    array.FreeExtra();
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.m_nMaxSize, 0);
    array.SetSize(1);
    EXPECT_EQ(array.m_nMaxSize, 1) << "a first block again";
}

TEST(OStringArray, AppendSharesTheOthersElementsAndGivesTheOldSize)
{
    TestArray array = {"a"};
    const TestArray other = {"b", "c"};
    EXPECT_EQ(array.Append(other), 1);
    EXPECT_EQ(array.Get(), (Texts{"a", "b", "c"}));
    EXPECT_EQ(array[1].Core(), other[0].Core());
    EXPECT_EQ(array.Append(TestArray()), 3);
}

TEST(OStringArray, CopyTakesOverTheOthersElements)
{
    TestArray array = {"x", "y", "z"};
    const TestArray other = {"b", "c"};
    array.Copy(other);
    EXPECT_EQ(array.Get(), (Texts{"b", "c"}));
    EXPECT_EQ(array[1].Core(), other[1].Core());
    array.Copy(TestArray());
    EXPECT_TRUE(array.IsEmpty());
}

TEST(OStringArray, InsertEmptyMakesAGapOfEmptyTexts)
{
    const OString text = "b";
    TestArray array = {"a"};
    array.Add(text);
    array.InsertEmpty(1, 2);
    EXPECT_EQ(array.Get(), (Texts{"a", "", "", "b"}));
    EXPECT_EQ(array[1].Core(), nullptr);
    EXPECT_EQ(Holders(text), 2);
}

TEST(OStringArray, InsertFarPastTheEndLeavesEmptyTextsBetween)
{
    TestArray array = {"a", "b"};
    array.InsertAt(10, "c", 2);
    EXPECT_EQ(array.Get(), (Texts{"a", "b", "", "", "", "", "", "", "", "", "c", "c"}));
    array.InsertEmpty(13, 1);
    EXPECT_EQ(array.GetSize(), 14);
}

TEST(OStringArray, InsertAtRepeatsTheText)
{
    TestArray array = {"a", "b"};
    array.InsertAt(1, "x", 3);
    array.InsertAt(0, "y");
    EXPECT_EQ(array.Get(), (Texts{"y", "a", "x", "x", "x", "b"}));
}

TEST(OStringArray, InsertAtOfItselfInsertsTheElementsItHad)
{
    static constexpr struct {
        int index;
        const char* joined;
    } rows[] = {
        {0, "a,b,c,a,b,c" },
        {1, "a,a,b,c,b,c" },
        {3, "a,b,c,a,b,c" },
        {4, "a,b,c,,a,b,c"},
    };
    for (const auto& row : rows) {
        OStringArray array;
        array.Split("a,b,c", ",");
        array.InsertAt(row.index, &array);
        OString joined;
        array.Join(joined, ",");
        EXPECT_EQ(joined, row.joined) << row.index;
    }
}

TEST(OStringArray, InsertAtOfAnArrayInsertsAllItsElements)
{
    TestArray array = {"a", "b"};
    const TestArray other = {"x", "y", "z"};
    array.InsertAt(1, &other);
    EXPECT_EQ(array.Get(), (Texts{"a", "x", "y", "z", "b"}));
    EXPECT_EQ(array[3].Core(), other[2].Core());
    const TestArray none;
    array.InsertAt(99, &none);
    EXPECT_EQ(array.GetSize(), 5) << "an empty array inserts nothing";
}

TEST(OStringArray, RemoveAtReleasesTheRangeAndMovesTheTailDown)
{
    const OString text = "text";
    TestArray array = {"a"};
    array.InsertAt(1, text, 2);
    array.Add("d");
    const OString* const block = array.GetData();
    array.RemoveAt(1, 2);
    EXPECT_EQ(array.Get(), (Texts{"a", "d"}));
    EXPECT_EQ(Holders(text), 1);
    EXPECT_EQ(array.GetData(), block);
    array.RemoveAt(0);
    EXPECT_EQ(array.Get(), (Texts{"d"}));
}

TEST(OStringArray, RemoveAtOfNothingAtTheEndIsLegal)
{
    TestArray array = {"a"};
    array.RemoveAt(1, 0);
    EXPECT_EQ(array.Get(), (Texts{"a"}));
    TestArray empty;
    empty.RemoveAt(0, 0);
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(OStringArray, RemoveEmptyTakesOutEveryEmptyText)
{
    TestArray array = {"", "", "a", "", "b", "", ""};
    array.RemoveEmpty();
    EXPECT_EQ(array.Get(), (Texts{"a", "b"}));
    TestArray onlyEmpty = {"", "", ""};
    onlyEmpty.RemoveEmpty();
    EXPECT_TRUE(onlyEmpty.IsEmpty());
}

TEST(OStringArray, FindComparesTexts)
{
    const TestArray array = {"a", "b", "a"};
    EXPECT_EQ(array.Find("a"), 0);
    EXPECT_EQ(array.Find(L"a", 1), 2);
    EXPECT_EQ(array.Find("A"), -1);
    EXPECT_EQ(array.Find("b", 2), -1);
}

TEST(OStringArray, BrokenAssertsNameTheOperation)
{
    TestArray array = {"a", "b"};
    const OStringArray& view = array;
    const OString text = "x";
    const struct {
        std::function<void()> body;
        const char* broken;
    } rows[] = {
        {[&] { array.SetSize(-1); },              "OStringArray::SetSize ASSERT(nNewSize >= 0)"                    },
        {[&] { array.GetAt(2); },                 "OStringArray::GetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"    },
        {[&] { array.GetAt(-1); },                "OStringArray::GetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"    },
        {[&] { view.GetAt(2); },                  "OStringArray::GetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"    },
        {[&] { array.ElementAt(2); },             "OStringArray::ElementAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"},
        {[&] { view[-1]; },                       "OStringArray::ElementAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"},
        {[&] { array.SetAt(2, text); },           "OStringArray::SetAt ASSERT(nIndex >= 0 && nIndex < m_nSize)"    },
        {[&] { array.SetAtGrow(-1, text); },      "OStringArray::SetAtGrow ASSERT(nIndex >= 0)"                    },
        {[&] { array.SetAtGrow(INT_MAX, text); }, "OStringArray::SetSize ASSERT(nNewSize >= 0)"                    },
        {[&] { array.Append(array); },            "OStringArray::Append ASSERT(this != &src)"                      },
        {[&] { array.Copy(array); },              "OStringArray::Copy ASSERT(this != &src)"                        },
        {[&] { array.InsertEmpty(-1, 1); },       "OStringArray::InsertEmpty ASSERT(nIndex >= 0)"                  },
        {[&] { array.InsertEmpty(0, 0); },        "OStringArray::InsertEmpty ASSERT(nCount > 0)"                   },
        {[&] { array.InsertAt(-1, text); },       "OStringArray::InsertEmpty ASSERT(nIndex >= 0)"                  },
        {[&] { array.InsertAt(0, text, 0); },     "OStringArray::InsertEmpty ASSERT(nCount > 0)"                   },
        {[&] { array.InsertAt(0, nullptr); },     "OStringArray::InsertAt ASSERT(pNewArray != NULL)"               },
        {[&] { array.InsertAt(-1, &array); },     "OStringArray::InsertAt ASSERT(nStartIndex >= 0)"                },
        {[&] { array.RemoveAt(-1); },             "OStringArray::RemoveAt ASSERT(nIndex >= 0)"                     },
        {[&] { array.RemoveAt(0, -1); },          "OStringArray::RemoveAt ASSERT(nCount >= 0)"                     },
        {[&] { array.RemoveAt(2); },              "OStringArray::RemoveAt ASSERT(nIndex + nCount <= m_nSize)"      },
        {[&] { array.RemoveAt(1, INT_MAX); },     "OStringArray::RemoveAt ASSERT(nIndex + nCount <= m_nSize)"      },
    };
    for (const auto& row : rows) EXPECT_EQ(BrokenAssert(row.body), row.broken);
    EXPECT_EQ(array.Get(), (Texts{"a", "b"}));
}

TEST(OStringArray, SortsOrdinallyWithCapitalsFirst)
{
    TestArray array = {"pear", "apple", "Zebra", "", "apple", "app"};
    array.Sort();
    EXPECT_EQ(array.Get(), (Texts{"", "Zebra", "app", "apple", "apple", "pear"}));
    array.SortDescending();
    EXPECT_EQ(array.Get(), (Texts{"pear", "apple", "apple", "app", "Zebra", ""}));
}

TEST(OStringArray, SortingMovesHandlesWithoutACount)
{
    const OString text = "b";
    TestArray array;
    array.Add(text);
    array.Add("a");
    array.Sort();
    EXPECT_EQ(array[1].Core(), text.Core());
    EXPECT_EQ(Holders(text), 2);
}

TEST(OStringArray, SortingLeavesEqualElementsWhereTheyAre)
{
    TestArray array = {"a", "a"};
    const OStringCore* const first = array[0].Core();
    array.Sort();
    array.SortDescending();
    EXPECT_EQ(array[0].Core(), first);
}

TEST(OStringArray, SortOfNothingAndOfOneElementIsLegal)
{
    TestArray none;
    none.Sort();
    EXPECT_TRUE(none.IsEmpty());
    TestArray one = {"a"};
    one.SortDescending();
    EXPECT_EQ(one.Get(), (Texts{"a"}));
}

TEST(OStringArray, JoinPutsTheSeparatorBetweenElements)
{
    const struct {
        Texts elements;
        const char* separator;
        const char* joined;
    } rows[] = {
        {{},              ",",  ""       },
        {{"a"},           ",",  "a"      },
        {{"a", "b", "c"}, ", ", "a, b, c"},
        {{"a", "b"},      "",   "ab"     },
        {{"", "a", ""},   ",",  ",a,"    },
        {{"", ""},        ",",  ","      },
    };
    for (const auto& row : rows) {
        OString result = "from before";
        TestArray(row.elements).Join(result, row.separator);
        EXPECT_STREQ(result.nstring(), row.joined);
    }
}

TEST(OStringArray, JoinLeavesTheElementsAlone)
{
    const TestArray array = {"a", "b"};
    OString result;
    array.Join(result, ",");
    EXPECT_EQ(array.Get(), (Texts{"a", "b"}));
}

const struct {
    const char* source;
    const char* separator;
    Texts pieces;
} splitRows[] = {
    {"",       ",",     {}            },
    {"",       "",      {}            },
    {"abc",    "",      {"abc"}       },
    {"a,b",    nullptr, {"a,b"}       },
    {"abc",    ",",     {"abc"}       },
    {"a,b",    ",",     {"a", "b"}    },
    {"a,,b",   ",",     {"a", "", "b"}},
    {"a,",     ",",     {"a", ""}     },
    {",a",     ",",     {"", "a"}     },
    {",",      ",",     {"", ""}      },
    {"a--b-c", "--",    {"a", "b-c"}  },
    {"a---b",  "--",    {"a", "-b"}   },
};

const struct {
    const char* source;
    const char* separators;
    Texts pieces;
} splitOneOfRows[] = {
    {"",      ",;",    {}             },
    {"a,b",   "",      {"a,b"}        },
    {"a,b",   nullptr, {"a,b"}        },
    {"a,b;c", ",;",    {"a", "b", "c"}},
    {"a,;b",  ",;",    {"a", "", "b"} },
    {";a,",   ",;",    {"", "a", ""}  },
    {"a--b",  "--",    {"a", "", "b"} },
};

std::wstring Wide(const char* text)
{
    return {text, text + std::strlen(text)};
}

/// The wide text, or null for null.
class WideOrNull {
public:
    explicit WideOrNull(const char* text) : _isNull(!text), _text(Wide(text ? text : "")) {}
    const wchar_t* Get() const { return _isNull ? nullptr : _text.c_str(); }

private:
    bool _isNull;
    std::wstring _text;
};

TEST(OStringArray, SplitCutsAtEachSeparatorAndKeepsEmptyPieces)
{
    for (const auto& row : splitRows) {
        TestArray narrow = {"from before"};
        narrow.Split(row.source, row.separator);
        EXPECT_EQ(narrow.Get(), row.pieces) << row.source;

        TestArray wide = {"from before"};
        wide.Split(Wide(row.source).c_str(), WideOrNull(row.separator).Get());
        EXPECT_EQ(wide.Get(), row.pieces) << row.source;
    }
}

TEST(OStringArray, SplitOneOfCutsAtEachSingleSeparator)
{
    for (const auto& row : splitOneOfRows) {
        TestArray narrow = {"from before"};
        narrow.SplitOneOf(row.source, row.separators);
        EXPECT_EQ(narrow.Get(), row.pieces) << row.source;

        TestArray wide = {"from before"};
        wide.SplitOneOf(Wide(row.source).c_str(), WideOrNull(row.separators).Get());
        EXPECT_EQ(wide.Get(), row.pieces) << row.source;
    }
}

TEST(OStringArray, SplitOfNullLeavesTheArrayEmpty)
{
    TestArray array = {"from before"};
    array.Split(static_cast<const char*>(nullptr), ",");
    EXPECT_TRUE(array.IsEmpty());
    array.Add("from before");
    array.SplitOneOf(static_cast<const wchar_t*>(nullptr), L",");
    EXPECT_TRUE(array.IsEmpty());
}

TEST(OStringArray, WideSplitKeepsWhatNoCodePageHas)
{
    TestArray array;
    array.Split(L"\x4E2D,\x6587", L",");
    ASSERT_EQ(array.GetSize(), 2);
    EXPECT_STREQ(array[1].wstring(), L"\x6587");
}

template <size_t size>
std::string Raw(const char (&text)[size])
{
    return {text, size - 1};
}

template <size_t size>
std::wstring Raw(const wchar_t (&text)[size])
{
    return {text, size - 1};
}

template <typename Char>
std::basic_string<Char> Contents(const OBuffer<Char>& buffer)
{
    return {buffer.GetData(), static_cast<size_t>(buffer.GetSize())};
}

template <typename Char>
void Fill(OBuffer<Char>& buffer, const std::basic_string<Char>& contents)
{
    buffer.Assign(contents.data(), static_cast<int>(contents.size()));
}

const struct {
    int mode;
    Texts elements;
    std::string narrow;
    std::wstring wide;
} packRows[] = {
    {0,  {"a", "", "b"},  Raw("a\0b\0\0"),        Raw(L"a\0b\0\0")       },
    {0,  {},              Raw("\0"),              Raw(L"\0")             },
    {0,  {"", ""},        Raw("\0"),              Raw(L"\0")             },
    {1,  {"a", "", "bc"}, Raw("\3\0a\0\0bc\0"),   Raw(L"\3a\0\0bc\0")    },
    {1,  {},              Raw("\0\0"),            Raw(L"\0")             },
    {2,
     {"a", "", "bc"},
     Raw("\x8\0a\0\0bc\0"),
     Raw(L"\xE"
         L"a\0\0bc\0")                                                   },
    {2,  {},              Raw("\2\0"),            Raw(L"\2")             },
    {3,  {"a", "", "bc"}, Raw("a\r\n\r\nbc\r\n"), Raw(L"a\r\n\r\nbc\r\n")},
    {3,  {},              "",                     L""                    },
    {4,  {"a", "", "bc"}, "abc",                  L"abc"                 },
    {-1, {"a", "", "bc"}, "abc",                  L"abc"                 },
};

TEST(OStringArray, PackLaysElementsOutByMode)
{
    for (const auto& row : packRows) {
        const TestArray array(row.elements);
        OBuffer<char> narrow(77);
        EXPECT_EQ(array.Pack(narrow, row.mode), static_cast<int>(row.narrow.size()));
        EXPECT_EQ(Contents(narrow), row.narrow) << "mode " << row.mode;

        OBuffer<wchar_t> wide(77);
        EXPECT_EQ(array.Pack(wide, row.mode), static_cast<int>(row.wide.size()));
        EXPECT_EQ(Contents(wide), row.wide) << "mode " << row.mode;
    }
}

TEST(OStringArray, PackCutsTheCountToSixteenBits)
{
    TestArray array;
    array.SetSize(0x10003);
    OBuffer<char> packed;
    array.Pack(packed, OStringArray::packCounted);
    EXPECT_EQ(Contents(packed).substr(0, 2), Raw("\3\0"));
}

TEST(OStringArray, PackCutsTheSizeToSixteenBits)
{
    TestArray array;
    array.Add(std::string(0x10201, 'x').c_str());
    OBuffer<char> packed;
    EXPECT_EQ(array.Pack(packed, OStringArray::packSized), 0x10204);
    EXPECT_EQ(Contents(packed).substr(0, 2), "\x04\x02");
}

TEST(OStringArray, PackInAnotherCodePageLeavesTheElementsInTheirs)
{
    TestArray array;
    array.Add(L"\x20AC");
    OBuffer<char> packed;
    array.Pack(packed, OStringArray::packTerminated, 1208);
    EXPECT_EQ(Contents(packed), Raw("\xE2\x82\xAC\0\0"));
    EXPECT_EQ(array[0].GetCodePage(), 0u);
}

const struct {
    int mode;
    std::string narrow;
    std::wstring wide;
    Texts elements;
} unpackRows[] = {
    {0,  Raw("a\0b\0\0"),           Raw(L"a\0b\0\0"),           {"a", "b"}          },
    {0,  Raw("\0"),                 Raw(L"\0"),                 {}                  },
    {0,  Raw("a\0\0b\0\0"),         Raw(L"a\0\0b\0\0"),         {"a"}               },
    {1,  Raw("\3\0a\0\0bc\0"),      Raw(L"\3a\0\0bc\0"),        {"a", "", "bc"}     },
    {1,  Raw("\1\0a\0b\0"),         Raw(L"\1a\0b\0"),           {"a"}               },
    {1,  Raw("\0\0a\0"),            Raw(L"\0a\0"),              {}                  },
    {2,  Raw("\2\0a\0b\0"),         Raw(L"\4a\0b\0"),           {"a"}               },
    {2,  Raw("\3\0a\0bc\0d\0"),     Raw(L"\6a\0bc\0d\0"),       {"a", "bc"}         },
    {2,  Raw("\0\0a\0"),            Raw(L"\0a\0"),              {}                  },
    {3,  Raw("ab\r\n"),             Raw(L"ab\r\n"),             {"ab"}              },
    {3,  Raw("ab\n"),               Raw(L"ab\n"),               {"a"}               },
    {3,  Raw("\n"),                 Raw(L"\n"),                 {""}                },
    {3,  Raw("\r\n"),               Raw(L"\r\n"),               {""}                },
    {3,  Raw("ab\r\n\n\r\ncd\r\n"), Raw(L"ab\r\n\n\r\ncd\r\n"), {"ab", "", "", "cd"}},
    {3,  Raw("ab\r\nrest"),         Raw(L"ab\r\nrest"),         {"ab"}              },
    {3,  Raw("rest"),               Raw(L"rest"),               {}                  },
    {4,  Raw("a\0b\0\0"),           Raw(L"a\0b\0\0"),           {}                  },
    {-1, Raw("a\0b\0\0"),           Raw(L"a\0b\0\0"),           {}                  },
};

TEST(OStringArray, UnpackReadsElementsByMode)
{
    for (const auto& row : unpackRows) {
        OBuffer<char> narrowSource;
        Fill(narrowSource, row.narrow);
        TestArray narrow;
        narrow.Unpack(narrowSource, row.mode);
        EXPECT_EQ(narrow.Get(), row.elements) << "mode " << row.mode << ", " << row.narrow;

        OBuffer<wchar_t> wideSource;
        Fill(wideSource, row.wide);
        TestArray wide;
        wide.Unpack(wideSource, row.mode);
        EXPECT_EQ(wide.Get(), row.elements) << "mode " << row.mode << ", " << row.narrow;
    }
}

TEST(OStringArray, UnpackAppends)
{
    OBuffer<char> source;
    Fill(source, Raw("b\0c\0\0"));
    TestArray array = {"a"};
    array.Unpack(source, OStringArray::packTerminated);
    EXPECT_EQ(array.Get(), (Texts{"a", "b", "c"}));
}

TEST(OStringArray, UnpackOfAnEmptySourceDoesNothing)
{
    TestArray array = {"a"};
    array.Unpack(OBuffer<char>(), OStringArray::packTerminated);
    array.Unpack(OBuffer<wchar_t>(), OStringArray::packCounted);
    EXPECT_EQ(array.Get(), (Texts{"a"}));
}

template <typename Char>
struct BufferWithoutBlock : OBuffer<Char> {
    BufferWithoutBlock() { this->m_nSize = 5; }
};

TEST(OStringArray, UnpackOfANullPointerBreaksTheAssert)
{
    TestArray array;
    EXPECT_EQ(BrokenAssert([&] { array.Unpack(BufferWithoutBlock<char>(), 0); }), "OStringArray::Unpack ASSERT(s)");
    EXPECT_EQ(BrokenAssert([&] { array.Unpack(BufferWithoutBlock<wchar_t>(), 9); }), "OStringArray::Unpack ASSERT(s)");
}

TEST(OStringArray, UnpackMakesElementsInTheGivenCodePage)
{
    OBuffer<char> source;
    Fill(source, Raw("\xE2\x82\xAC\0\0"));
    TestArray array;
    array.Unpack(source, OStringArray::packTerminated, 1208);
    ASSERT_EQ(array.GetSize(), 1);
    EXPECT_EQ(array[0].GetCodePage(), 1208u);
    EXPECT_STREQ(array[0].wstring(), L"\x20AC");
}

TEST(OStringArray, ListPackedWithItsSizeIsReadOnePrefixTooFar)
{
    const TestArray array = {"a", "b"};
    OBuffer<char> narrow;
    array.Pack(narrow, OStringArray::packSized);
    Fill(narrow, Contents(narrow) + Raw("x\0y\0"));
    TestArray fromNarrow;
    fromNarrow.Unpack(narrow, OStringArray::packSized);
    EXPECT_EQ(fromNarrow.Get(), (Texts{"a", "b", "x"})) << "two bytes further";

    OBuffer<wchar_t> wide;
    array.Pack(wide, OStringArray::packSized);
    Fill(wide, Contents(wide) + Raw(L"x\0y\0"));
    TestArray fromWide;
    fromWide.Unpack(wide, OStringArray::packSized);
    EXPECT_EQ(fromWide.Get(), (Texts{"a", "b", "x"})) << "one unit further";
}

TEST(OStringArray, ListPackedWithItsSizeAndNothingAfterItGainsEmptyElements)
{
    const TestArray array = {"a", "b"};
    OBuffer<char> narrow;
    array.Pack(narrow, OStringArray::packSized);
    TestArray fromNarrow;
    fromNarrow.Unpack(narrow, OStringArray::packSized);
    EXPECT_EQ(fromNarrow.Get(), (Texts{"a", "b", "", ""}));

    OBuffer<wchar_t> wide;
    array.Pack(wide, OStringArray::packSized);
    TestArray fromWide;
    fromWide.Unpack(wide, OStringArray::packSized);
    EXPECT_EQ(fromWide.Get(), (Texts{"a", "b", ""}));
}

TEST(OStringArray, UnpackEndsAfterABlockWhosePrefixIsTooLarge)
{
    static constexpr int modes[] = {OStringArray::packTerminated, OStringArray::packCounted, OStringArray::packSized};
    for (const int mode : modes) {
        OBuffer<char> narrow;
        Fill(narrow, Raw("\x7F\x7F"
                         "abc"));
        TestArray fromNarrow;
        fromNarrow.Unpack(narrow, mode);
        EXPECT_THAT(fromNarrow.Get(), ::testing::Contains(::testing::EndsWith("abc"))) << mode;
        EXPECT_LE(fromNarrow.GetSize(), 2) << mode;

        OBuffer<wchar_t> wide;
        Fill(wide, Raw(L"\x7F7F"
                       L"abc"));
        TestArray fromWide;
        fromWide.Unpack(wide, mode);
        EXPECT_STREQ(fromWide[0].Right(3).wstring(), L"abc") << mode;
        EXPECT_LE(fromWide.GetSize(), 2) << mode;
    }
}

TEST(OStringArray, PrefixThatIsCutShortCountsNothingMoreThanItSays)
{
    OBuffer<char> source;
    Fill(source, Raw("\1"));
    TestArray array;
    array.Unpack(source, OStringArray::packCounted);
    EXPECT_EQ(array.Get(), (Texts{""}));
}

} // namespace
