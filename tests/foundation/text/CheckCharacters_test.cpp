// SPDX-License-Identifier: MIT
#include "foundation/text/CheckCharacters.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* text;
    char check;
};

TEST(CheckDigitMod10, WeighsTheLastDigitAndEverySecondOneByThree)
{
    static constexpr Row rows[] = {
        {"03600029145",  '2'}, // 12 figures with the check digit
        {"400638133393", '1'}, // 13
        {"9638507",      '4'}, // 8
        {"1",            '7'}, // 3
        {"10",           '9'}, // 0 * 3 + 1
        {"55",           '0'}, // 15 + 5 is a multiple of ten
        {"",             '0'},
    };
    for (const Row& row : rows) EXPECT_EQ(CheckDigitMod10(row.text), row.check) << row.text;
}

TEST(CheckDigitLuhn, DoublesTheLastDigitAndEverySecondOne)
{
    static constexpr Row rows[] = {
        {"7992739871",      '3'},
        {"411111111111111", '1'},
        {"0",               '0'},
        {"1",               '8'},
        {"2",               '6'},
        {"3",               '4'},
        {"4",               '2'}, // twice the digit
        {"5",               '9'},
        {"6",               '7'},
        {"7",               '5'},
        {"8",               '3'},
        {"9",               '1'}, // less nine
        {"10",              '9'},
        {"90",              '1'},
        {"",                '0'},
    };
    for (const Row& row : rows) EXPECT_EQ(CheckDigitLuhn(row.text), row.check) << row.text;
}

TEST(CheckCharMod43, AddsTheIndexesInTheAlphabet)
{
    static constexpr Row rows[] = {
        {"12345ABCDE/", 'T'}, // 115 less 86
        {"CODE39",      'W'}, // 75 less 43
        {"Z",           'Z'},
        {"-",           '-'},
        {".",           '.'},
        {" ",           ' '},
        {"$",           '$'},
        {"/",           '/'},
        {"+",           '+'},
        {"%",           '%'},
        {"%1",          '0'}, // 43
        {"1a*\xE9",     '1'}, // what isn't in the alphabet counts 0
        {"",            '0'},
    };
    for (const Row& row : rows) EXPECT_EQ(CheckCharMod43(row.text), row.check) << row.text;
}

} // namespace
