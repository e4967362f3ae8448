// SPDX-License-Identifier: MIT
#include "vrl/driver/StatusFlags.h"

#include <gtest/gtest.h>

#include <ios>

namespace {

TEST(StatusTextById, HasFortyWords)
{
    static constexpr const char* words[] = {
        "Ready",
        "Spooling",
        "Printing",
        "Paused",
        "Cancelled",
        "Sent",
        "Completed",
        "User Intervention Required",
        "Restarted",
        "Retained",
        "Printed",
        "Paper Jam",
        "Paper Out",
        "Manual Feed",
        "Paper Problem",
        "Offline",
        "IO Active",
        "Busy",
        "Output Bin Full",
        "Not Available",
        "Waiting",
        "Processing",
        "Initializing",
        "Warming Up",
        "Toner Low",
        "No Toner",
        "Page Punt",
        "Out Of Memory",
        "Door Open",
        "Power Save",
        "Label Present",
        "Battery Low",
        "Battery Charging",
        "Ribbon Low",
        "Ribbon Out",
        "Ribbon Error",
        "Paper Low",
        "Head Open",
        "Head Error",
        "Cutter Error",
    };
    int number = 0;
    for (const char* word : words) EXPECT_EQ(StatusTextById(number++), word) << number;
    EXPECT_EQ(number, 40);
}

TEST(StatusTextById, NumberOutsideTheTableIsEmpty)
{
    EXPECT_TRUE(StatusTextById(-1).IsEmpty());
    EXPECT_TRUE(StatusTextById(40).IsEmpty());
}

TEST(AppendStatusText, PutsTheSeparatorOnlyBehindAText)
{
    EXPECT_EQ(AppendStatusText(OString(), OString("Paused")), "Paused");
    EXPECT_EQ(AppendStatusText(OString("Paused"), OString("Sent")), "Paused, Sent");
    EXPECT_EQ(AppendStatusText(OString("Paused"), OString()), "Paused, ");
}

TEST(StatusWordToText, EachBitHasItsWord)
{
    static constexpr struct {
        unsigned long word;
        const char* text;
    } rows[] = {
        {0x00000000, "Ready"                     },
        {0x00000001, "Paused"                    },
        {0x00000008, "Paper Jam"                 },
        {0x00000010, "Paper Out"                 },
        {0x00000020, "Manual Feed"               },
        {0x00000040, "Paper Problem"             },
        {0x00000080, "Offline"                   },
        {0x00000100, "IO Active"                 },
        {0x00000200, "Busy"                      },
        {0x00000400, "Printing"                  },
        {0x00000800, "Output Bin Full"           },
        {0x00001000, "Not Available"             },
        {0x00002000, "Waiting"                   },
        {0x00004000, "Processing"                },
        {0x00008000, "Initializing"              },
        {0x00010000, "Warming Up"                },
        {0x00020000, "Toner Low"                 },
        {0x00040000, "No Toner"                  },
        {0x00080000, "Page Punt"                 },
        {0x00100000, "User Intervention Required"},
        {0x00200000, "Out Of Memory"             },
        {0x00400000, "Door Open"                 },
        {0x01000000, "Power Save"                },
    };
    for (const auto& row : rows) EXPECT_EQ(StatusWordToText(row.word), row.text) << std::hex << row.word;
}

TEST(StatusWordToText, ComposesWordsInRisingBitOrder)
{
    EXPECT_EQ(StatusWordToText(0x00000018), "Paper Jam, Paper Out");
    EXPECT_EQ(StatusWordToText(0x00000402), "Printing");
    EXPECT_EQ(StatusWordToText(0x01000001), "Paused, Power Save");
    EXPECT_EQ(StatusWordToText(0xFFFFFFFF),
              "Paused, Paper Jam, Paper Out, Manual Feed, Paper Problem, Offline, IO Active, Busy, Printing, "
              "Output Bin Full, Not Available, Waiting, Processing, Initializing, Warming Up, Toner Low, No Toner, "
              "Page Punt, User Intervention Required, Out Of Memory, Door Open, Power Save");
}

TEST(StatusWordToText, BitsWithoutAWordGiveNoText)
{
    for (const unsigned long word : {0x00000002ul, 0x00000004ul, 0x00800000ul, 0x02000000ul, 0x80000000ul}) {
        EXPECT_TRUE(StatusWordToText(word).IsEmpty()) << std::hex << word;
    }
}

struct Condition {
    int number;
    unsigned long bit;
};

constexpr Condition spoolerConditions[] = {
    {100, 0x00000001},
    {101, 0x00000008},
    {102, 0x00000010},
    {103, 0x00000020},
    {104, 0x00000040},
    {105, 0x00000080},
    {106, 0x00000100},
    {107, 0x00000200},
    {108, 0x00000400},
    {109, 0x00000800},
    {110, 0x00001000},
    {111, 0x00002000},
    {112, 0x00004000},
    {113, 0x00008000},
    {114, 0x00010000},
    {115, 0x00020000},
    {116, 0x00040000},
    {117, 0x00080000},
    {118, 0x00100000},
    {119, 0x00200000},
    {120, 0x00400000},
    {121, 0x01000000},
};

TEST(TestStatusWord, EachConditionHasItsBit)
{
    for (const Condition& row : spoolerConditions) {
        EXPECT_TRUE(TestStatusWord(row.bit, row.number)) << row.number;
        EXPECT_FALSE(TestStatusWord(~row.bit, row.number)) << row.number;
    }
}

TEST(TestStatusWord, OtherNumbersNeverHold)
{
    for (const int number : {-1, 0, 99, 122, 199, 200, 201, 211, 212}) {
        EXPECT_FALSE(TestStatusWord(0xFFFFFFFF, number)) << number;
    }
}

TEST(TestExtendedWord, EachConditionHasItsBit)
{
    for (int number = 201; number <= 211; ++number) {
        const unsigned long bit = 1ul << (number - 201);
        EXPECT_TRUE(TestExtendedWord(bit, number)) << number;
        EXPECT_FALSE(TestExtendedWord(~bit, number)) << number;
    }
}

TEST(TestExtendedWord, OtherNumbersNeverHold)
{
    for (const int number : {-1, 0, 100, 121, 199, 200, 212, 232, 233}) {
        EXPECT_FALSE(TestExtendedWord(0xFFFFFFFF, number)) << number;
    }
}

TEST(SeverityOfStatusWord, ErrorOutranksWarningOutranksNormal)
{
    static constexpr struct {
        unsigned long word;
        int severity;
    } rows[] = {
        {0x00000000, 1},
        {0x00000001, 1},
        {0x00000400, 1},
        {0x00000004, 1},
        {0x00020000, 3},
        {0x01000000, 3},
        {0x01020000, 3},
        {0x00000002, 2},
        {0x00000008, 2},
        {0x00020008, 2},
        {0x00800000, 2},
        {0xFFFFFFFF, 2},
    };
    for (const auto& row : rows) EXPECT_EQ(SeverityOfStatusWord(row.word), row.severity) << std::hex << row.word;
}

TEST(SeverityOfStatusWord, EachBitHasItsSeverity)
{
    for (int shift = 0; shift < 32; ++shift) {
        const unsigned long bit = 1ul << shift;
        const int expected = (bit & 0x00FC185A) != 0 ? 2 : (bit & 0x01020000) != 0 ? 3 : 1;
        EXPECT_EQ(SeverityOfStatusWord(bit), expected) << std::hex << bit;
    }
}

} // namespace
