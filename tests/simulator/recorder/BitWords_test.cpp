// SPDX-License-Identifier: MIT
#include "recorder/BitWords.h"

#include <gmock/gmock.h>

namespace {

TEST(BitWords, NameBitsInTheOrderOfTheTable)
{
    EXPECT_EQ(WordsOf(JOB_STATUS_PRINTING | JOB_STATUS_PAUSED, jobStatusWords), L"paused, printing");
    EXPECT_EQ(WordsOf(PRINTER_CHANGE_ADD_JOB, changeWords), L"add job");
}

TEST(BitWords, SayNothingOfNoBits)
{
    EXPECT_EQ(WordsOf(0, jobStatusWords), L"");
}

TEST(BitWords, GiveBitsWithoutAWordAsANumber)
{
    EXPECT_EQ(WordsOf(0x40000008, jobStatusWords), L"spooling, 0x40000000");
    EXPECT_EQ(WordsOf(0x40000000, jobStatusWords), L"0x40000000");
}

} // namespace
