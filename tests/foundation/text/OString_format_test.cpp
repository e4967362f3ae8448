// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "support/GuardedHeap.h"
#include "support/OStringState.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace {

TEST(OStringNumber, WidthCountsDigitsOnly)
{
    static constexpr struct {
        int value;
        int width;
        const char* plain;
        const char* withSign;
    } rows[] = {
        {5,       0,  "5",             "+5"           },
        {5,       4,  "0005",          "+0005"        },
        {-5,      4,  "-0005",         "-0005"        },
        {0,       0,  "0",             "+0"           },
        {0,       3,  "000",           "+000"         },
        {12345,   3,  "12345",         "+12345"       },
        {-12345,  3,  "-12345",        "-12345"       },
        {1,       -1, "1",             "+1"           },
        {INT_MAX, 11, "02147483647",   "+02147483647" },
        {INT_MIN, 0,  "-2147483648",   "-2147483648"  },
        {INT_MIN, 12, "-002147483648", "-002147483648"},
    };
    for (const auto& row : rows) {
        OString text("before");
        text.SetNumber(row.value, row.width);
        EXPECT_EQ(text, row.plain);
        text.SetSignedNumber(row.value, row.width);
        EXPECT_EQ(text, row.withSign);
        EXPECT_EQ(OString::FromNumber(row.value, row.width), row.plain);
        EXPECT_EQ(OString::FromSignedNumber(row.value, row.width), row.withSign);
    }
}

TEST(OStringNumber, KeepsTheCodePage)
{
    OString text;
    text.SetUTF8();
    text.SetNumber(-5, 4);
    EXPECT_EQ(text.GetCodePage(), 1208u);
}

TEST(OStringHex, CountTellsTheOrderOfTheBytes)
{
    static constexpr BYTE bytes[] = {0x01, 0x02, 0xAB, 0xF0};
    static constexpr struct {
        int count;
        const char* text;
    } rows[] = {
        {2,  "0102"    },
        {-2, "0201"    },
        {4,  "0102ABF0"},
        {-4, "F0AB0201"},
        {1,  "01"      },
        {-1, "01"      },
        {0,  ""        }
    };
    for (const auto& row : rows) {
        OString text("before");
        text.SetHex(bytes, row.count);
        EXPECT_EQ(text, row.text) << row.count;
    }
}

TEST(OStringHex, NumbersStartWithTheirMostSignificantByte)
{
    EXPECT_EQ(OString::HexOf(BYTE{0xA5}), "A5");
    EXPECT_EQ(OString::HexOf(WORD{0x12AB}), "12AB");
    EXPECT_EQ(OString::HexOf(DWORD{0x80070005}), "80070005");
    EXPECT_EQ(OString::HexOf(DWORD{1}), "00000001");
}

TEST(OStringHex, OwnFormMayBeTheSource)
{
    const GuardedHeap heap;
    OString text("AB");
    text.SetHex(text.nstring(), 2);
    EXPECT_EQ(text, "4142");
}

