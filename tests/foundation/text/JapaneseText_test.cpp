// SPDX-License-Identifier: MIT
#include "foundation/text/JapaneseText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = OTypedArray<unsigned char>;

void Fill(Bytes& bytes, std::string_view text)
{
    for (const char character : text) bytes.Add(static_cast<unsigned char>(character));
}

std::string TextOf(const Bytes& bytes)
{
    return std::string(reinterpret_cast<const char*>(bytes.GetData()), static_cast<size_t>(bytes.GetSize()));
}

/// What a conversion makes of a text, in an array that had another content before.
template <typename Convert>
std::string Converted(std::string_view text, Convert convert)
{
    Bytes source;
    Fill(source, text);
    Bytes result;
    Fill(result, "old");
    convert(source, result);
    return TextOf(result);
}

std::string JIS(std::string_view text, bool fullWidth)
{
    return Converted(text, [=](const Bytes& source, Bytes& result) { ShiftJISToJIS(source, result, fullWidth); });
}

std::string FullWidth(std::string_view text, HalfWidth what)
{
    return Converted(text, [=](const Bytes& source, Bytes& result) { ToFullWidth(source, result, what); });
}

std::string FullWidthEUC(std::string_view text)
{
    return Converted(text, ToFullWidthEUC);
}

std::wstring ByThePlatform(std::string_view shiftJIS)
{
    wchar_t text[8];
    const int size = static_cast<int>(shiftJIS.size());
    const int length = ::MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, shiftJIS.data(), size, text, 8);
    return std::wstring(text, static_cast<size_t>(length));
}

std::string FullWidthBytes(int character)
{
    const DoubleByte pair = FullWidthForm(static_cast<BYTE>(character));
    return {static_cast<char>(pair.first), static_cast<char>(pair.second)};
}

constexpr std::wstring_view fullWidthASCII = L"　！”＃＄％＆’（）＊＋，－．／０１２３４５６７８９：；＜＝＞？"
                                             L"＠ＡＢＣＤＥＦＧＨＩＪＫＬＭＮＯＰＱＲＳＴＵＶＷＸＹＺ［＼］＾＿"
                                             L"｀ａｂｃｄｅｆｇｈｉｊｋｌｍｎｏｐｑｒｓｔｕｖｗｘｙｚ｛｜｝～";
constexpr std::wstring_view fullWidthKatakana = L"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソ"
                                                L"タチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン゛゜";

TEST(FullWidthForm, OfASCIIReadsAsTheWideCharacterInCodePage932)
{
    std::wstring read;
    for (int character = 32; character <= 126; ++character) read += ByThePlatform(FullWidthBytes(character));
    EXPECT_EQ(read, fullWidthASCII);
}

TEST(FullWidthForm, OfKatakanaReadsAsTheWideCharacterInCodePage932)
{
    std::wstring read;
    for (int character = 161; character <= 223; ++character) read += ByThePlatform(FullWidthBytes(character));
    EXPECT_EQ(read, fullWidthKatakana);
}

TEST(FullWidthForm, OfKatakanaIsWhatThePlatformMakesOfTheHalfWidthOne)
{
    // The sound marks are left out: alone they have no wide form that all platforms agree on.
    for (int character = 161; character <= 221; ++character) {
        const std::wstring halfWidth = ByThePlatform({reinterpret_cast<const char*>(&character), 1});
        wchar_t wide[2] = {};
        ::LCMapStringW(MAKELCID(MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), SORT_DEFAULT), LCMAP_FULLWIDTH,
                       halfWidth.c_str(), 1, wide, 1);
        EXPECT_EQ(ByThePlatform(FullWidthBytes(character)), wide) << character;
    }
}

TEST(FullWidthForm, IsZeroForAllOtherBytes)
{
    std::vector<int> without;
    for (int character = 0; character < 256; ++character) {
        const DoubleByte pair = FullWidthForm(static_cast<BYTE>(character));
        if (pair == DoubleByte{0, 0}) without.push_back(character);
    }
    std::vector<int> expected;
    for (int character = 0; character < 32; ++character) expected.push_back(character);
    for (int character = 127; character < 161; ++character) expected.push_back(character);
    for (int character = 224; character < 256; ++character) expected.push_back(character);
    EXPECT_EQ(without, expected);
}

TEST(SwapBytes, SwapsEachUnitUpToTheTerminator)
{
    wchar_t text[] = {0x1234, 0x00FF, 0xFF00, 0x0000, 0x5678};
    SwapBytes(text);
    EXPECT_EQ(std::wstring(text, 5), (std::wstring{0x3412, 0xFF00, 0x00FF, 0x0000, 0x5678}));
}

