// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/GuardedHeap.h"
#include "support/OStringState.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

namespace {

OString InPage(UINT codePage, const char* text)
{
    OString value;
    value.SetCodePage(codePage);
    value = text;
    return value;
}

TEST(OStringCompare, OrdersByCharacterThenByLength)
{
    static constexpr struct {
        const char* left;
        const char* right;
        int order;
    } rows[] = {
        {"",    "",    0 },
        {"",    "a",   -1},
        {"a",   "",    1 },
        {"abc", "abc", 0 },
        {"abc", "abd", -1},
        {"abd", "abc", 1 },
        {"ab",  "abc", -1},
        {"abc", "ab",  1 },
        {"A",   "a",   -1},
        {"Z",   "a",   -1},
        {"10",  "9",   -1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OString(row.left).Compare(row.right), row.order) << row.left << " : " << row.right;
        OString left(row.left);
        left.wstring();
        EXPECT_EQ(left.Compare(row.right), row.order) << row.left << " : " << row.right << " in wide";
    }
}

TEST(OStringCompare, SameTextHeldNarrowAndWideIsEqual)
{
    EXPECT_EQ(OString("abc"), OString(L"abc"));
    EXPECT_EQ(OString(L"\x20AC"), InPage(1252, "\x80"));
    EXPECT_EQ(InPage(1208, "\xE2\x82\xAC"), InPage(1252, "\x80"));
}

TEST(OStringCompare, NullCoreEqualsAnyEmptyText)
{
    EXPECT_EQ(OString(), OString(""));
    EXPECT_EQ(OString(), InPage(932, ""));
}

TEST(OStringCompare, NarrowBytesAbove7FComeBeforeAsciiAndAfterItInWide)
{
    ASSERT_EQ(::GetACP(), 1252u);
    const OString accented("\xE9");
    EXPECT_EQ(accented.Compare("a"), -1);
    EXPECT_EQ(OString("a").Compare(accented), 1);
    EXPECT_EQ(accented.Compare(L"a"), 1);
    EXPECT_EQ(OString("a").Compare(OString(L"\x00E9")), -1);
}

TEST(OStringCompare, NarrowTextComesAfterItsContinuationWithAByteAbove7F)
{
    // The terminator is compared as a byte like the others.
    EXPECT_EQ(OString("a").Compare("a\xE9"), 1);
    EXPECT_EQ(OString().Compare("\xE9"), 1);
    EXPECT_EQ(OString(L"a").Compare("a\xE9"), -1);
}

TEST(OStringCompare, DifferentCodePagesAreComparedInWide)
{
    EXPECT_EQ(InPage(1252, "\xE9").Compare("a"), 1);
    EXPECT_NE(InPage(1252, "\xCF"), InPage(1251, "\xCF"));
}

TEST(OStringCompare, WideOrderIsByUnsignedUnit)
{
    EXPECT_EQ(OString(L"\xFFFD").Compare(L"\x0041"), 1);
    EXPECT_EQ(OString(L"\xD83D\xDE00").Compare(L"\xFB01"), -1); // no code points here
}

TEST(OStringCompare, NoCaseFoldsAsciiLettersOnly)
{
    static const struct {
        OString left;
        OString right;
        int order;
    } rows[] = {
        {"abcxyz",  "ABCXYZ",  0 },
        {L"abcxyz", "ABCXYZ",  0 },
        {"a",       "B",       -1},
        {"B",       "a",       1 },
        {"_",       "a",       1 }, // '_' lies between 'Z' and 'a'
        {"{",       "[",       1 }, // one after the letters
        {"`",       "@",       1 }, // one before them
        {"\xE9",    "\xC9",    1 }, // no letter of Latin-1
        {L"\x00E9", L"\x00C9", 1 },
        {L"\x0131", L"I",      1 }, // no dotless i
        {L"\x212A", L"k",      1 }, // no Kelvin sign
    };
    for (const auto& row : rows) EXPECT_EQ(row.left.CompareNoCase(row.right), row.order) << Narrow(row.left);
}

TEST(OStringCompare, NullPointerIsMinusOneOnEitherSide)
{
    constexpr const char* noNarrow = nullptr;
    constexpr const wchar_t* noWide = nullptr;
    EXPECT_EQ(OString::Compare("a", noNarrow), -1);
    EXPECT_EQ(OString::Compare(noNarrow, "a"), -1);
    EXPECT_EQ(OString::Compare(noNarrow, noNarrow), -1);
    EXPECT_EQ(OString::Compare(L"a", noWide), -1);
    EXPECT_EQ(OString::Compare(noWide, L"a"), -1);
    EXPECT_EQ(OString::CompareNoCase("a", noNarrow), -1);
    EXPECT_EQ(OString::CompareNoCase(noNarrow, "a"), -1);
    EXPECT_EQ(OString::CompareNoCase(L"a", noWide), -1);
    EXPECT_EQ(OString::CompareNoCase(noWide, L"a"), -1);
}

TEST(OStringCompare, OperatorsTakeValuesAndTextsOnBothSides)
{
    const OString text("abc");
    EXPECT_TRUE(text == OString("abc"));
    EXPECT_TRUE(text == "abc");
    EXPECT_TRUE("abc" == text);
    EXPECT_TRUE(text == L"abc");
    EXPECT_TRUE(L"abc" == text);
    EXPECT_TRUE(text != OString("abd"));
    EXPECT_TRUE(text != "abd");
    EXPECT_TRUE(text != L"abd");
    EXPECT_FALSE(text != "abc");
}

TEST(OStringCompare, OperatorsTakeNarrowTextInTheValuesCodePage)
{
    EXPECT_TRUE(InPage(1208, "\xC3\xA9") == "\xC3\xA9");
    EXPECT_TRUE(InPage(932, "\x95\x5C") == "\x95\x5C");
}

TEST(OStringCompare, NullTextEqualsTheEmptyValue)
{
    EXPECT_TRUE(OString() == static_cast<const char*>(nullptr));
    EXPECT_TRUE(OString() == static_cast<const wchar_t*>(nullptr));
}

TEST(OStringFind, FirstCharacterFromTheStartIndex)
{
    static constexpr struct {
        char character;
        int start;
        int found;
    } rows[] = {
        {'a',  0,       0 },
        {'b',  0,       1 },
        {'c',  0,       -1},
        {'a',  1,       2 },
        {'a',  2,       2 },
        {'b',  3,       3 },
        {'a',  3,       -1},
        {'b',  4,       -1},
        {'b',  99,      -1},
        {'b',  INT_MAX, -1},
        {'b',  -1,      1 },
        {'b',  INT_MIN, 1 },
        {'\0', 0,       -1},
    };
    for (const auto& row : rows) {
        const OString narrow("abab");
        const OString wide(L"abab");
        EXPECT_EQ(narrow.Find(row.character, row.start), row.found) << row.character << row.start;
        EXPECT_EQ(wide.Find(row.character, row.start), row.found) << row.character << row.start;
        EXPECT_EQ(narrow.Find(static_cast<wchar_t>(row.character), row.start), row.found);
    }
}

TEST(OStringFind, NarrowCharacterSearchesTheNarrowForm)
{
    const OString text("a\xE9");
    EXPECT_EQ(text.Find('\xE9'), 1);
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OStringFind, NarrowCharacterIsSignExtendedInWideState)
{
    EXPECT_EQ(OString(L"a\x00E9").Find('\xE9'), -1);
    EXPECT_EQ(OString(L"a\xFFE9").Find('\xE9'), 1);
    EXPECT_EQ(OString(L"a\x00E9").ReverseFind('\xE9'), -1);
    EXPECT_EQ(OString(L"a\xFFE9").ReverseFind('\xE9'), 1);
}

TEST(OStringFind, WideCharacterAlwaysSearchesTheWideForm)
{
    const OString text("a\x80");
    EXPECT_EQ(text.Find(L'\x20AC'), 1);
    EXPECT_EQ(StateOf(text), OStringState::Both);
}

TEST(OStringFind, IndexesAreWideUnitsInWideState)
{
    const OString text = InPage(932, "\x95\x5C"
                                     "a\\");
    EXPECT_EQ(text.Find('a'), 1);
    EXPECT_EQ(text.Find('\\'), 2); // not the second byte of the first character
    EXPECT_EQ(text.Find("a"), 1);
    EXPECT_EQ(text.ReverseFind('a'), 1);
    EXPECT_EQ(text.FindOneOf("xa"), 1);
}

TEST(OStringFind, TextFromTheStartIndex)
{
    static constexpr struct {
        const char* searched;
        int start;
        int found;
    } rows[] = {
        {"ab",    0,       0 },
        {"ab",    1,       2 },
        {"ab",    3,       -1},
        {"ba",    0,       1 },
        {"abab",  0,       0 },
        {"ababa", 0,       -1},
        {"ab",    -7,      0 },
        {"b",     3,       3 },
        {"b",     4,       -1},
        {"bb",    0,       -1},
        {"b",     INT_MAX, -1},
    };
    for (const auto& row : rows) {
        const std::wstring searched(row.searched, row.searched + std::strlen(row.searched));
        EXPECT_EQ(OString("abab").Find(row.searched, row.start), row.found) << row.searched << row.start;
        EXPECT_EQ(OString(L"abab").Find(row.searched, row.start), row.found) << row.searched << row.start;
        EXPECT_EQ(OString("abab").Find(searched.c_str(), row.start), row.found) << row.searched << row.start;
        EXPECT_EQ(OString("abab").Find(OString(row.searched), row.start), row.found) << row.searched << row.start;
    }
}

TEST(OStringFind, EmptyTextIsFoundAtTheStartIndexInsideTheText)
{
    const OString text("abc");
    EXPECT_EQ(text.Find(""), 0);
    EXPECT_EQ(text.Find("", 2), 2);
    EXPECT_EQ(text.Find("", -5), 0);
    EXPECT_EQ(text.Find(L"", 1), 1);
    EXPECT_EQ(text.Find(static_cast<const char*>(nullptr), 1), 1);
}

TEST(OStringFind, StartAtTheLengthFindsNotEvenTheEmptyText)
{
    const OString text("abc");
    EXPECT_EQ(text.Find("", 3), -1);
    EXPECT_EQ(text.Find(L"", 3), -1);
    EXPECT_EQ(text.Find(OString(), 3), -1);
    EXPECT_EQ(OString().Find(""), -1);
}

TEST(OStringFind, WideTextThatThePageLacksIsNotFoundAsItsReplacement)
{
    EXPECT_EQ(OString("a?").Find(L"\x4E2D"), -1);
}

TEST(OStringFind, NarrowTextIsTakenInTheValuesCodePage)
{
    EXPECT_EQ(InPage(1208, "a\xC3\xA9").Find("\xC3\xA9"), 1);
}

TEST(OStringFind, LastOccurrence)
{
    const OString narrow("abab");
    const OString wide(L"abab");
    EXPECT_EQ(narrow.ReverseFind('a'), 2);
    EXPECT_EQ(narrow.ReverseFind('c'), -1);
    EXPECT_EQ(wide.ReverseFind('b'), 3);
    EXPECT_EQ(narrow.ReverseFind(L'a'), 2);
    EXPECT_EQ(wide.ReverseFind(L'c'), -1);
    EXPECT_EQ(narrow.ReverseFind('\0'), -1);
}

TEST(OStringFind, FirstAndLastOfASet)
{
    static const struct {
        OString text;
        OString set;
        int first;
        int last;
    } rows[] = {
        {"abcabc",      "b",       1,  4 },
        {"abcabc",      "cb",      1,  5 },
        {"abcabc",      "x",       -1, -1},
        {"abcabc",      "",        -1, -1},
        {"",            "a",       -1, -1},
        {L"ab\x4E2D"
         L"c", L"\x4E2D", 2,  2 },
        {"a?",          L"\x4E2D", -1, -1}, // together in wide: nothing is lost
        {"a\x80",       L"\x20AC", 1,  1 },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.text.FindOneOf(row.set), row.first) << Narrow(row.text);
        EXPECT_EQ(row.text.ReverseFindOneOf(row.set), row.last) << Narrow(row.text);
    }
}

