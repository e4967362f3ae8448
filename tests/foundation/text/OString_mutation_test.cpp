// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/GuardedHeap.h"
#include "support/ImportHook.h"
#include "support/OStringState.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

OString InPage(UINT codePage, const char* text)
{
    OString value;
    value.SetCodePage(codePage);
    value = text;
    return value;
}

OString Widened(const char* text)
{
    OString value(text);
    value.wstring();
    return value;
}

TEST(OStringDelete, CutsAndClamps)
{
    static constexpr struct {
        int index;
        int count;
        const char* rest;
    } rows[] = {
        {0,       1,       "bcdef" },
        {2,       2,       "abef"  },
        {5,       1,       "abcde" },
        {4,       99,      "abcd"  },
        {4,       INT_MAX, "abcd"  },
        {-5,      2,       "cdef"  },
        {INT_MIN, 1,       "bcdef" },
        {6,       1,       "abcdef"},
        {99,      5,       "abcdef"},
        {2,       0,       "abcdef"},
        {2,       -1,      "abcdef"},
        {2,       INT_MIN, "abcdef"},
        {0,       6,       ""      },
    };
    const GuardedHeap heap;
    for (const auto& row : rows) {
        OString narrow("abcdef");
        narrow.Delete(row.index, row.count);
        EXPECT_EQ(narrow, row.rest) << row.index << ", " << row.count;
        OString wide(L"abcdef");
        wide.Delete(row.index, row.count);
        EXPECT_EQ(wide, row.rest) << row.index << ", " << row.count;
    }
}

TEST(OStringDelete, CountsWideUnitsInWideStateAndClearsTheNarrowForm)
{
    OString text = InPage(932, "\x95\x5C\x83\x41"
                               "a");
    text.Delete(0, 1);
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.nstring(), "\x83\x41"
                                 "a");
}

TEST(OStringDelete, StaysNarrowInNarrowState)
{
    OString text("abc");
    text.Delete(0, 1);
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OStringTruncate, CutsTheEndOfALongerText)
{
    static constexpr struct {
        int length;
        const char* rest;
    } rows[] = {
        {2,       "ab" },
        {0,       ""   },
        {3,       "abc"},
        {99,      "abc"},
        {INT_MAX, "abc"},
        {-1,      ""   },
        {INT_MIN, ""   }
    };
    for (const auto& row : rows) {
        OString text("abc");
        text.Truncate(row.length);
        EXPECT_EQ(text, row.rest) << row.length;
    }
}

TEST(OStringEmpty, KeepsCoreBuffersAndCodePage)
{
    OString text = InPage(437, "abc");
    text.PadRight(100, L'x');
    const OStringCore* const core = text.Core();
    const wchar_t* const buffer = core->wdata.get();
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Core(), core);
    EXPECT_EQ(core->wdata.get(), buffer);
    EXPECT_EQ(core->capacity, 128u);
    EXPECT_EQ(core->codepage, 437u);
}

TEST(OStringEmpty, SharedValueGetsAPrivateEmptyCore)
{
    const OString other("abc");
    OString text(other);
    text.Empty();
    EXPECT_EQ(StateOf(text), OStringState::Empty);
    EXPECT_NE(text.Core(), other.Core());
    EXPECT_EQ(other, "abc");
}

TEST(OStringEmpty, EmptiesATextWhoseWideFormIsEmpty)
{
    OString text = InPage(1208, "\x80"); // decodes to a single zero
    EXPECT_FALSE(text.IsEmpty());
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(OStringInsert, PutsTheTextAtTheClampedIndex)
{
    static constexpr struct {
        int index;
        const char* result;
    } rows[] = {
        {0,       "XYabc"},
        {1,       "aXYbc"},
        {3,       "abcXY"},
        {99,      "abcXY"},
        {INT_MAX, "abcXY"},
        {-5,      "XYabc"},
        {INT_MIN, "XYabc"}
    };
    const GuardedHeap heap;
    for (const auto& row : rows) {
        OString narrow("abc");
        narrow.Insert(row.index, "XY");
        EXPECT_EQ(narrow, row.result) << row.index;
        OString wide("abc");
        wide.Insert(row.index, L"XY");
        EXPECT_EQ(wide, row.result) << row.index;
        OString value("abc");
        value.Insert(row.index, OString("XY"));
        EXPECT_EQ(value, row.result) << row.index;
    }
}

TEST(OStringInsert, NarrowTextForcesTheNarrowForm)
{
    OString text(L"\x00E9"
                 L"b");
    text.Insert(1, "a");
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    EXPECT_STREQ(text.nstring(), "\xE9"
                                 "ab");
}

TEST(OStringInsert, NarrowTextLosesWhatThePageLacks)
{
    OString text(L"\x4E2D");
    text.Insert(0, "a");
    EXPECT_STREQ(text.wstring(), L"a?");
}

TEST(OStringInsert, NarrowTextCountsBytesAndIsTakenInTheValuesCodePage)
{
    OString text = InPage(1208, "\xC3\xA9z");
    text.Insert(2, "\xE2\x82\xAC");
    EXPECT_STREQ(text.wstring(), L"\x00E9\x20ACz");
}

TEST(OStringInsert, WideTextForcesTheWideForm)
{
    OString text("\xE9");
    text.Insert(0, L"\x4E2D");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.wstring(), L"\x4E2D\x00E9");
}