TEST(ShiftJISToJIS, ConvertsPairs)
{
    static constexpr struct {
        std::string_view shiftJIS;
        std::string_view jis;
    } rows[] = {
        {"\x88\x9F", "\x30\x21"}, // the first of the first level
        {"\xEA\xA4", "\x74\x26"}, // the last of the second
        {"\x83\x41", "\x25\x22"},
        {"\x81\x7E", "\x21\x5F"}, // either side of the trail byte that isn't used
        {"\x81\x80", "\x21\x60"},
        {"\x81\x9E", "\x21\x7E"}, // either side of the change of row
        {"\x81\x9F", "\x22\x21"},
        {"\x9F\xFC", "\x5E\x7E"}, // either side of the gap in the lead bytes
        {"\xE0\x40", "\x5F\x21"},
        {"\xEF\xFC", "\x7E\x7E"}, // the last that has a place
        {"\xF0\x40", "!y"      }, // the first that hasn't
        {"\xFA\x40", "!y"      },
        {"\x81\x20", "!y"      }, // a trail byte too low
        {"\x81\xFD", "!y"      }, // and one too high
        {"\x81",     "!y"      }, // none at all
    };
    for (const auto& row : rows) EXPECT_EQ(JIS(row.shiftJIS, false), row.jis) << row.shiftJIS;
}

TEST(ShiftJISToJIS, GivesEveryCellOfTheStandardItsRowAndColumn)
{
    for (int row = 1; row <= 94; ++row) {
        for (int cell = 1; cell <= 94; ++cell) {
            const int lead = (row - 1) / 2 + (row <= 62 ? 0x81 : 0xC1);
            const int oddTrail = cell + (cell < 64 ? 0x3F : 0x40);
            const int trail = row % 2 == 1 ? oddTrail : cell + 0x9E;
            const std::string shiftJIS{static_cast<char>(lead), static_cast<char>(trail)};
            const std::string jis{static_cast<char>(row + 32), static_cast<char>(cell + 32)};
            ASSERT_EQ(JIS(shiftJIS, false), jis) << row << "-" << cell;
        }
    }
}

TEST(ShiftJISToJIS, CopiesSingleBytesWithoutTheFlag)
{
    EXPECT_EQ(JIS("A \n\xB1\x80\xFF"
                  "\x83\x41z",
                  false),
              "A \n\xB1\x80\xFF"
              "\x25\x22z");
}

TEST(ShiftJISToJIS, TakesSingleBytesInTheirFullWidthFormWithTheFlag)
{
    EXPECT_EQ(JIS("A \xB1"
                  "\x83\x41z",
                  true),
              "\x23\x41\x21\x21\x25\x22\x25\x22\x23\x7A");
}

TEST(ShiftJISToJIS, ASingleByteWithoutFullWidthFormHasNoPlaceWithTheFlag)
{
    EXPECT_EQ(JIS("\n\x80", true), "!y!y");
}

TEST(ToFullWidth, ConvertsASCIIOnly)
{
    EXPECT_EQ(FullWidth("A~ \n\x7F\xB1", HalfWidth::ASCII), "\x82\x60\x81\x60\x81\x40\n\x7F\xB1");
}

TEST(ToFullWidth, ConvertsKatakanaAsWellIfAsked)
{
    EXPECT_EQ(FullWidth("A\xA0\xA1\xB1\xDF\x80\xFD", HalfWidth::ASCIIAndKatakana),
              "\x82\x60\xA0\x81\x42\x83\x41\x81\x4B\x80\xFD");
}

TEST(ToFullWidth, LeavesPairsAlone)
{
    // Trail bytes that would be ASCII or katakana by themselves.
    for (const HalfWidth what : {HalfWidth::ASCII, HalfWidth::ASCIIAndKatakana}) {
        EXPECT_EQ(FullWidth("\x83\x41\xE0\xB1"
                            "1\x83",
                            what),
                  "\x83\x41\xE0\xB1\x82\x50\x83");
    }
}

TEST(ToFullWidthEUC, ConvertsSingleBytesByRule)
{
    EXPECT_EQ(FullWidthEUC(" "), "\xA1\xA1");
    EXPECT_EQ(FullWidthEUC("$"), "\xA1\xE7"); // a pair of its own
    EXPECT_EQ(FullWidthEUC("!#%09AZaz~"),
              "\xA3\xA1\xA3\xA3\xA3\xA5\xA3\xB0\xA3\xB9\xA3\xC1\xA3\xDA\xA3\xE1\xA3\xFA\xA3\xFE");
}

TEST(ToFullWidthEUC, DropsControlCharacters)
{
    EXPECT_EQ(FullWidthEUC(std::string_view("\0\t\r\n\x1F\x7F"
                                            "A",
                                            7)),
              "\xA3\xC1");
}

TEST(ToFullWidthEUC, CopiesBytesFrom128OnInPairs)
{
    EXPECT_EQ(FullWidthEUC("\xB0\xA1"
                           "A\x8E\x41"
                           "B\x80"),
              "\xB0\xA1\xA3\xC1\x8E\x41\xA3\xC2\x80");
}

TEST(JapaneseText, OfNothingIsNothing)
{
    EXPECT_EQ(JIS("", true), "");
    EXPECT_EQ(FullWidth("", HalfWidth::ASCIIAndKatakana), "");
    EXPECT_EQ(FullWidthEUC(""), "");
}

} // namespace
