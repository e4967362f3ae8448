// SPDX-License-Identifier: MIT
#include "foundation/text/Charsets.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct NameRow {
    const char* name;
    const char* codePage;
};

struct NumberRow {
    int codePage;
    int charset;
};

TEST(IsASCIIName, KnowsFiveNamesInAnyCase)
{
    for (const char* name : {"us-ascii", "ascii", "cp367", "IBM367", "ISO646-US", "US-ASCII", "ibm367", "iso646-us"}) {
        EXPECT_TRUE(IsASCIIName(name)) << name;
    }
    for (const char* name : {"", "ascii ", "asci", "ibm850", "utf-8", "us_ascii"}) {
        EXPECT_FALSE(IsASCIIName(name)) << name;
    }
}

TEST(CharsetToCodePage, KnowsTheseNames)
{
    static constexpr NameRow rows[] = {
        {"utf-8",          "UTF-8" },
        {"UTF-16LE",       "UTF-16"},
        {"windows-1250",   "1250"  },
        {"windows-1251",   "1251"  },
        {"windows-1252",   "1252"  },
        {"windows-1253",   "1253"  },
        {"windows-1254",   "1254"  },
        {"windows-1255",   "1255"  },
        {"windows-1256",   "1256"  },
        {"windows-1257",   "1257"  },
        {"windows-1258",   "1258"  },
        {"ibm850",         "850"   },
        {"ascii",          "1252"  },
        {"us-ascii",       "1252"  },
        {"cp367",          "1252"  },
        {"IBM367",         "1252"  },
        {"ISO646-US",      "1252"  },
        {"windows-874",    "874"   },
        {"DOS-874",        "874"   },
        {"iso-8859-11",    "874"   },
        {"TIS-620",        "874"   },
        {"shift-jis",      "932"   },
        {"shift_jis",      "932"   },
        {"csShiftJIS",     "932"   },
        {"ms_Kanji",       "932"   },
        {"x-sjis",         "932"   },
        {"gb2312",         "936"   },
        {"chinese",        "936"   },
        {"GBK",            "936"   },
        {"iso-ir-58",      "936"   },
        {"big5",           "950"   },
        {"cn-big5",        "950"   },
        {"csbig5",         "950"   },
        {"x-x-big5",       "950"   },
        {"korean",         "949"   },
        {"ks_c_5601-1987", "949"   },
        {"csKSC56011987",  "949"   },
        {"euc-kr",         "949"   },
        {"iso-ir-149",     "949"   },
        {"johab",          "1361"  },
    };
    for (const NameRow& row : rows) EXPECT_EQ(CharsetToCodePage(row.name), row.codePage) << row.name;
}

TEST(CharsetToCodePage, ComparesNamesWithoutRegardToCase)
{
    static constexpr NameRow rows[] = {
        {"UTF-8",        "UTF-8" },
        {"utf-16le",     "UTF-16"},
        {"Windows-1252", "1252"  },
        {"SHIFT_JIS",    "932"   },
        {"gbk",          "936"   }
    };
    for (const NameRow& row : rows) EXPECT_EQ(CharsetToCodePage(row.name), row.codePage) << row.name;
}

TEST(CharsetToCodePage, IsEmptyForAnUnknownName)
{
    for (const char* name : {"", "utf-16", "windows-1259", "iso-8859-1", "utf-8 "}) {
        EXPECT_EQ(CharsetToCodePage(name), "") << name;
    }
}

constexpr NumberRow bothWays[] = {
    {874,  222},
    {932,  128},
    {936,  134},
    {949,  129},
    {950,  136},
    {1250, 238},
    {1251, 204},
    {1252, 0  },
    {1253, 161},
    {1254, 162},
    {1255, 177},
    {1256, 178},
    {1257, 186},
    {1258, 163},
    {1361, 130},
    {2,    2  },
};

TEST(CodePageToCharset, KnowsThePagesOfThePlatform)
{
    for (const NumberRow& row : bothWays) EXPECT_EQ(CodePageToCharset(row.codePage), row.charset) << row.codePage;
}

TEST(CharsetToCodePage, IsTheWayBackFromCodePageToCharset)
{
    for (const NumberRow& row : bothWays) EXPECT_EQ(CharsetToCodePage(row.charset), row.codePage) << row.charset;
}

TEST(CodePageToCharset, KnowsOEMPages)
{
    static constexpr NumberRow rows[] = {
        {437, 0  },
        {850, 0  },
        {858, 0  },
        {860, 0  },
        {861, 0  },
        {863, 0  },
        {865, 0  },
        {737, 161},
        {869, 161},
        {775, 186},
        {852, 238},
        {855, 204},
        {866, 204},
        {857, 162},
        {862, 177},
        {864, 178},
    };
    for (const NumberRow& row : rows) EXPECT_EQ(CodePageToCharset(row.codePage), row.charset) << row.codePage;
}

TEST(CodePageToCharset, KnowsTwoNames)
{
    EXPECT_EQ(CodePageToCharset(OString("JIS")), 128);
    EXPECT_EQ(CodePageToCharset(OString("Mac-Western")), 0);
    EXPECT_EQ(CodePageToCharset(OString("mac-western")), 0);
    EXPECT_EQ(CodePageToCharset(OString("EUC")), -1);
    EXPECT_EQ(CodePageToCharset(OString()), -1);
}

TEST(CodePageToCharset, GivesMinusOneForAnUnknownPage)
{
    for (const int codePage : {-1, 0, 1, 1249, 1259, 65001}) EXPECT_EQ(CodePageToCharset(codePage), -1) << codePage;
}

TEST(CharsetToCodePage, GivesZeroForAnUnknownCharset)
{
    for (const int charset : {-1, 1, 77, 255}) EXPECT_EQ(CharsetToCodePage(charset), 0) << charset;
}

TEST(IsDoubleByteCharset, IsTrueForFiveCharsets)
{
    std::string found;
    for (int charset = -1; charset < 256; ++charset) {
        found += IsDoubleByteCharset(charset) ? std::to_string(charset) + " " : "";
    }
    EXPECT_EQ(found, "128 129 130 134 136 ");
}

} // namespace
