// SPDX-License-Identifier: MIT
#include "foundation/registry/RegistryText.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;

using Lines = std::vector<std::wstring>;

RegistryTextValue TextValue(const wchar_t* name, const wchar_t* text)
{
    return {name, REG_SZ, text, 0, {}};
}

RegistryTextValue NumberValue(const wchar_t* name, DWORD number)
{
    return {name, REG_DWORD, L"", number, {}};
}

RegistryTextValue BytesValue(const wchar_t* name, DWORD type, std::vector<BYTE> bytes)
{
    return {name, type, L"", 0, std::move(bytes)};
}

Lines Written(const RegistryTextValue& value)
{
    OStringArray array;
    WriteRegistryTextValue(value, array);
    Lines lines;
    for (int index = 0; index < array.GetSize(); ++index) lines.emplace_back(array[index].wstring());
    return lines;
}

/// The value that a line tells, written as a line again; "none" without one.
std::wstring Reread(std::wstring_view line)
{
    RegistryTextValue value;
    return ReadRegistryTextValue(line, value) ? Written(value)[0] : L"none";
}

std::optional<std::wstring> ReadText(std::wstring_view line)
{
    RegistryTextValue value;
    if (!ReadRegistryTextValue(line, value) || value.type != REG_SZ) return std::nullopt;
    return value.text;
}

std::optional<std::vector<BYTE>> ReadBytes(std::wstring_view line, DWORD type)
{
    RegistryTextValue value;
    if (!ReadRegistryTextValue(line, value) || value.type != type) return std::nullopt;
    return value.bytes;
}

std::wstring ReadName(std::wstring_view line)
{
    RegistryTextValue value;
    return ReadRegistryTextValue(line, value) ? value.name : L"none";
}

TEST(RegistryTextWriting, HasAFormForEachType)
{
    EXPECT_THAT(Written(TextValue(L"Name", L"text")), ElementsAre(L"\"Name\"=\"text\""));
    EXPECT_THAT(Written(TextValue(L"", L"")), ElementsAre(L"\"\"=\"\""));
    EXPECT_THAT(Written(NumberValue(L"Mode", 0x1AB)), ElementsAre(L"\"Mode\"=dword:000001ab"));
    EXPECT_THAT(Written(NumberValue(L"Mode", 0xFEDCBA98)), ElementsAre(L"\"Mode\"=dword:fedcba98"));
    EXPECT_THAT(Written(BytesValue(L"B", REG_BINARY, {0x00, 0x1F, 0xA0})), ElementsAre(L"\"B\"=hex:00,1f,a0"));
    EXPECT_THAT(Written(BytesValue(L"B", REG_MULTI_SZ, {0, 0})), ElementsAre(L"\"B\"=hex(7):00,00"));
    EXPECT_THAT(Written(BytesValue(L"B", REG_EXPAND_SZ, {1})), ElementsAre(L"\"B\"=hex(2):01"));
    EXPECT_THAT(Written(BytesValue(L"B", REG_QWORD, {1})), ElementsAre(L"\"B\"=hex(11):01")) << "in decimal";
    EXPECT_THAT(Written(BytesValue(L"B", REG_NONE, {1})), ElementsAre(L"\"B\"=hex(0):01"));
    EXPECT_THAT(Written(BytesValue(L"B", 0xFFFF0000, {1})), ElementsAre(L"\"B\"=hex(4294901760):01"));
}

TEST(RegistryTextWriting, QuotesNamesAndTexts)
{
    EXPECT_THAT(Written(TextValue(L"a\\b\"c", L"\\\"")), ElementsAre(L"\"a\\\\b\\\"c\"=\"\\\\\\\"\""));
    EXPECT_THAT(Written(NumberValue(L"\"", 0)), ElementsAre(L"\"\\\"\"=dword:00000000"));
}