TEST(OStringFind, ValueMayBeSearchedForItself)
{
    const OString text("abc");
    EXPECT_EQ(text.Find(text), 0);
    EXPECT_EQ(text.FindOneOf(text), 0);
    EXPECT_EQ(text.ReverseFindOneOf(text), 2);
}

TEST(OStringMid, CutsAndClamps)
{
    static constexpr struct {
        int start;
        int count;
        const char* part;
    } rows[] = {
        {0,       3,       "abc"   },
        {2,       2,       "cd"    },
        {4,       9,       "ef"    },
        {4,       INT_MAX, "ef"    },
        {-3,      2,       "ab"    },
        {2,       -1,      ""      },
        {2,       0,       ""      },
        {6,       1,       ""      },
        {99,      1,       ""      },
        {INT_MAX, INT_MAX, ""      },
        {INT_MIN, INT_MAX, "abcdef"},
        {0,       6,       "abcdef"},
    };
    const GuardedHeap heap;
    for (const auto& row : rows) {
        EXPECT_EQ(OString("abcdef").Mid(row.start, row.count), row.part) << row.start << ", " << row.count;
        EXPECT_EQ(OString(L"abcdef").Mid(row.start, row.count), row.part) << row.start << ", " << row.count;
    }
}

TEST(OStringMid, FromTheStartToTheEnd)
{
    const OString text("abcdef");
    EXPECT_EQ(text.Mid(2), "cdef");
    EXPECT_EQ(text.Mid(-2), "abcdef");
    EXPECT_EQ(text.Mid(INT_MIN), "abcdef");
    EXPECT_EQ(text.Mid(6), "");
    EXPECT_EQ(text.Mid(INT_MAX), "");
}