TEST(OStringInsert, ValueGoesInTheFormInWhichBothGoTogether)
{
    OString narrow("abc");
    narrow.Insert(1, OString("x"));
    EXPECT_EQ(StateOf(narrow), OStringState::Narrow);
    OString wide(L"\x4E2D");
    wide.Insert(1, OString("x"));
    EXPECT_STREQ(wide.wstring(), L"\x4E2Dx");
    OString otherPage("\xE9");
    otherPage.Insert(1, InPage(1251, "\xCF"));
    EXPECT_STREQ(otherPage.wstring(), L"\x00E9\x041F");
}

TEST(OStringInsert, NothingInsertedLosesNothing)
{
    OString text(L"\x4E2D");
    text.Insert(0, "");
    text.Insert(0, static_cast<const char*>(nullptr));
    text.Insert(0, OString());
    EXPECT_STREQ(text.wstring(), L"\x4E2D");
}

TEST(OStringInsert, EmptyTargetReceivesTheTextInItsOwnCore)
{
    OString text = InPage(1251, "");
    const OStringCore* const core = text.Core();
    text.Insert(5, "\xCF");
    EXPECT_STREQ(text.wstring(), L"\x041F");
    EXPECT_EQ(text.Core(), core);

    const OString source("abc");
    OString target;
    target.Insert(0, source);
    EXPECT_EQ(target, "abc");
    EXPECT_NE(target.Core(), source.Core());
}

TEST(OStringInsert, ValueAndItsOwnFormsMayBeTheSource)
{
    const GuardedHeap heap;
    OString text("abc");
    text.Insert(1, text);
    EXPECT_EQ(text, "aabcbc");
    text.Insert(0, text.nstring() + 4);
    EXPECT_EQ(text, "bcaabcbc");
    text.Insert(99, text.wstring() + 6);
    EXPECT_EQ(text, L"bcaabcbcbc");
    EXPECT_EQ(text.Core()->reference_count, 1);
}

TEST(OStringInsert, GrowsTheBuffer)
{
    const GuardedHeap heap;
    OString text("0123456789012345678901234567890");
    text.Insert(1, "ab");
    EXPECT_EQ(text, "0ab123456789012345678901234567890");
    EXPECT_EQ(text.Core()->capacity, 64u);
}

TEST(OStringReplace, CountsReplacements)
{
    static constexpr struct {
        const char* text;
        const char* oldText;
        const char* newText;
        int count;
        const char* result;
    } rows[] = {
        {"abcabc", "b",    "x",    2, "axcaxc"  },
        {"abcabc", "b",    "",     2, "acac"    },
        {"abcabc", "bc",   "xyz",  2, "axyzaxyz"},
        {"abcabc", "abc",  "",     2, ""        },
        {"abcabc", "x",    "y",    0, "abcabc"  },
        {"abcabc", "x",    "yy",   0, "abcabc"  },
        {"",       "a",    "b",    0, ""        },
        {"aaa",    "aa",   "b",    1, "ba"      },
        {"aaaa",   "aa",   "ba",   2, "baba"    }, // in place, without searching what was put in
        {"aaa",    "a",    "aa",   3, "aaaaaa"  }, // nor here
        {"ab",     "a",    "bbbb", 1, "bbbbb"   },
        {"abc",    "abcd", "x",    0, "abc"     },
        {"aab",    "ab",   "b",    1, "ab"      },
    };
    const GuardedHeap heap;
    for (const auto& row : rows) {
        OString narrow(row.text);
        EXPECT_EQ(narrow.Replace(row.oldText, row.newText), row.count) << row.text << row.oldText;
        EXPECT_EQ(narrow, row.result);
        OString wide = Widened(row.text);
        EXPECT_EQ(wide.Replace(row.oldText, row.newText), row.count) << row.text << row.oldText;
        EXPECT_EQ(wide, row.result);
        OString byArgument(row.text);
        EXPECT_EQ(byArgument.Replace(row.oldText, Widened(row.newText)), row.count) << row.text << row.oldText;
        EXPECT_EQ(byArgument, row.result);
    }
}

