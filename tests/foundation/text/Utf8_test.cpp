// SPDX-License-Identifier: MIT
#include "foundation/text/Utf8.h"

#include "support/GuardedText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::u16string Decode(std::string_view bytes)
{
    const GuardedText<char> source(std::string(bytes) + '\0');
    std::vector<char16_t> units(bytes.size() + 1, u'x');
    const size_t length = DecodeUtf8(source.Get(), units.data());
    EXPECT_EQ(units.at(length), u'\0');
    return {units.data(), length};
}

std::string Encode(std::u16string_view units)
{
    const GuardedText<char16_t> source(std::u16string(units) + u'\0');
    std::vector<char> bytes(units.size() * 3 + 1, 'x');
    const size_t length = EncodeUtf8(source.Get(), bytes.data());
    EXPECT_EQ(bytes.at(length), '\0');
    return {bytes.data(), length};
}

TEST(Utf8, UnitsTakeOneTwoOrThreeBytes)
{
    static const struct {
        std::u16string units;
        std::string bytes;
    } rows[] = {
        {u"",         ""              },
        {u"\x0001",   "\x01"          },
        {u"A\x007F",  "A\x7F"         },
        {u"\x0080",   "\xC2\x80"      },
        {u"\x00E9",   "\xC3\xA9"      },
        {u"\x07FF",   "\xDF\xBF"      },
        {u"\x0800",   "\xE0\xA0\x80"  },
        {u"\x20AC",   "\xE2\x82\xAC"  },
        {u"\xFFFF",   "\xEF\xBF\xBF"  },
        {u"a\x20ACz", "a\xE2\x82\xACz"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Encode(row.units), row.bytes);
        EXPECT_EQ(Decode(row.bytes), row.units);
    }
}

TEST(Utf8, EveryUnitSurvivesEncodingAndDecoding)
{
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
        const char16_t source[] = {static_cast<char16_t>(unit), 0};
        char bytes[4];
        char16_t target[4];
        EncodeUtf8(source, bytes);
        ASSERT_EQ(DecodeUtf8(bytes, target), 1u) << std::hex << unit;
        ASSERT_EQ(target[0], source[0]) << std::hex << unit;
    }
}

TEST(Utf8, SurrogatePairBecomesTwoSequencesOfThreeBytes)
{
    EXPECT_EQ(Encode(u"\xD83D\xDE00"), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(Utf8, FourByteSequenceDecodesIntoWrongUnits)
{
    // F0 is read as the lead of 9F 98, and the left-over 80 as the lead of nothing.
    EXPECT_EQ(Decode("\xF0\x9F\x98\x80"), (std::u16string{u'\x07D8', u'\0'}));
}

TEST(Utf8, StrayContinuationByteIsReadAsThreeByteLead)
{
    EXPECT_EQ(Decode("\xA9"
                     "ab"
                     "c"),
              (std::u16string{static_cast<char16_t>(9 << 12 | 0x21 << 6 | 0x22), u'c'}));
}

TEST(Utf8, SequenceCutShortReadsMissingBytesAsZeroAndNothingAfterTheEnd)
{
    static const struct {
        std::string bytes;
        char16_t unit;
    } rows[] = {
        {"\xC3",     0x00C0},
        {"\xE2",     0x2000},
        {"\xE2\x82", 0x2080},
        {"\xF3",     0x3000},
    };
    for (const auto& row : rows) EXPECT_EQ(Decode(row.bytes), std::u16string(1, row.unit));
}

} // namespace
