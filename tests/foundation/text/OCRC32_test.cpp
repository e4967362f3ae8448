// SPDX-License-Identifier: MIT
#include "foundation/text/OCRC32.h"

#include <gtest/gtest.h>

#include <string_view>

#include "foundation/Checksums.h"

namespace {

DWORD SumOf(std::string_view bytes, DWORD seed = 0)
{
    return CRC32(bytes.data(), bytes.size(), seed);
}

enum class Weekday : WORD { Friday = 0x0605 };

TEST(OCRC32, StartsAtItsSeed)
{
    EXPECT_EQ(OCRC32().GetValue(), 0u);
    EXPECT_EQ(OCRC32(0x12345678).GetValue(), 0x12345678u);
}

TEST(OCRC32, IsAPlainObjectOf32Bits)
{
    EXPECT_EQ(sizeof(OCRC32), 4u);
    EXPECT_TRUE(std::is_trivially_copyable_v<OCRC32>);
}

TEST(OCRC32, WhatIsAddedInPartsCountsAsOneRun)
{
    OCRC32 sum;
    sum.Add("1234", 4);
    sum.Add(static_cast<BYTE>('5'));
    sum.Add("", 0);
    sum.Add("6789", 4);
    EXPECT_EQ(sum.GetValue(), 0xCBF43926u);
}

TEST(OCRC32, GoesOnFromItsSeed)
{
    OCRC32 sum(SumOf("1234"));
    sum.Add("56789", 5);
    EXPECT_EQ(sum.GetValue(), 0xCBF43926u);
}

TEST(OCRC32, ValuesCountByTheirBytesInMemory)
{
    OCRC32 sum;
    sum.Add(BYTE{0x01});
    sum.Add(WORD{0x0302});
    sum.Add(Weekday::Friday);
    sum.Add(DWORD{0x0A090807});
    sum.Add(-2);
    sum.Add(0x1817161514131211ull);
    EXPECT_EQ(sum.GetValue(), SumOf("\x01\x02\x03\x05\x06\x07\x08\x09\x0A\xFE\xFF\xFF\xFF"
                                    "\x11\x12\x13\x14\x15\x16\x17\x18"));
}

TEST(OCRC32, ATextCountsByItsWideFormWithTheTerminator)
{
    for (const OString& text : {OString("ab"), OString(L"ab")}) {
        OCRC32 sum;
        sum.Add(text);
        EXPECT_EQ(sum.GetValue(), SumOf({"a\0b\0\0\0", 6}));
    }
}

TEST(OCRC32, AnEmptyTextCountsByItsTerminator)
{
    OCRC32 sum;
    sum.Add(OString());
    EXPECT_EQ(sum.GetValue(), SumOf({"\0\0", 2}));
}

TEST(OCRC32, AnArrayCountsAsItsTextsInTurn)
{
    OStringArray texts;
    texts.Add(OString("a"));
    texts.Add(OString());
    texts.Add(OString(L"\u20AC"));
    OCRC32 sum;
    sum.Add(texts);
    EXPECT_EQ(sum.GetValue(), SumOf({"a\0\0\0\0\0\xAC\x20\0\0", 10}));
}

TEST(OCRC32, AnArrayOfNothingChangesNothing)
{
    OCRC32 sum(7);
    sum.Add(OStringArray());
    EXPECT_EQ(sum.GetValue(), 7u);
}

} // namespace