TEST(OStringReplace, EmptyOldTextChangesNothing)
{
    OString text("abc");
    EXPECT_EQ(text.Replace("", "x"), 0);
    EXPECT_EQ(text, "abc");
}

TEST(OStringReplace, EqualTextsGive0ThoughTheTextContainsThem)
{
    OString text("aaa");
    EXPECT_EQ(text.Replace("a", "a"), 0);
    EXPECT_EQ(text.Replace("a", L"a"), 0);
    EXPECT_EQ(text, "aaa");
}

TEST(OStringReplace, IsCaseSensitive)
{
    OString text("aA");
    EXPECT_EQ(text.Replace("A", "a"), 1);
    EXPECT_EQ(text, "aa");
}

TEST(OStringReplace, EitherWideArgumentTakesItIntoWide)
{
    OString byOld("a?");
    EXPECT_EQ(byOld.Replace(L"\x4E2D", "x"), 0);
    OString byNew("ab");
    EXPECT_EQ(byNew.Replace("b", L"\x4E2D"), 1);
    EXPECT_STREQ(byNew.wstring(), L"a\x4E2D");
}

TEST(OStringReplace, ClearsTheOtherFormIfSomethingWasReplaced)
{
    OString sameLength(L"abc");
    sameLength.nstring();
    sameLength.Replace("b", "x");
    EXPECT_EQ(StateOf(sameLength), OStringState::Wide);
    OString otherLength(L"abc");
    otherLength.nstring();
    otherLength.Replace("b", "xy");
    EXPECT_EQ(StateOf(otherLength), OStringState::Wide);
    OString nothing(L"abc");
    nothing.nstring();
    nothing.Replace("x", "y");
    EXPECT_EQ(StateOf(nothing), OStringState::Both);
}

TEST(OStringReplace, ValueMayBeBothArguments)
{
    const GuardedHeap heap;
    OString asOld("abc");
    EXPECT_EQ(asOld.Replace(asOld, "x"), 1);
    EXPECT_EQ(asOld, "x");
    OString asNew("abc");
    EXPECT_EQ(asNew.Replace("b", asNew), 1);
    EXPECT_EQ(asNew, "aabcc");
    OString asBoth("abc");
    EXPECT_EQ(asBoth.Replace(asBoth, asBoth), 0);
    EXPECT_EQ(asBoth, "abc");
}

TEST(OStringRemove, CutsEachOccurrence)
{
    OString text("abcabca");
    EXPECT_EQ(text.Remove('a'), 3);
    EXPECT_EQ(text, "bcbc");
    EXPECT_EQ(text.Remove(L'c'), 2);
    EXPECT_EQ(text, "bb");
    EXPECT_EQ(text.Remove('x'), 0);
    EXPECT_EQ(text.Remove('\0'), 0);
    EXPECT_EQ(text, "bb");
}

TEST(OStringTrim, CutsCharactersOfTheSet)
{
    static constexpr struct {
        const char* text;
        const char* set;
        const char* left;
        const char* right;
    } rows[] = {
        {"  ab  ", " ",  "ab  ", "  ab"},
        {"xyabyx", "xy", "abyx", "xyab"},
        {"xyx",    "xy", "",     ""    },
        {"ab",     "x",  "ab",   "ab"  },
        {"ab",     "",   "ab",   "ab"  },
        {"",       "x",  "",     ""    },
    };
    for (const auto& row : rows) {
        const OString texts[] = {OString(row.text), Widened(row.text), ToUTF8(row.text)};
        for (const OString& text : texts) {
            OString left(text);
            left.TrimLeft(row.set);
            EXPECT_EQ(left, row.left) << row.text;
            OString right(text);
            right.TrimRight(row.set);
            EXPECT_EQ(right, row.right) << row.text;
        }
    }
}

