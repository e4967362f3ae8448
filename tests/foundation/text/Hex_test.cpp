// SPDX-License-Identifier: MIT
#include "foundation/text/Hex.h"

#include <gtest/gtest.h>

#include <string>

#include "support/AssertCatcher.h"

namespace {

TEST(Hex, EncodesTwoUpperCaseDigitsForEachByte)
{
    static constexpr BYTE bytes[] = {0x00, 0x09, 0x1A, 0x5E, 0xA0, 0xFF};
    std::string narrow(12, '?');
    Hex::Encode(bytes, narrow.data(), sizeof bytes);
    EXPECT_EQ(narrow, "00091A5EA0FF");

    std::wstring wide(12, L'?');
    Hex::Encode(bytes, wide.data(), sizeof bytes);
    EXPECT_EQ(wide, L"00091A5EA0FF");
}

TEST(Hex, EncodeWritesNoTerminator)
{
    char text[] = "???";
    Hex::Encode("A", text, 1);
    EXPECT_STREQ(text, "41?");
}

TEST(Hex, EncodeOfNoBytesWritesNothing)
{
    char text[] = "?";
    Hex::Encode("A", text, 0);
    EXPECT_STREQ(text, "?");
}

TEST(Hex, DecodesAPairLeniently)
{
    static constexpr struct {
        const char* pair;
        int byte;
    } rows[] = {
        {"00",         0x00},
        {"09",         0x09},
        {"90",         0x90},
        {"1A",         0x1A},
        {"1a",         0x1A},
        {"fF",         0xFF},
        {"zz",         0x33}, // 'z' has low bits 10 and counts 19: 19 * 16 OR 19 is 0x133
        {"g0",         0x00}, // 'g' counts 16, which leaves the byte
        {"0g",         0x10}, // and reaches into the high digit from the low one
        {"1G",         0x10},
        {"@@",         0x99}, // low bits 0
        {"\xE9"
         "0", 0x20}, // low bits 9: 18
    };
    for (const auto& row : rows) {
        BYTE byte = 0xCC;
        Hex::Decode(row.pair, &byte, 1);
        EXPECT_EQ(byte, row.byte) << row.pair;
    }
}

TEST(Hex, DecodesWideCharactersByTheirLowBits)
{
    BYTE bytes[3];
    Hex::Decode(L"4fzz\u0131\u0130", bytes, sizeof bytes);
    EXPECT_EQ(bytes[0], 0x4F);
    EXPECT_EQ(bytes[1], 0x33);
    EXPECT_EQ(bytes[2], 0xA9); // low bits 1 and 0 count 10 and 9
}

TEST(Hex, NullPointersBreakAnAssertion)
{
    char text[2];
    BYTE byte;
    EXPECT_EQ(BrokenAssert([&] { Hex::Encode<char>(nullptr, text, 1); }), "Hex::Encode ASSERT(in && out)");
    EXPECT_EQ(BrokenAssert([&] { Hex::Encode<char>("A", nullptr, 1); }), "Hex::Encode ASSERT(in && out)");
    EXPECT_EQ(BrokenAssert([&] { Hex::Decode<char>(nullptr, &byte, 1); }), "Hex::Decode ASSERT(in && out)");
    EXPECT_EQ(BrokenAssert([&] { Hex::Decode("41", nullptr, 1); }), "Hex::Decode ASSERT(in && out)");
    EXPECT_EQ(BrokenAssert([&] { Hex::Decode<wchar_t>(nullptr, &byte, 1); }), "Hex::Decode ASSERT(in && out)");
}

TEST(Hex, EncodesNumbersHighByteFirst)
{
    std::string word(4, '?');
    Hex::EncodeWord(0x12AF, word.data());
    EXPECT_EQ(word, "12AF");

    std::wstring doubleWord(8, L'?');
    Hex::EncodeDWord(0x0123CDEF, doubleWord.data());
    EXPECT_EQ(doubleWord, L"0123CDEF");
}

TEST(Hex, DecodesNumbersHighByteFirst)
{
    EXPECT_EQ(Hex::DecodeWord("12aF"), 0x12AF);
    EXPECT_EQ(Hex::DecodeWord(L"12aF"), 0x12AF);
    EXPECT_EQ(Hex::DecodeDWord("0123cdEF"), 0x0123CDEFu);
    EXPECT_EQ(Hex::DecodeDWord(L"FEDCBA98"), 0xFEDCBA98u);
}

TEST(Hex, DecodesNumbersAsLenientlyAsBytes)
{
    EXPECT_EQ(Hex::DecodeDWord("zz0000zz"), 0x33000033u);
}

TEST(Hex, ReadPairGivesZeroWhereTheTextEnds)
{
    static constexpr struct {
        const char* text;
        int byte;
    } rows[] = {
        {"",    0   },
        {"4",   0   },
        {"41",  0x41},
        {"417", 0x41},
        {"zz",  0x33},
        {"00",  0   }
    };
    for (const auto& row : rows) EXPECT_EQ(Hex::ReadPair(row.text), row.byte) << row.text;
    EXPECT_EQ(Hex::ReadPair(L"4"), 0);
    EXPECT_EQ(Hex::ReadPair(L"4a"), 0x4A);
}

TEST(Hex, DigitsAreTheTenFiguresAndSixLettersOfEitherCase)
{
    std::string narrow;
    std::wstring wide;
    for (int code = 1; code < 256; ++code) {
        narrow.append(Hex::IsHexDigit(static_cast<char>(code)), static_cast<char>(code));
        wide.append(Hex::IsHexDigit(static_cast<wchar_t>(code)), static_cast<wchar_t>(code));
    }
    EXPECT_EQ(narrow, "0123456789ABCDEFabcdef");
    EXPECT_EQ(wide, L"0123456789ABCDEFabcdef");
    EXPECT_FALSE(Hex::IsHexDigit('\0'));
    EXPECT_FALSE(Hex::IsHexDigit(L'\uFF11')); // a full-width figure
}

TEST(Hex, APairIsTwoDigits)
{
    static constexpr struct {
        const char* text;
        bool isPair;
    } rows[] = {
        {"",    false},
        {"1",   false},
        {"g1",  false},
        {"1g",  false},
        {"1f",  true },
        {"A0z", true }
    };
    for (const auto& row : rows) EXPECT_EQ(Hex::IsHexPair(row.text), row.isPair) << row.text;
    EXPECT_TRUE(Hex::IsHexPair(L"bC"));
    EXPECT_FALSE(Hex::IsHexPair(L"b"));
}

} // namespace
