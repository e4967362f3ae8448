// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/AssertCatcher.h"
#include "support/GuardedHeap.h"
#include "support/GuardedText.h"
#include "support/OStringState.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

namespace {

OString InPage(UINT codePage, const char* text)
{
    OString value;
    value.SetCodePage(codePage);
    value = text;
    return value;
}

static_assert(!std::is_convertible_v<OString, const char*> && !std::is_convertible_v<OString, const wchar_t*>);
static_assert(std::is_nothrow_move_constructible_v<OString> && std::is_nothrow_move_assignable_v<OString>);

TEST(OString, DefaultIsEmptyWithoutACore)
{
    const OString text;
    EXPECT_EQ(text.Core(), nullptr);
    EXPECT_EQ(text.Length(), 0);
    EXPECT_STREQ(text.nstring(), "");
    EXPECT_STREQ(text.wstring(), L"");
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OString, ReadOperationsCreateNoCore)
{
    const OString text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetCodePage(), 0u);
    EXPECT_EQ(text.Compare("a"), -1);
    EXPECT_EQ(text.CompareNoCase(OString()), 0);
    EXPECT_EQ(text.Find('a'), -1);
    EXPECT_EQ(text.Find(L'a'), -1);
    EXPECT_EQ(text.Find("a"), -1);
    EXPECT_EQ(text.ReverseFind('a'), -1);
    EXPECT_EQ(text.FindOneOf("a"), -1);
    EXPECT_EQ(text.ReverseFindOneOf("a"), -1);
    EXPECT_EQ(text.Mid(1, 2).Core(), nullptr);
    EXPECT_EQ(text.Left(3).Core(), nullptr);
    EXPECT_EQ(text.Right(3).Core(), nullptr);
    EXPECT_EQ(text.ToInt(), 0);
    EXPECT_TRUE(text.Match("*"));
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OString, CopyingSharesTheCore)
{
    const OString text("abc");
    EXPECT_EQ(text.Core()->reference_count, 1);
    {
        const OString copy(text);
        EXPECT_EQ(copy.Core(), text.Core());
        EXPECT_EQ(text.Core()->reference_count, 2);
    }
    EXPECT_EQ(text.Core()->reference_count, 1);
}

TEST(OString, CopyOfANullCoreIsANullCore)
{
    const OString text;
    const OString copy(text);
    EXPECT_EQ(copy.Core(), nullptr);
}

TEST(OString, AssignmentReleasesTheOldCoreAndSharesTheNew)
{
    const OString text("abc");
    const OString old("old");
    OString target(old);
    target = text;
    EXPECT_EQ(target.Core(), text.Core());
    EXPECT_EQ(text.Core()->reference_count, 2);
    EXPECT_EQ(old.Core()->reference_count, 1);
}

TEST(OString, SelfAssignmentDoesNothing)
{
    OString text("abc");
    const OStringCore* const core = text.Core();
    const OString& same = text;
    text = same;
    EXPECT_EQ(text.Core(), core);
    EXPECT_EQ(core->reference_count, 1);
}

TEST(OString, AssignmentBetweenHoldersOfOneCoreKeepsTheCount)
{
    OString text("abc");
    const OString copy(text);
    text = copy;
    EXPECT_EQ(copy.Core()->reference_count, 2);
}

TEST(OString, AssigningANullCoreLeavesANullCore)
{
    OString text("abc");
    text = OString();
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OString, MovingTakesTheCoreAlong)
{
    OString text("abc");
    const OStringCore* const core = text.Core();
    OString moved(std::move(text));
    EXPECT_EQ(text.Core(), nullptr); // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(moved.Core(), core);

    OString target("old");
    target = std::move(moved);
    EXPECT_EQ(moved.Core(), nullptr); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target.Core(), core);
    EXPECT_EQ(core->reference_count, 1);
}

TEST(OString, SelfMoveKeepsTheText)
{
    OString text("abc");
    OString& same = text;
    text = std::move(same);
    EXPECT_EQ(text, "abc");
}

TEST(OString, MutationOfASharedCoreLeavesTheOtherHolderUnchanged)
{
    const OString other("abc");
    OString text(other);
    text += 'd';
    EXPECT_EQ(other, "abc");
    EXPECT_EQ(text, "abcd");
    EXPECT_EQ(other.Core()->reference_count, 1);
    EXPECT_EQ(text.Core()->reference_count, 1);
}

TEST(OString, MutationOfAPrivateCoreKeepsIt)
{
    OString text("abc");
    const OStringCore* const core = text.Core();
    text += 'd';
    EXPECT_EQ(text.Core(), core);
}