TEST(OStringTrim, LeavesANarrowFormInWideState)
{
    OString left(L" a");
    left.TrimLeft(" ");
    EXPECT_EQ(StateOf(left), OStringState::Both);
    OString right(L"a ");
    right.TrimRight(" ");
    EXPECT_EQ(StateOf(right), OStringState::Both);
    OString both(L" a ");
    both.Trim();
    EXPECT_EQ(StateOf(both), OStringState::Both);
    EXPECT_STREQ(both.nstring(), "a");
}

TEST(OStringTrim, NarrowStateStaysNarrow)
{
    OString text(" a ");
    text.Trim();
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OStringTrim, NarrowPassAlsoCutsWhatOnlyItsBytesSay)
{
    // What the page lacks is a question mark in the narrow form.
    OString text(L"\x4E2D"
                 L"a\x4E2D");
    text.TrimLeft("?");
    EXPECT_EQ(StateOf(text), OStringState::Both);
    EXPECT_STREQ(text.wstring(), L"a\x4E2D");
    text.TrimRight("?");
    EXPECT_EQ(StateOf(text), OStringState::Both);
    EXPECT_STREQ(text.wstring(), L"a");
    EXPECT_STREQ(text.nstring(), "a");
    // The second byte of the last character is a backslash.
    OString doubleByte = InPage(932, "a\x95\x5C");
    doubleByte.TrimRight("\\");
    EXPECT_STREQ(doubleByte.wstring(), L"a");
}

TEST(OStringTrim, WideCharactersOfTheSetAreCutInWideState)
{
    OString text(L"\x3000"
                 L"a\x3000");
    text.TrimLeft(L" \x3000");
    text.TrimRight(L" \x3000");
    EXPECT_STREQ(text.wstring(), L"a");
}

TEST(OStringTrim, WithoutASetCutsFourBlanksOnly)
{
    OString text(" \t\r\n a b\r\n\t ");
    text.Trim();
    EXPECT_EQ(text, "a b");
    for (const char* const blank : {"\fa\f", "\va\v",
                                    "\xA0"
                                    "a\xA0"}) {
        OString kept(blank);
        kept.Trim();
        EXPECT_EQ(kept, blank);
    }
    OString noBreak(L"\x00A0"
                    L"a\x00A0");
    noBreak.Trim();
    EXPECT_STREQ(noBreak.wstring(), L"\x00A0"
                                    L"a\x00A0");
}

TEST(OStringTrim, BlanksOnlyTrimToNothing)
{
    OString narrow(" \t ");
    narrow.Trim();
    EXPECT_TRUE(narrow.IsEmpty());
    OString wide(L" \t ");
    wide.Trim();
    EXPECT_TRUE(wide.IsEmpty());
}

TEST(OStringTrim, ValueMayBeItsOwnSet)
{
    const GuardedHeap heap;
    OString left("abc");
    left.TrimLeft(left);
    EXPECT_TRUE(left.IsEmpty());
    OString right(L"abc");
    right.TrimRight(right);
    EXPECT_TRUE(right.IsEmpty());
}

TEST(OStringCase, FollowsTheRulesOfThePlatform)
{
    OString upper(L"a\x00E9\x0444z1");
    upper.MakeUpper();
    EXPECT_STREQ(upper.wstring(), L"A\x00C9\x0424Z1");
    upper.MakeLower();
    EXPECT_STREQ(upper.wstring(), L"a\x00E9\x0444z1");
}

TEST(OStringCase, LeavesTheTextInWideState)
{
    OString text("abc");
    text.MakeUpper();
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_EQ(text, "ABC");
}

/// What the platform's case map answers when it is asked for a size, and when it is asked for a text.
struct CaseMapAnswer {
    int size;
    int text;
};
CaseMapAnswer caseMapAnswer;

TEST(OStringCase, ATextThatThePlatformCannotMapStaysAsItWas)
{
    const ImportHook<int(LCID, DWORD, const wchar_t*, int, wchar_t*, int)> hook(
        "LCMapStringW", [](LCID, DWORD, const wchar_t*, int, wchar_t* target, int) -> int {
            return target ? caseMapAnswer.text : caseMapAnswer.size;
        });
    for (const CaseMapAnswer& answer : {
             CaseMapAnswer{0,  4 },
             {-1, 4 },
             {4,  0 },
             {4,  -1}
    }) {
        caseMapAnswer = answer;
        OString text("abC");
        text.MakeUpper();
        EXPECT_EQ(text, "abC") << answer.size << ", " << answer.text;
        text.MakeLower();
        EXPECT_EQ(text, "abC") << answer.size << ", " << answer.text;
    }
}