TEST(OStringHex, NoBytesGiveAnEmptyText)
{
    OString text("before");
    text.SetHex(nullptr, 4);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(OStringToInt, ParsesTheBeginning)
{
    static constexpr struct {
        const char* text;
        int value;
    } rows[] = {
        {"",             0      },
        {"42",           42     },
        {" \t\n42",      42     },
        {"-42",          -42    },
        {"+42",          42     },
        {"42abc",        42     },
        {"abc",          0      },
        {"0x10",         0      },
        {"- 1",          0      },
        {"007",          7      },
        {"2147483647",   INT_MAX},
        {"-2147483648",  INT_MIN},
        {"99999999999",  INT_MAX},
        {"-99999999999", INT_MIN},
    };
    for (const auto& row : rows) EXPECT_EQ(OString(row.text).ToInt(), row.value) << row.text;
    EXPECT_EQ(OString(L"42").ToInt(), 42);
}

TEST(OStringFormat, TakesTheDirectivesOfThePlatform)
{
    OString text("before");
    text.Format("%s=%d %04X %c%%", "a", -5, 0xAB, 'x');
    EXPECT_EQ(text, "a=-5 00AB x%");
    EXPECT_EQ(StateOf(text), OStringState::Narrow);
    text.Format(L"%s=%lu", L"\x4E2D", 7UL);
    EXPECT_STREQ(text.wstring(), L"\x4E2D=7");
    EXPECT_EQ(StateOf(text), OStringState::Wide);
}

TEST(OStringFormat, KnowsNoFloatingPoint)
{
    OString text;
    text.Format("%f", 1.5);
    EXPECT_EQ(text, "f");
}

TEST(OStringFormat, HasABufferOf4096Characters)
{
    OString text;
    text.Format("a");
    EXPECT_EQ(text.Core()->capacity, 4128u);
}

TEST(OStringFormat, EndsAtThePlatformsLimit)
{
    const GuardedHeap heap;
    const std::string longText(5000, 'x');
    OString text;
    text.Format("%s", longText.c_str());
    EXPECT_GE(text.Length(), 1023);
    EXPECT_LE(text.Length(), 1024);
    const std::wstring longWide(5000, L'x');
    text.Format(L"%s", longWide.c_str());
    EXPECT_GE(text.Length(), 1023);
    EXPECT_LE(text.Length(), 1024);
}

TEST(OStringFormat, KeepsTheCodePage)
{
    OString text;
    text.SetUTF8();
    text.Format("%s", "\xE2\x82\xAC");
    EXPECT_STREQ(text.wstring(), L"\x20AC");
}

TEST(OStringFormat, OwnFormsMayBeArguments)
{
    const GuardedHeap heap;
    OString text("a");
    text.Format("<%s>", text.nstring());
    EXPECT_EQ(text, "<a>");
    OString wide(L"a");
    wide.Format(L"<%s>", wide.wstring());
    EXPECT_EQ(wide, L"<a>");
    OString format("%d");
    format.Format(format.nstring(), 5);
    EXPECT_EQ(format, "5");
}

TEST(OStringBuffer, IsEmptyUntilWrittenAndThenEndsAtTheZero)
{
    OString text("before");
    char* const narrow = text.GetBuffer<char>(10);
    EXPECT_TRUE(text.IsEmpty());
    std::strcpy(narrow, "abc");
    EXPECT_EQ(text.Length(), 3);
    EXPECT_EQ(text, "abc");
    wchar_t* const wide = text.GetBuffer<wchar_t>(10);
    EXPECT_TRUE(text.IsEmpty());
    std::wcscpy(wide, L"\x4E2D");
    EXPECT_STREQ(text.wstring(), L"\x4E2D");
}

TEST(OStringBuffer, HasRoomForItsSizeAndATerminator)
{
    const GuardedHeap heap;
    for (const int size : {0, 1, 31, 32, 100, 4096}) {
        OString narrow("before");
        std::memset(narrow.GetBuffer<char>(size), 'x', static_cast<size_t>(size));
        EXPECT_EQ(narrow.Length(), size);
        OString wide("before");
        std::wmemset(wide.GetBuffer<wchar_t>(size), L'x', static_cast<size_t>(size));
        EXPECT_EQ(wide.Length(), size);
    }
}

TEST(OStringBuffer, NegativeSizeIsZero)
{
    OString text("before");
    text.GetBuffer<char>(INT_MIN);
    EXPECT_EQ(StateOf(text), OStringState::Empty);
}

TEST(OStringBuffer, WideTextFromABufferIsConvertedAgain)
{
    OString text("old");
    text.wstring();
    std::wcscpy(text.GetBuffer<wchar_t>(5), L"new");
    EXPECT_STREQ(text.nstring(), "new");
}

} // namespace