TEST(OString, PrivateCopyKeepsCapacityAndCodePage)
{
    OString other = InPage(932, "abc");
    other.PadRight(100, L'x');
    OString text(other);
    text.MakeReverse();
    EXPECT_EQ(text.Core()->capacity, 128u);
    EXPECT_EQ(text.GetCodePage(), 932u);
}

TEST(OString, EveryMutatorLeavesTheOtherHolderUnchanged)
{
    static const struct {
        const char* name;
        void (*mutate)(OString& text);
    } rows[] = {
        {"= narrow",             [](OString& text) { text = "new"; }                        },
        {"= wide",               [](OString& text) { text = L"new"; }                       },
        {"= char",               [](OString& text) { text = 'n'; }                          },
        {"= wchar_t",            [](OString& text) { text = L'n'; }                         },
        {"= number",             [](OString& text) { text = 5; }                            },
        {"AssignN",              [](OString& text) { text.AssignN("new", 2); }              },
        {"SetCodePage",          [](OString& text) { text.SetCodePage(437); }               },
        {"SetUTF8",              [](OString& text) { text.SetUTF8(); }                      },
        {"+= OString",           [](OString& text) { text += OString("x"); }                },
        {"+= itself",            [](OString& text) { text += text; }                        },
        {"+= wide",              [](OString& text) { text += L"x"; }                        },
        {"+= wchar_t",           [](OString& text) { text += L'x'; }                        },
        {"AppendTab",            [](OString& text) { text.AppendTab(); }                    },
        {"Delete",               [](OString& text) { text.Delete(0, 1); }                   },
        {"Truncate",             [](OString& text) { text.Truncate(1); }                    },
        {"Empty",                [](OString& text) { text.Empty(); }                        },
        {"Insert narrow",        [](OString& text) { text.Insert(0, "x"); }                 },
        {"Insert wide",          [](OString& text) { text.Insert(0, L"x"); }                },
        {"Insert OString",       [](OString& text) { text.Insert(0, OString(L"x")); }       },
        {"Replace same length",  [](OString& text) { text.Replace("b", "x"); }              },
        {"Replace other length", [](OString& text) { text.Replace("b", "xyz"); }            },
        {"Remove",               [](OString& text) { text.Remove('b'); }                    },
        {"TrimLeft",             [](OString& text) { text.TrimLeft(" "); }                  },
        {"TrimRight",            [](OString& text) { text.TrimRight(" "); }                 },
        {"Trim",                 [](OString& text) { text.Trim(); }                         },
        {"MakeUpper",            [](OString& text) { text.MakeUpper(); }                    },
        {"MakeLower",            [](OString& text) { text.MakeLower(); }                    },
        {"MakeReverse",          [](OString& text) { text.MakeReverse(); }                  },
        {"PadLeft",              [](OString& text) { text.PadLeft(20, L'x'); }              },
        {"PadRight",             [](OString& text) { text.PadRight(20, L'x'); }             },
        {"IncrementName",        [](OString& text) { text.IncrementName(true); }            },
        {"SetNumber",            [](OString& text) { text.SetNumber(5, 3); }                },
        {"SetSignedNumber",      [](OString& text) { text.SetSignedNumber(5, 3); }          },
        {"SetHex",               [](OString& text) { text.SetHex("x", 1); }                 },
        {"Format narrow",        [](OString& text) { text.Format("x"); }                    },
        {"Format wide",          [](OString& text) { text.Format(L"x"); }                   },
        {"GetBuffer narrow",     [](OString& text) { text.GetBuffer<char>(5)[0] = 'x'; }    },
        {"GetBuffer wide",       [](OString& text) { text.GetBuffer<wchar_t>(5)[0] = L'x'; }},
    };
    for (const auto& row : rows) {
        const OString others[] = {OString(" aBc "), OString(L" aBc ")};
        for (const OString& other : others) {
            OString text(other);
            row.mutate(text);
            EXPECT_EQ(Narrow(other), " aBc ") << row.name;
            EXPECT_NE(text.Core(), other.Core()) << row.name;
            EXPECT_EQ(other.Core()->reference_count, 1) << row.name;
            EXPECT_EQ(text.Core()->reference_count, 1) << row.name;
        }
    }
}

TEST(OString, LastHolderFreesCoreAndForms)
{
    const GuardedHeap heap;
    const int before = heap.Living();
    {
        const OString text("abc");
        text.wstring();
        const OString copy(text);
        EXPECT_EQ(heap.Living(), before + 3);
    }
    EXPECT_EQ(heap.Living(), before);
}

