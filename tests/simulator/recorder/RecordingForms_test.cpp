// SPDX-License-Identifier: MIT
#include "recorder/RecordingForms.h"

#include <gmock/gmock.h>

namespace {

struct QuotedCase {
    std::wstring text;
    std::wstring quoted;
};

const std::vector<QuotedCase>& QuotedCases()
{
    static const std::vector<QuotedCase> cases{
        {L"",                        L"\"\""                 },
        {L"Label 1",                 L"\"Label 1\""          },
        {L"say \"hello\"",           L"\"say \\\"hello\\\"\""},
        {L"C:\\temp\\",              L"\"C:\\\\temp\\\\\""   },
        {L"a\nb\rc\td",              L"\"a\\nb\\rc\\td\""    },
        {std::wstring(L"\0\x1F\x7F", 3),                       L"\"\\u0000\\u001F\\u007F\""},
        {L"\u00C4\u6F22 ;",                          L"\"\u00C4\u6F22 ;\""                                 },
        {L"\xD83D\xDE00",                          L"\"\xD83D\xDE00\""  },
        {L"\xD83Dx\xDE00",                          L"\"\\uD83Dx\\uDE00\""                                },
        {L"\xD83D",                          L"\"\\uD83D\""         },
    };
    return cases;
}

TEST(RecordingForms, QuoteTextsSoThatTheyFitInALine)
{
    for (const auto& [text, quoted] : QuotedCases()) {
        EXPECT_EQ(QuotedText(text), quoted);
        EXPECT_EQ(ReadQuoted(quoted), text);
        EXPECT_EQ(QuotedLength(quoted + L" \"next\""), quoted.size());
    }
}

TEST(RecordingForms, RefuseMalformedQuotes)
{
    for (const wchar_t* text :
         {L"", L"\"", L"x", L"\"x", L"x\"", L"\"x\"y", L"\"\\\"", L"\"\\x\"", L"\"\\u12\"", L"\"\\u12G4\"", L"\"\\"})
        EXPECT_EQ(ReadQuoted(text), std::nullopt) << ::testing::PrintToString(std::wstring(text));
    EXPECT_EQ(QuotedLength(L"\"open"), 0u);
    EXPECT_EQ(QuotedLength(L"\"open\\\""), 0u);
}

TEST(RecordingForms, WriteNumbersAsHexadecimal)
{
    EXPECT_EQ(NumberText(0x8000000A), L"0x8000000A");
    EXPECT_EQ(ReadNumber(NumberText(0xFFFFFFFF)), 0xFFFFFFFFu);
}

TEST(RecordingForms, ReadNumbersOfBothBases)
{
    EXPECT_EQ(ReadNumber(L"0"), 0u);
    EXPECT_EQ(ReadNumber(L"4294967295"), 0xFFFFFFFFu);
    EXPECT_EQ(ReadNumber(L"0Xff"), 255u);
    for (const wchar_t* text :
         {L"", L"0x", L"4294967296", L"0x100000000", L"12a", L"-1", L" 1", L"0xG", L"99999999999999999999999"})
        EXPECT_EQ(ReadNumber(text), std::nullopt) << ::testing::PrintToString(std::wstring(text));
}

TEST(RecordingForms, WriteBytesAsPairsOfDigits)
{
    EXPECT_EQ(HexText({0x00, 0x9A, 0xFF}), L"009AFF");
    EXPECT_EQ(ReadHex(L"009aFF"), (std::vector<BYTE>{0x00, 0x9A, 0xFF}));
    EXPECT_EQ(ReadHex(L"009"), std::nullopt);
    EXPECT_EQ(ReadHex(L"0x"), std::nullopt);
}

TEST(RecordingForms, WriteTimesAsSeconds)
{
    EXPECT_EQ(SecondsText(0), L"0.000000");
    EXPECT_EQ(SecondsText(12000345), L"12.000345");
    EXPECT_EQ(ReadSeconds(L"12.000345"), 12000345u);
    EXPECT_EQ(ReadSeconds(L"12"), 12000000u);
    EXPECT_EQ(ReadSeconds(L"0.5"), 500000u);
    for (const wchar_t* text : {L"", L".", L".5", L"5.", L"1.0000001", L"1,5", L"-1", L"4294967296"})
        EXPECT_EQ(ReadSeconds(text), std::nullopt) << ::testing::PrintToString(std::wstring(text));
}

TEST(RecordingForms, WriteDates)
{
    const SYSTEMTIME leapDay = {2024, 2, 4, 29, 23, 5, 59, 7};
    EXPECT_EQ(DateText(leapDay), L"2024-02-29 23:05:59.007");
    const std::optional<SYSTEMTIME> read = ReadDate(L"2024-02-29 23:05:59.007");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->wDayOfWeek, 4);
    EXPECT_EQ(read->wMilliseconds, 7);
}

TEST(RecordingForms, WriteNoDateThatTheyCouldNotReadBack)
{
    EXPECT_EQ(DateText({}), std::nullopt);
    EXPECT_EQ(DateText({2024, 2, 3, 29, 0, 0, 0, 0}), std::nullopt) << "it was a Thursday";
    EXPECT_EQ(DateText({2023, 2, 4, 29, 0, 0, 0, 0}), std::nullopt);
}

TEST(RecordingForms, RefuseWhatIsNoDate)
{
    for (const wchar_t* text :
         {L"", L"2024-02-29", L"2023-02-29 00:00:00.000", L"2024-02-29 24:00:00.000", L"2024/02/29 00:00:00.000",
          L"2024-02-29 00:00:00.0000", L"2024-2-29 00:00:00.000", L"2024-02-29T00:00:00.000"})
        EXPECT_EQ(ReadDate(text).has_value(), false) << ::testing::PrintToString(std::wstring(text));
}

} // namespace