TEST(RegistryTextWriting, NoBytesLeaveThePrefix)
{
    EXPECT_THAT(Written(BytesValue(L"B", REG_BINARY, {})), ElementsAre(L"\"B\"=hex:"));
}

TEST(RegistryTextWriting, ALineIsContinuedWhenItIsPast76Characters)
{
    // The prefix of 8 characters and 23 bytes of three make 77.
    EXPECT_THAT(Written(BytesValue(L"B", REG_BINARY, std::vector<BYTE>(23, 0xFF))).size(), 1u);
    const Lines lines = Written(BytesValue(L"B", REG_BINARY, std::vector<BYTE>(24, 0xFF)));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].size(), 78u) << "the backslash is outside";
    EXPECT_TRUE(lines[0].ends_with(L"ff,ff,\\"));
    EXPECT_EQ(lines[1], L"  ff");
}

TEST(RegistryTextWriting, ALineOf76CharactersTakesOneMoreByte)
{
    // The prefix of 7 characters and 23 bytes make 76.
    const Lines lines = Written(BytesValue(L"", REG_BINARY, std::vector<BYTE>(25, 0xFF)));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].size(), 7u + 24 * 3 + 1);
}

TEST(RegistryTextWriting, ContinuedLinesHaveTwoBlanksAndTwentyFiveBytes)
{
    const Lines lines = Written(BytesValue(L"B", REG_BINARY, std::vector<BYTE>(23 + 25 + 25, 0)));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1].substr(0, 5), L"  00,");
    EXPECT_EQ(lines[1].size(), 2u + 25 * 3 + 1);
    EXPECT_EQ(lines[2].size(), 2u + 25 * 3 - 1) << "neither comma nor backslash at the end";
}

TEST(RegistryTextWriting, ALongNameIsContinuedBeforeTheFirstByte)
{
    const std::wstring name(80, L'n');
    EXPECT_THAT(Written(BytesValue(name.c_str(), REG_BINARY, {1, 2})),
                ElementsAre(L'"' + name + L"\"=hex:\\", L"  01,02"));
}

TEST(RegistryTextReading, KnowsWhatIsWritten)
{
    for (const wchar_t* const line :
         {L"\"Name\"=\"text\"", L"\"\"=\"\"", L"\"Mode\"=dword:fedcba98", L"\"B\"=hex:00,1f,a0", L"\"B\"=hex:",
          L"\"B\"=hex(7):61,00,00,00,00,00", L"\"a=b\"=\"c=d\"", L"\"50%/:\"=dword:00000001"}) {
        EXPECT_EQ(Reread(line), line);
    }
}

TEST(RegistryTextReading, NeedsANameAndAValue)
{
    for (const wchar_t* const line : {L"", L"Name", L"Name=\"text\"", L"\"Name\"", L"@=\"text\"", L"\"Name\" =\"text\"",
                                      L"\"Name\"=", L"\"Name\"=text", L"\"Name\"=dword", L"\"Name\"=hex",
                                      L"\"Name\"=hex00", L"\"Name\"=-", L"\"Name\"=he", L";comment"}) {
        EXPECT_EQ(Reread(line), L"none") << line;
    }
}