TEST(OStringMid, LeftAndRightAreCutToTheLength)
{
    const OString text("abcdef");
    EXPECT_EQ(text.Left(2), "ab");
    EXPECT_EQ(text.Left(99), "abcdef");
    EXPECT_EQ(text.Left(0), "");
    EXPECT_EQ(text.Left(-1), "");
    EXPECT_EQ(text.Right(2), "ef");
    EXPECT_EQ(text.Right(99), "abcdef");
    EXPECT_EQ(text.Right(0), "");
    EXPECT_EQ(text.Right(INT_MIN), "");
}

TEST(OStringMid, WholeTextSharesTheCore)
{
    const OString text("abc");
    EXPECT_EQ(text.Mid(0, 3).Core(), text.Core());
    EXPECT_EQ(text.Mid(-1, 99).Core(), text.Core());
    EXPECT_EQ(text.Mid(0).Core(), text.Core());
    EXPECT_EQ(text.Left(3).Core(), text.Core());
    EXPECT_EQ(text.Right(3).Core(), text.Core());
}

TEST(OStringMid, PartIsCopiedInTheFormOfTheSource)
{
    EXPECT_EQ(StateOf(OString("abc").Mid(1)), OStringState::Narrow);
    EXPECT_EQ(StateOf(OString(L"abc").Mid(1)), OStringState::Wide);
    EXPECT_EQ(StateOf(InPage(932, "abc").Mid(1)), OStringState::Wide);
}