TEST(OString, LackOfMemoryForACoreBreaksAnAssert)
{
    GuardedHeap heap;
    OString text;
    heap.FailAfter(0);
    EXPECT_EQ(BrokenAssert([&] { text.SetUTF8(); }), "OString::ChangeCore ASSERT(core)");
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OString, LackOfMemoryForACopyLeavesTheSharedCoreAlone)
{
    GuardedHeap heap;
    const OString other("abc");
    OString text(other);
    heap.FailAfter(0);
    EXPECT_EQ(BrokenAssert([&] { text += 'd'; }), "OString::ChangeCore ASSERT(core)");
    EXPECT_EQ(text.Core(), other.Core());
    EXPECT_EQ(other.Core()->reference_count, 2);
}

TEST(OString, LackOfMemoryForAFormLosesNothingElse)
{
    GuardedHeap heap;
    const int before = heap.Living();
    {
        const OString text("abc");
        heap.FailAfter(0);
        EXPECT_EQ(BrokenAssert([&] { text.wstring(); }), "OStringCore::alloc_w ASSERT(wdata)");
        EXPECT_STREQ(text.nstring(), "abc");
    }
    EXPECT_EQ(heap.Living(), before);
}

TEST(OString, LackOfMemoryInAConstructorLeaksNothing)
{
    GuardedHeap heap;
    const int before = heap.Living();
    heap.FailAfter(1); // enough for the core
    EXPECT_EQ(BrokenAssert([] { const OString text("abc"); }), "OStringCore::alloc_n ASSERT(ndata)");
    EXPECT_EQ(heap.Living(), before);
}

TEST(OString, ReleaseOfACoreWithoutHoldersBreaksAnAssert)
{
    OString text("abc");
    const std::unique_ptr<OStringCore> core(const_cast<OStringCore*>(text.Core()));
    core->reference_count = 0;
    const OString other;
    EXPECT_EQ(BrokenAssert([&] { text = other; }), "OString::ReleaseCore ASSERT(core->reference_count >= 1)");
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OString, FormIsMadeOnDemandAndStaysInTheSharedCore)
{
    const OString text("abc");
    const OString copy(text);
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    const wchar_t* const wide = copy.wstring();
    EXPECT_STREQ(wide, L"abc");
    EXPECT_EQ(copy.Core(), text.Core());
    EXPECT_EQ(text.wstring(), wide);
    EXPECT_EQ(StateOf(text), OStringState::Both);
}

TEST(OString, NarrowFormOfAWideTextIsACache)
{
    const OString text(L"abc");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    const char* const narrow = text.nstring();
    EXPECT_STREQ(narrow, "abc");
    EXPECT_EQ(text.nstring(), narrow);
    EXPECT_EQ(StateOf(text), OStringState::Both);
}

TEST(OString, MutationClearsTheFormThatItDidNotTouch)
{
    OString text("abc");
    text.wstring();
    text += 'd';
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    text.wstring();
    text += L'e';
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.nstring(), "abcde");
}

TEST(OString, EmptyTextWithACoreReadsAsStaticEmptyText)
{
    OString text("abc");
    text.Empty();
    const OString none;
    EXPECT_EQ(text.nstring(), none.nstring());
    EXPECT_EQ(text.wstring(), none.wstring());
}

TEST(OString, IsEmptyNeverConverts)
{
    const OString text("abc");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OString, LengthCountsBytesInNarrowAndUnitsInWideState)
{
    EXPECT_EQ(OString("abc\xE9").Length(), 4);
    EXPECT_EQ(OString(L"abc\x4E2D").Length(), 4);
    EXPECT_EQ(InPage(932, "\x95\x5C"
                          "a")
                  .Length(),
              2);
}

TEST(OString, LengthOfANarrowTextMakesNoWideForm)
{
    const OString text("abc");
    EXPECT_EQ(text.Length(), 3);
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OString, LengthInUtf8CountsWideUnits)
{
    const OString text = InPage(1208, "\xE2\x82\xAC"
                                      "a");
    EXPECT_EQ(text.Length(), 2);
    EXPECT_EQ(StateOf(text), OStringState::Both);
}

TEST(OString, SameTextHasOtherLengthAfterChangeOfCodePage)
{
    OString text = InPage(65001, "\xC3\xA9");
    EXPECT_EQ(text.Length(), 2);
    text.SetUTF8();
    EXPECT_EQ(text.Length(), 1);
}