TEST(RegistryTextReading, UndoesTheQuotingOfATextInTwoSteps)
{
    EXPECT_EQ(ReadText(LR"("N"="a\\b")"), LR"(a\b)");
    EXPECT_EQ(ReadText(LR"("N"="a\"b")"), LR"(a"b)");
    EXPECT_EQ(ReadText(LR"("N"="\\\"b")"), LR"(\"b)");
    EXPECT_EQ(ReadText(LR"("N"="\\\\")"), LR"(\\)");
    EXPECT_EQ(ReadText(LR"("N"="\"b")"), LR"("b)");
    EXPECT_EQ(ReadText(LR"("N"="a\nb")"), LR"(a\nb)") << "any other backslash stays";
    EXPECT_EQ(ReadText(LR"("N"="a\\"b")"), LR"(a\"b)") << "the pair with the quote goes first";
}

TEST(RegistryTextReading, LosesAQuoteAtTheEndOfAText)
{
    EXPECT_EQ(ReadText(LR"("N"="a\"")"), LR"(a\)");
    EXPECT_EQ(ReadText(LR"("N"="a\"\"")"), LR"(a"\)");
    EXPECT_EQ(ReadText(LR"("N"=""a"")"), L"a");
    EXPECT_EQ(ReadText(LR"("N"=")"), L"");
}

TEST(RegistryTextReading, LeavesANameQuotedInside)
{
    EXPECT_EQ(ReadName(LR"("a\\b"="")"), LR"(a\\b)");
    EXPECT_EQ(ReadName(LR"("a\"b"="")"), LR"(a\"b)");
    EXPECT_EQ(ReadName(LR"("\"a"="")"), LR"(\"a)");
    EXPECT_EQ(ReadName(LR"("a\""="")"), LR"(a\)") << "a quote at the end is lost";
    EXPECT_EQ(ReadName(LR"(Name"="")"), L"Name");
}

TEST(RegistryTextReading, SplitsAtTheFirstQuoteAndEqualsSign)
{
    EXPECT_EQ(ReadName(LR"("a\"="b"="text")"), LR"(a\)");
    EXPECT_EQ(Reread(LR"("a\"=b"="text")"), L"none") << "what follows is no value";
    EXPECT_EQ(ReadText(LR"("a\"="b"="text")"), LR"(b"="text)");
    EXPECT_EQ(ReadName(LR"("=hex:a"="text")"), L"") << "the quote before the name counts too";
}

TEST(RegistryTextReading, TakesEightDigitsForANumber)
{
    static constexpr struct {
        const wchar_t* line;
        const wchar_t* number;
    } rows[] = {
        {L"\"N\"=dword:12345678",  L"12345678"},
        {L"\"N\"=DWord:ABCDEF01",  L"abcdef01"},
        {L"\"N\"=dword:123456789", L"12345678"},
        {L"\"N\"=dword:1234",      L"12340000"},
        {L"\"N\"=dword:123",       L"12000000"}, // half a pair is nothing
        {L"\"N\"=dword:",          L"00000000"},
        {L"\"N\"=dword:zz000000",  L"33000000"}, // any character is a digit
    };
    for (const auto& row : rows) EXPECT_EQ(Reread(row.line), std::wstring(L"\"N\"=dword:") + row.number) << row.line;
}

TEST(RegistryTextReading, TakesTwoDigitsBehindEachComma)
{
    using Bytes = std::vector<BYTE>;
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:01,ff,A0", REG_BINARY), (Bytes{0x01, 0xFF, 0xA0}));
    EXPECT_EQ(ReadBytes(L"\"N\"=HEX:01", REG_BINARY), Bytes{0x01});
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:", REG_BINARY), Bytes());
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:0102,03", REG_BINARY), (Bytes{0x01, 0x03}));
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:01,", REG_BINARY), Bytes{0x01});
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:01,2", REG_BINARY), (Bytes{0x01, 0x00}));
    EXPECT_EQ(ReadBytes(L"\"N\"=hex:zz", REG_BINARY), Bytes{0x33});
    EXPECT_EQ(ReadBytes(L"\"N\"=hexadecimal:05", REG_BINARY), Bytes{0x05});
}

TEST(RegistryTextReading, KnowsTheTypesBinaryAndListOnly)
{
    EXPECT_TRUE(ReadBytes(L"\"N\"=hex(7):00,00", REG_MULTI_SZ));
    for (const wchar_t* const line : {L"\"N\"=hex:01", L"\"N\"=hex(2):01", L"\"N\"=hex(0):01", L"\"N\"=hex(11):01",
                                      L"\"N\"=hex(77):01", L"\"N\"=hex (7):01"}) {
        EXPECT_TRUE(ReadBytes(line, REG_BINARY)) << line;
    }
}

} // namespace