TEST(OStringCase, EmptyTextStaysEmpty)
{
    OString text;
    text.MakeUpper();
    text.MakeLower();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(OStringReverse, TurnsBytesOrUnits)
{
    OString narrow("abc");
    narrow.MakeReverse();
    EXPECT_EQ(narrow, "cba");
    EXPECT_EQ(StateOf(narrow), OStringState::Narrow);
    OString wide(L"a\x4E2D");
    wide.MakeReverse();
    EXPECT_STREQ(wide.wstring(), L"\x4E2D"
                                 L"a");
    OString utf8 = InPage(1208, "\xE2\x82\xAC"
                                "a");
    utf8.MakeReverse();
    EXPECT_STREQ(utf8.nstring(), "a\xE2\x82\xAC");
    OString one("a");
    one.MakeReverse();
    EXPECT_EQ(one, "a");
}

TEST(OStringPad, FillsUpToTheWidth)
{
    static constexpr struct {
        const char* text;
        int width;
        const char* left;
        const char* right;
    } rows[] = {
        {"ab", 5,  "xxxab", "abxxx"},
        {"ab", 2,  "ab",    "ab"   },
        {"ab", 0,  "ab",    "ab"   },
        {"ab", -1, "ab",    "ab"   },
        {"",   2,  "xx",    "xx"   },
    };
    for (const auto& row : rows) {
        OString left(row.text);
        left.PadLeft(row.width, L'x');
        EXPECT_EQ(left, row.left);
        OString right(row.text);
        right.PadRight(row.width, L'x');
        EXPECT_EQ(right, row.right);
    }
}

TEST(OStringPad, PutsTheTextInWideState)
{
    OString left("ab");
    left.PadLeft(3, L' ');
    EXPECT_EQ(StateOf(left), OStringState::Wide);
    OString right("ab");
    right.PadRight(3, L'\x4E2D');
    EXPECT_EQ(StateOf(right), OStringState::Wide);
    EXPECT_STREQ(right.wstring(), L"ab\x4E2D");
}

TEST(OStringPad, ZeroCharacterFillsNothing)
{
    OString text("ab");
    text.PadLeft(5, L'\0');
    text.PadRight(5, L'\0');
    EXPECT_EQ(text, "ab");
}

TEST(OStringIncrement, CountsUpOrAppends2)
{
    static constexpr struct {
        const char* name;
        bool withBlank;
        const char* next;
    } rows[] = {
        {"Name",                     false, "Name2"                    },
        {"Name",                     true,  "Name 2"                   },
        {"Name ",                    true,  "Name 2"                   },
        {"Name ",                    false, "Name 2"                   },
        {"Name\t",                   true,  "Name\t 2"                 },
        {"Name 2",                   true,  "Name 3"                   },
        {"Name1",                    true,  "Name2"                    },
        {"Name9",                    false, "Name10"                   },
        {"Name99",                   false, "Name100"                  },
        {"Name199",                  false, "Name200"                  },
        {"Name007",                  false, "Name8"                    },
        {"Name000",                  false, "Name1"                    },
        {"Name099",                  false, "Name100"                  },
        {"2nd",                      false, "2nd2"                     },
        {"a1b2",                     false, "a1b3"                     },
        {"9",                        true,  "10"                       },
        {"",                         false, "2"                        },
        {"",                         true,  "2"                        },
        {"Name-1",                   false, "Name-2"                   },
        {"Name2147483647",           false, "Name2147483648"           },
        {"Name99999999999999999999", false, "Name100000000000000000000"},
    };
    for (const auto& row : rows) {
        OString name(row.name);
        name.IncrementName(row.withBlank);
        EXPECT_EQ(name, row.next) << row.name;
    }
}

TEST(OStringIncrement, WorksInNarrow)
{
    OString name(L"\x00E9"
                 L"9");
    name.IncrementName(false);
    EXPECT_EQ(StateOf(name), OStringState::Narrow);
    EXPECT_STREQ(name.nstring(), "\xE9"
                                 "10");
    OString lost(L"\x4E2D");
    lost.IncrementName(true);
    EXPECT_STREQ(lost.wstring(), L"? 2");
}

} // namespace