TEST(OStringMid, PartCarriesTheCodePage)
{
    const OString text = InPage(1251, "\xCF\xF0\xE8");
    EXPECT_EQ(text.Mid(1, 1).GetCodePage(), 1251u);
    EXPECT_STREQ(text.Mid(1, 1).wstring(), L"\x0440");
}

TEST(OStringMid, EmptyPartPastTheEndCarriesTheCodePage)
{
    const OString text = InPage(1251, "abc");
    EXPECT_TRUE(text.Mid(3, 1).IsEmpty());
    EXPECT_EQ(text.Mid(3, 1).GetCodePage(), 1251u);
    EXPECT_EQ(text.Mid(99, 1).GetCodePage(), 1251u);
    EXPECT_EQ(InPage(1251, "").Mid(0, 1).GetCodePage(), 1251u);
}

TEST(OStringMid, SourceStaysAsItIs)
{
    const OString text("abcdef");
    text.Mid(1, 2);
    EXPECT_EQ(text, "abcdef");
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    EXPECT_EQ(text.Core()->reference_count, 1);
}

TEST(OStringMatch, WholeTextAgainstThePattern)
{
    static constexpr struct {
        const char* text;
        const char* pattern;
        bool fits;
    } rows[] = {
        {"",            "",        true },
        {"",            "*",       true },
        {"",            "***",     true },
        {"",            "?",       false},
        {"",            "a",       false},
        {"a",           "",        false},
        {"abc",         "abc",     true },
        {"abc",         "ab",      false},
        {"ab",          "abc",     false},
        {"abc",         "a?c",     true },
        {"abc",         "???",     true },
        {"abc",         "????",    false},
        {"abc",         "*",       true },
        {"abc",         "a*",      true },
        {"abc",         "*c",      true },
        {"abc",         "*b",      false},
        {"abc",         "a*c",     true },
        {"ac",          "a*c",     true },
        {"abc",         "abc*",    true },
        {"abc",         "abc***",  true },
        {"abc",         "abc?",    false},
        {"a",           "*?",      true },
        {"",            "*?",      false},
        {"a",           "*??",     false},
        {"a",           "?*?",     false},
        {"a",           "*?*",     true },
        {"ab",          "?*?",     true },
        {"abcabc",      "*bc",     true },
        {"abcabd",      "*ab?",    true },
        {"aXbXc",       "a*b*c",   true },
        {"aXbX",        "a*b*c",   false},
        {"abc",         "ABC",     false},
        {"mississippi", "m*iss*i", true },
        {"mississippi", "m*isp*i", false},
        {"a*c",         "a*c",     true },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OString(row.text).Match(row.pattern), row.fits) << row.text << " : " << row.pattern;
    }
}

TEST(OStringMatch, WorksByWideUnit)
{
    EXPECT_TRUE(InPage(1208, "\xE2\x82\xAC").Match("?"));
    EXPECT_TRUE(InPage(932, "\x95\x5C").Match("?"));
    EXPECT_TRUE(OString(L"\x4E2D"
                        L"a")
                    .Match(L"\x4E2D?"));
    EXPECT_FALSE(OString(L"\xD83D\xDE00").Match("?"));
}

} // namespace
