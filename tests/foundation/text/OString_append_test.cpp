// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/GuardedHeap.h"
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

TEST(OStringAppend, EmptySourceDoesNothing)
{
    OString text;
    text += OString();
    text += "";
    text += L"";
    text += InPage(932, "");
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OStringAppend, EmptyTargetSharesTheSourcesCore)
{
    OString source = InPage(932, "abc");
    source.PadRight(50, L'x');
    OString text = InPage(1252, "gone");
    text.Empty();
    text += source;
    EXPECT_EQ(text.Core(), source.Core());
    EXPECT_EQ(text.GetCodePage(), 932u);
    EXPECT_EQ(text.Core()->capacity, 64u);
}

TEST(OStringAppend, NarrowToNarrowStaysNarrow)
{
    OString text("abc");
    text += OString("def");
    EXPECT_EQ(text, "abcdef");
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
}

TEST(OStringAppend, WideOnEitherSideGoesInWide)
{
    OString text("abc");
    text += OString(L"\x4E2D");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.wstring(), L"abc\x4E2D");

    OString wide(L"\x4E2D");
    wide += OString("abc");
    EXPECT_EQ(StateOf(wide), OStringState::Wide);
    EXPECT_STREQ(wide.wstring(), L"\x4E2D"
                                 L"abc");
}

TEST(OStringAppend, DifferentCodePagesGoInWideAndTheTargetKeepsItsOwn)
{
    OString text = InPage(1252, "\xE9");
    text += InPage(1251, "\xCF");
    EXPECT_STREQ(text.wstring(), L"\x00E9\x041F");
    EXPECT_EQ(text.GetCodePage(), 1252u);
}

TEST(OStringAppend, MultiBytePageGoesInWide)
{
    OString text = InPage(1208, "\xC3\xA9");
    text += InPage(1208, "\xE2\x82\xAC");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.nstring(), "\xC3\xA9\xE2\x82\xAC");
}

TEST(OStringAppend, ValueMayBeAppendedToItself)
{
    const GuardedHeap heap;
    OString narrow("abc");
    narrow += narrow;
    EXPECT_EQ(narrow, "abcabc");
    OString wide(L"0123456789abcdef");
    wide += wide;
    EXPECT_EQ(wide, L"0123456789abcdef0123456789abcdef");
    EXPECT_EQ(wide.Core()->reference_count, 1);
}

TEST(OStringAppend, HoldersOfOneCoreMayBeAppendedToEachOther)
{
    const GuardedHeap heap;
    const OString other("abc");
    OString text(other);
    text += other;
    EXPECT_EQ(text, "abcabc");
    EXPECT_EQ(other, "abc");
}

TEST(OStringAppend, OwnFormsMayBeTheSource)
{
    const GuardedHeap heap;
    OString text("abc");
    text += text.nstring() + 1;
    EXPECT_EQ(text, "abcbc");
    text += text.wstring() + 3;
    EXPECT_EQ(text, L"abcbcbc");
}

TEST(OStringAppend, NarrowTextIsTakenInTheValuesCodePage)
{
    OString text = InPage(1208, "a");
    text += "\xE2\x82\xAC";
    EXPECT_STREQ(text.wstring(), L"a\x20AC");
    OString empty = InPage(1208, "");
    empty += "\xE2\x82\xAC";
    EXPECT_STREQ(empty.wstring(), L"\x20AC");
    EXPECT_EQ(empty.GetCodePage(), 1208u);
}

TEST(OStringAppend, EmptyValueKeepsItsCodePageWhenTextsAndNumbersCome)
{
    OString wide = InPage(1251, "");
    wide += L"\x041F";
    EXPECT_EQ(wide.GetCodePage(), 1251u);
    OString number = InPage(1251, "");
    number += 5;
    EXPECT_EQ(number.GetCodePage(), 1251u);
}

TEST(OStringAppend, TextsAndNumbers)
{
    OString text("n=");
    text += -12;
    text += ", ";
    text += INT_MIN;
    text += L'!';
    text += 7L;
    EXPECT_EQ(text, "n=-12, -2147483648!7");
}

TEST(OStringAppend, ZeroCharacterDoesNothing)
{
    OString text;
    text += '\0';
    text += L'\0';
    EXPECT_EQ(text.Core(), nullptr);
}

TEST(OStringAppend, CharacterToAnEmptyValueMakesItsForm)
{
    OString narrow;
    narrow += 'a';
    EXPECT_EQ(StateOf(narrow), OStringState::Narrow);
    OString wide;
    wide += L'a';
    EXPECT_EQ(StateOf(wide), OStringState::Wide);
}

TEST(OStringAppend, NarrowCharacterBringsTheTextIntoNarrowForm)
{
    OString text(L"\x00E9");
    text += 'a';
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    EXPECT_STREQ(text.nstring(), "\xE9"
                                 "a");
}

TEST(OStringAppend, NarrowCharacterLosesWhatThePageLacks)
{
    OString text(L"\x4E2D");
    text += 'a';
    EXPECT_STREQ(text.wstring(), L"?a");
}

TEST(OStringAppend, WideCharacterBringsTheTextIntoWideForm)
{
    OString text("\xE9");
    text += L'\x4E2D';
    EXPECT_EQ(StateOf(text), OStringState::Wide);
    EXPECT_STREQ(text.wstring(), L"\x00E9\x4E2D");
}

TEST(OStringAppend, BytesOfAMultiByteCharacterMayComeOneByOne)
{
    OString text = InPage(1208, "");
    text += '\xE2';
    text += '\x82';
    text += '\xAC';
    EXPECT_STREQ(text.wstring(), L"\x20AC");
    OString doubleByte = InPage(932, "");
    doubleByte += '\x95';
    doubleByte += '\x5C';
    EXPECT_STREQ(doubleByte.wstring(), L"\x8868");
}

TEST(OStringAppend, BuffersGrowInStepsOf32)
{
    const GuardedHeap heap;
    OString text;
    for (int length = 1; length <= 200; ++length) {
        text += static_cast<char>('a' + length % 26);
        ASSERT_EQ(text.Length(), length);
        ASSERT_EQ(text.Core()->capacity, static_cast<size_t>(length + 32) / 32 * 32);
    }
}

TEST(OStringAppend, NamedAppenders)
{
    OString text("a");
    text.AppendTab().AppendLineEnd();
    EXPECT_EQ(text, "a\t\r\n");
}

TEST(OStringAppend, PlusLeavesBothSidesAlone)
{
    const OString left("ab");
    const OString right(L"\x4E2D");
    EXPECT_EQ(left + right, L"ab\x4E2D");
    EXPECT_EQ(left + "c", "abc");
    EXPECT_EQ(left + L"\x4E2D", L"ab\x4E2D");
    EXPECT_EQ(left + 'c', "abc");
    EXPECT_EQ(left + L'c', "abc");
    EXPECT_EQ('x' + left, "xab");
    EXPECT_EQ(L'x' + left, "xab");
    EXPECT_EQ("x" + left, "xab");
    EXPECT_EQ(left, "ab");
    EXPECT_EQ(StateOf(left), OStringState::Both); // its wide form was asked for once
    EXPECT_EQ(right, L"\x4E2D");
}

TEST(OStringAppend, PlusWithAnEmptySideSharesTheCore)
{
    const OString text("ab");
    EXPECT_EQ((text + OString()).Core(), text.Core());
    EXPECT_EQ((OString() + text).Core(), text.Core());
}

} // namespace
