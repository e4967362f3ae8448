// SPDX-License-Identifier: MIT
#include "foundation/Checksums.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "support/RandomSeed.h"

namespace {

DWORD SumOf(std::string_view text, DWORD seed = 0)
{
    return CRC32(text.data(), text.size(), seed);
}

WORD ShortSumOf(std::string_view text, WORD seed)
{
    return CRC16(text.data(), text.size(), seed);
}

std::string RandomBytes(std::mt19937_64& engine, size_t size)
{
    std::uniform_int_distribution<int> anyByte(0, 255);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(anyByte(engine));
    return bytes;
}

/// CRC-CCITT by its definition: the text as a polynomial over bits, divided by x^16 + x^12 + x^5 + 1.
WORD RemainderByBits(std::string_view text, WORD seed)
{
    unsigned value = seed;
    for (const char character : text) {
        value ^= static_cast<unsigned>(static_cast<unsigned char>(character)) << 8;
        for (int bit = 0; bit < 8; ++bit) value = value & 0x8000 ? (value << 1 ^ 0x1021) & 0xFFFF : value << 1;
    }
    return static_cast<WORD>(value);
}

TEST(CRC32, GivesThePublishedCheckValues)
{
    static constexpr struct {
        std::string_view text;
        DWORD sum;
    } rows[] = {
        {"",                          0x00000000        },
        {"a",                         0xE8B7BE43        },
        {"abc",                       0x352441C2        },
        {"123456789",                 0xCBF43926        },
        {std::string_view("\0\0\0\0", 4),                 0x2144DF1C},
        {"\xFF\xFF\xFF\xFF",                           0xFFFFFFFF                           },
        {"The quick brown fox jumps over the lazy dog",                           0x414FA339},
    };
    for (const auto& row : rows) EXPECT_EQ(SumOf(row.text), row.sum) << row.text;
}

TEST(CRC32, ChainsByTheLastResultAsTheSeed)
{
    const std::string_view text = "123456789";
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        EXPECT_EQ(SumOf(text.substr(cut), SumOf(text.substr(0, cut))), 0xCBF43926u) << cut;
    }
}

TEST(CRC32, OfNothingIsTheSeed)
{
    EXPECT_EQ(SumOf("", 0x12345678), 0x12345678u);
}

// The shift form is the division by 0x1021 with the high bit first, nothing reflected and nothing inverted. So from the
// seed 0xFFFF the check value is 0x29B1, from the seed 0 it is 0x31C3, and from 0x1D0F it is 0xE5CC: the published
// values of the three usual sums of this polynomial that start so.
TEST(CRC16, GivesThePublishedCheckValues)
{
    static constexpr struct {
        std::string_view text;
        WORD seed;
        WORD sum;
    } rows[] = {
        {"123456789", 0xFFFF, 0x29B1},
        {"123456789", 0x0000, 0x31C3},
        {"123456789", 0x1D0F, 0xE5CC},
        {"",          0xFFFF, 0xFFFF},
        {"A",         0xFFFF, 0xB915},
        {"A",         0x0000, 0x58E5},
    };
    for (const auto& row : rows) EXPECT_EQ(ShortSumOf(row.text, row.seed), row.sum) << row.text << " " << row.seed;
}

TEST(CRC16, IsTheRemainderOfTheDivisionBitByBit)
{
    std::mt19937_64 engine(RandomSeed());
    for (size_t size = 0; size < 300; ++size) {
        const std::string bytes = RandomBytes(engine, size);
        const auto seed = static_cast<WORD>(engine());
        ASSERT_EQ(ShortSumOf(bytes, seed), RemainderByBits(bytes, seed)) << size;
    }
}

TEST(CRC16, ChainsByTheLastResultAsTheSeed)
{
    const std::string_view text = "123456789";
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        EXPECT_EQ(ShortSumOf(text.substr(cut), ShortSumOf(text.substr(0, cut), 0xFFFF)), 0x29B1) << cut;
    }
}

} // namespace