TEST(OString, ConvertsExplicitlyToBothPointerTypes)
{
    const OString text("abc");
    EXPECT_STREQ(static_cast<const char*>(text), "abc");
    EXPECT_STREQ(static_cast<const wchar_t*>(text), L"abc");
}

TEST(OString, TextsAreHeldInTheirOwnForm)
{
    EXPECT_EQ(StateOf(OString("abc")), OStringState::Narrow);
    EXPECT_EQ(StateOf(OString(L"abc")), OStringState::Wide);
    EXPECT_EQ(OString("abc").Core()->capacity, 32u);
    EXPECT_EQ(Narrow("abc"), "abc");
    EXPECT_EQ(Wide(L"\x4E2D"), L"\x4E2D");
}

TEST(OString, NullAndEmptySourcesLeaveAnEmptyValueWithACore)
{
    for (const OString& text : {OString(static_cast<const char*>(nullptr)),
                                OString(static_cast<const wchar_t*>(nullptr)), OString(""), OString(L"")}) {
        EXPECT_EQ(StateOf(text), OStringState::Empty);
        EXPECT_EQ(text.Core()->capacity, 32u);
    }
}

TEST(OString, AssigningNullEmptiesAndKeepsTheCore)
{
    OString text = InPage(437, "abc");
    const OStringCore* const core = text.Core();
    text = static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Core(), core);
    EXPECT_EQ(text.GetCodePage(), 437u);
}

TEST(OString, OneCharacterMakesATextOfLengthOne)
{
    EXPECT_EQ(OString('a'), "a");
    EXPECT_EQ(OString(L'\x4E2D'), L"\x4E2D");
    EXPECT_EQ(OString('a').Length(), 1);
}

TEST(OString, OneZeroCharacterStillMakesACoreWithItsForm)
{
    const OString narrow('\0');
    ASSERT_NE(narrow.Core(), nullptr);
    EXPECT_NE(narrow.Core()->ndata, nullptr);
    EXPECT_EQ(narrow.Core()->capacity, 32u);
    EXPECT_TRUE(narrow.IsEmpty());
    const OString wide(L'\0');
    ASSERT_NE(wide.Core(), nullptr);
    EXPECT_NE(wide.Core()->wdata, nullptr);
}

TEST(OString, NumbersAreDecimal)
{
    static constexpr struct {
        int number;
        const char* text;
    } rows[] = {
        {0,       "0"          },
        {7,       "7"          },
        {-1,      "-1"         },
        {10,      "10"         },
        {-4711,   "-4711"      },
        {INT_MAX, "2147483647" },
        {INT_MIN, "-2147483648"}
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OString(row.number), row.text);
        OString text;
        text = row.number;
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(OString(static_cast<long>(row.number)), row.text);
    }
}

TEST(OString, AssignmentKeepsCoreAndCodePage)
{
    OString text = InPage(932, "abc");
    const OStringCore* const core = text.Core();
    text = "\x95\x5C";
    EXPECT_STREQ(text.wstring(), L"\x8868");
    text = L"x";
    text = 'y';
    text = L'z';
    text = 5;
    EXPECT_EQ(text, "5");
    EXPECT_EQ(text.Core(), core);
    EXPECT_EQ(text.GetCodePage(), 932u);
}

TEST(OString, AssignmentClearsTheOtherForm)
{
    OString text("abc");
    text.wstring();
    text = "x";
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    text = L"y";
    EXPECT_EQ(StateOf(text), OStringState::Wide);
}

TEST(OString, AssignNTakesAtMostTheMaximum)
{
    OString text;
    text.AssignN("abcdef", 3);
    EXPECT_EQ(text, "abc");
    text.AssignN(L"abcdef", 4);
    EXPECT_EQ(text, L"abcd");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
}

TEST(OString, AssignNStopsAtTheFirstZero)
{
    OString text;
    text.AssignN("ab\0cd", 5);
    EXPECT_EQ(text, "ab");
    text.AssignN(L"a\0cd", 4);
    EXPECT_EQ(text, L"a");
}

TEST(OString, AssignNReadsNothingAfterTheMaximumOrTheZero)
{
    const GuardedText<char> narrow(std::string_view("abc"));
    const GuardedText<wchar_t> wide(std::wstring_view(L"ab", 3));
    OString text;
    text.AssignN(narrow.Get(), 3);
    EXPECT_EQ(text, "abc");
    text.AssignN(wide.Get(), 100);
    EXPECT_EQ(text, L"ab");
}

