// SPDX-License-Identifier: MIT
#include "vrl/driver/QrmlAnswers.h"

#include "support/GuardedText.h"
#include "support/RandomSeed.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <random>
#include <string>

namespace {

using namespace std::string_view_literals;

constexpr size_t mebibyte = 1 << 20;

Qrml::Answer Bytes(std::string_view text)
{
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

/// "-" for nothing.
std::string StateValue(std::string_view answer)
{
    return std::string(Qrml::ReadStateValue(Bytes(answer)).value_or("-"sv));
}

TEST(QrmlAnswers, ValueOfAStateStandsFromTheThirdByteToItsNul)
{
    static constexpr struct {
        std::string_view answer;
        std::string_view value;
    } rows[] = {
        {"1;Paper Out\0"sv,   "Paper Out"sv},
        {"1;Paper Out"sv,     "Paper Out"sv}, // no terminator
        {"1;A\0B\0"sv,        "A"sv        },
        {"1;\0"sv,            ""sv         },
        {"1;"sv,              ""sv         },
        {"1;\0Paper Out\0"sv, ""sv         },
        {"1xReady"sv,         "Ready"sv    }, // nobody looks at the separator
        {"1\0Ready"sv,        "Ready"sv    },
        {"2;Ready"sv,         "Ready"sv    },
        {"\0;Ready"sv,        "Ready"sv    }, // anything but "0" is monitored
        {";;Ready"sv,         "Ready"sv    },
        {"10;Ready"sv,        ";Ready"sv   }, // the first value has one byte
    };
    for (const auto& row : rows) EXPECT_EQ(StateValue(row.answer), row.value) << row.answer;
}

TEST(QrmlAnswers, NoValueInAShortAnswerOrWithoutMonitoring)
{
    for (const std::string_view answer : {""sv, "1"sv, "0"sv, "\0"sv, "0;"sv, "0;Ready\0"sv, "0;00000001"sv}) {
        EXPECT_EQ(StateValue(answer), "-") << answer;
    }
}

TEST(QrmlAnswers, TextEndsAtTheFirstNul)
{
    EXPECT_EQ(Qrml::ReadText({}), "");
    EXPECT_EQ(Qrml::ReadText(Bytes("\0A"sv)), "");
    EXPECT_EQ(Qrml::ReadText(Bytes("<job status=\"completed\" />\0rest"sv)), "<job status=\"completed\" />");
    EXPECT_EQ(Qrml::ReadText(Bytes("no terminator"sv)), "no terminator");
}

TEST(QrmlAnswers, FlagsAreEightDigitsTheFirstPairOnTop)
{
    static constexpr struct {
        std::string_view value;
        uint32_t flags;
    } rows[] = {
        {"0000000F"sv,                         0x0000000F},
        {"0000000f"sv,                         0x0000000F},
        {"12345678"sv,                         0x12345678},
        {"DEADBEEF"sv,                         0xDEADBEEF},
        {"deadbeef"sv,                         0xDEADBEEF},
        {"00000400zz"sv,                       0x00000400}, // nothing after eight
        {""sv,                                 0         },
        {"1"sv,                                0         }, // a pair that ends with the text
        {"01"sv,                               0x01000000},
        {"012"sv,                              0x01000000},
        {"0123"sv,                             0x01230000},
        {"zz000000"sv,                         0x33000000}, // the low four bits and nine, in eight bits
        {"0g000000"sv,                         0x10000000},
        {"  000000"sv,                         0x99000000},
        {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv, 0x98989898},
    };
    for (const auto& row : rows) EXPECT_EQ(Qrml::ReadFlags(row.value), row.flags) << row.value;
}

TEST(QrmlAnswers, NumberIsReadAsTheLibraryReadsOne)
{
    static constexpr struct {
        std::string_view text;
        int32_t number;
    } rows[] = {
        {"2"sv,           2      },
        {""sv,            0      },
        {"  3"sv,         3      },
        {"\t\n4"sv,       4      },
        {"-1"sv,          -1     },
        {"+2"sv,          2      },
        {"2;3"sv,         2      },
        {"2x"sv,          2      },
        {"x2"sv,          0      },
        {"0x10"sv,        0      },
        {"- 1"sv,         0      },
        {"2147483647"sv,  INT_MAX},
        {"2147483648"sv,  INT_MAX},
        {"-2147483648"sv, INT_MIN},
        {"-9999999999"sv, INT_MIN},
    };
    for (const auto& row : rows) EXPECT_EQ(Qrml::ReadNumber(row.text), row.number) << row.text;
}

TEST(QrmlAnswers, ConditionOfAPortIsItsFirstCharacter)
{
    for (const std::string_view no : {""sv, ";"sv, "0"sv, "0;"sv, ";1"sv, "0\0"sv}) {
        EXPECT_FALSE(Qrml::ReadPortCondition(Bytes(no))) << no;
    }
    for (const std::string_view yes : {"1"sv, "1;"sv, "true;"sv, " "sv, "\0"sv, "\xFF"sv}) {
        EXPECT_TRUE(Qrml::ReadPortCondition(Bytes(yes))) << yes;
    }
}

/// Reads an answer in every way that there is. The answer ends where memory ends.
void ReadInEveryWay(std::string_view answer)
{
    const GuardedText guarded(answer);
    const Qrml::Answer bytes = Bytes({guarded.Get(), answer.size()});
    const std::string_view text = Qrml::ReadText(bytes);
    ASSERT_LE(text.size(), answer.size());
    ASSERT_EQ(text.find('\0'), std::string_view::npos);
    const int32_t status = Qrml::ReadNumber(text);
    ASSERT_EQ(status, static_cast<int32_t>(std::strtol(std::string(text).c_str(), nullptr, 10)));
    const auto value = Qrml::ReadStateValue(bytes);
    ASSERT_EQ(value.has_value(), answer.size() >= 2 && answer[0] != '0');
    ASSERT_EQ(Qrml::ReadPortCondition(bytes), !answer.empty() && answer[0] != '0' && answer[0] != ';');
    if (!value) return;
    ASSERT_LE(value->size() + 2, answer.size());
    Qrml::ReadFlags(*value);
    Qrml::ReadNumber(*value);
}

TEST(QrmlAnswers, ReadersStayInsideAnAnswerOfAnyLength)
{
    for (const std::string_view filling : {"1;0000000F"sv, "1;                "sv, "1;99999999999"sv, "\0"sv}) {
        std::string answer;
        for (size_t size = 0; size < 40; ++size) {
            ReadInEveryWay(answer);
            answer += filling[size % filling.size()];
        }
    }
}

TEST(QrmlAnswers, LargeAnswerIsReadWhole)
{
    const std::string answer = "1;" + std::string(mebibyte, '7');
    EXPECT_EQ(StateValue(answer).size(), mebibyte);
    EXPECT_EQ(Qrml::ReadText(Bytes(answer)).size(), mebibyte + 2);
    EXPECT_EQ(Qrml::ReadNumber(StateValue(answer)), INT_MAX);
    EXPECT_EQ(Qrml::ReadFlags(StateValue(answer)), 0x77777777u);
}

TEST(QrmlAnswersProperty, NoBytesMakeAReaderStumble)
{
    const int count = RandomOperations(20'000, 1'000'000);
    std::mt19937_64 random(RandomSeed());
    constexpr std::string_view likely("01;0123456789ABCDEFabcdef \0-+x", 30);
    for (int round = 0; round < count; ++round) {
        std::string answer(random() % 24, '\0');
        for (char& byte : answer) {
            byte = random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        }
        ReadInEveryWay(answer);
        if (HasFatalFailure()) FAIL() << "round " << round;
    }
}

} // namespace