TEST(OString, AssignNOfNothingEmpties)
{
    for (const int maximum : {0, -1, INT_MIN}) {
        OString text("abc");
        text.AssignN("xyz", maximum);
        EXPECT_EQ(StateOf(text), OStringState::Empty) << maximum;
    }
    OString text("abc");
    text.AssignN(static_cast<const char*>(nullptr), 5);
    EXPECT_EQ(StateOf(text), OStringState::Empty);
}

TEST(OString, OwnFormsMayBeTheSource)
{
    const GuardedHeap heap;
    OString text("abcdef");
    text = text.nstring() + 2;
    EXPECT_EQ(text, "cdef");
    text = text.wstring() + 1;
    EXPECT_EQ(text, L"def");
    text.AssignN(text.wstring(), 2);
    EXPECT_EQ(text, L"de");
    text = text.nstring();
    EXPECT_EQ(text, "de");
    EXPECT_EQ(text.Core()->reference_count, 1);
}

TEST(OString, AnyPartOfTheOwnWideFormMayBeTheSource)
{
    const GuardedHeap heap;
    std::wstring units(31, L'x');
    units.back() = L'y';
    OString text(units.c_str());
    text = text.wstring() + 25;
    EXPECT_EQ(text, L"xxxxxy");
    text = units.c_str();
    text.Insert(0, text.wstring() + 29);
    EXPECT_EQ(text, (L"xy" + units).c_str());
}

TEST(OString, CodePageIs0ForANullCore)
{
    EXPECT_EQ(OString().GetCodePage(), 0u);
}

TEST(OString, SettingACodePageMakesACore)
{
    OString text;
    text.SetNativeCodePage();
    EXPECT_EQ(StateOf(text), OStringState::Empty);
}

TEST(OString, CodePagesByName)
{
    OString text("abc");
    text.SetUTF8();
    EXPECT_EQ(text.GetCodePage(), 1208u);
    text.SetNativeCodePage();
    EXPECT_EQ(text.GetCodePage(), 0u);
}

TEST(OString, ChangeOfCodePageKeepsTheText)
{
    OString text = InPage(1252, "\x80");
    text.SetCodePage(932);
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    text.SetUTF8();
    EXPECT_STREQ(text.nstring(), "\xE2\x82\xAC");
    text.SetCodePage(1252);
    EXPECT_STREQ(text.nstring(), "\x80");
}

TEST(OString, NarrowTextIsTakenInTheValuesCodePage)
{
    EXPECT_STREQ(InPage(1251, "\xCF").wstring(), L"\x041F");
    EXPECT_STREQ(InPage(936, "\xD6\xD0").wstring(), L"\x4E2D");
    EXPECT_STREQ(InPage(949, "\xB0\xA1").wstring(), L"\xAC00");
    EXPECT_STREQ(InPage(1208, "\xE2\x82\xAC").wstring(), L"\x20AC");
}

TEST(OString, ToUtf8GivesTheBytesAndLeavesTheSource)
{
    const OString text(L"\x20AC");
    const OString utf8 = ToUTF8(text);
    EXPECT_STREQ(utf8.nstring(), "\xE2\x82\xAC");
    EXPECT_EQ(utf8.GetCodePage(), 1208u);
    EXPECT_EQ(text.GetCodePage(), 0u);
    EXPECT_EQ(StateOf(text), OStringState::Wide);
}

TEST(OString, FromUtf8GivesAWideTextOfCodePage0)
{
    const OString text = FromUTF8("\xE2\x82\xAC");
    EXPECT_EQ(text.GetCodePage(), 0u);
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.wstring(), L"\x20AC");
}

TEST(OString, FromUtf8OfNothingIsEmpty)
{
    EXPECT_TRUE(FromUTF8("").IsEmpty());
    EXPECT_TRUE(FromUTF8(nullptr).IsEmpty());
}

TEST(OString, FourByteSequenceInUtf8DecodesIntoWrongUnits)
{
    const OString text = InPage(1208, "\xF0\x9F\x98\x80z");
    // The left-over 80 swallows the z and the end.
    EXPECT_EQ(Wide(text), (std::wstring{L'\x07D8', static_cast<wchar_t>(('z' & 0x3F) << 6)}));
}

TEST(OString, SurrogatePairInUtf8IsTwoSequences)
{
    EXPECT_STREQ(ToUTF8(L"\xD83D\xDE00").nstring(), "\xED\xA0\xBD\xED\xB8\x80");
}

} // namespace
