// SPDX-License-Identifier: MIT
#include "foundation/text/JapaneseText.h"

#include <array>

#include "foundation/MathUtility.h"

namespace {

using Bytes = OTypedArray<unsigned char>;

constexpr UINT shiftJIS = 932;
constexpr DoubleByte unknownInJIS{33, 121};

/// Cells in one row of JIS X 0208 for the single bytes from `first` on; a zero ends them.
struct CellRun {
    int first;
    int row;
    std::array<int, 46> cells;
};

// clang-format off
constexpr CellRun cellRuns[] = {
    {' ',  1, {1, 10, 41, 84, 80, 83, 85, 39, 42, 43, 86, 60, 4, 61, 5, 31}},
    {'0',  3, {16, 17, 18, 19, 20, 21, 22, 23, 24, 25}},
    {':',  1, {7, 8, 67, 65, 68, 9, 87}},
    {'A',  3, {33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58}},
    {'[',  1, {46, 32, 47, 16, 18, 14}},
    {'a',  3, {65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90}},
    {'{',  1, {48, 35, 49, 33}},
    {0xA1, 1, {3, 54, 55, 2, 6}},                        // full stop, corner brackets, comma, middle dot
    {0xA6, 5, {82, 1, 3, 5, 7, 9, 67, 69, 71, 35}},      // wo and the small letters
    {0xB0, 1, {28}},                                     // the long sound
    {0xB1, 5, {2, 4, 6, 8, 10, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31, 33, 36, 38, 40, 42, 43, 44, 45, 46,
               47, 50, 53, 56, 59, 62, 63, 64, 65, 66, 68, 70, 72, 73, 74, 75, 76, 77, 79, 83}},
    {0xDE, 1, {11, 12}},                                 // the sound marks
};
// clang-format on

/// The Shift-JIS form of a cell in an odd row; the others aren't needed here. 0x7F is left out of the trail bytes.
constexpr DoubleByte ShiftJISForm(int oddRow, int cell) noexcept
{
    const int trail = 0x3F + cell + (cell > 63 ? 1 : 0);
    return {static_cast<BYTE>(0x81 + oddRow / 2), static_cast<BYTE>(trail)};
}

constexpr auto fullWidthTable = [] {
    std::array<DoubleByte, 256> table{};
    for (const CellRun& run : cellRuns) {
        for (size_t index = 0; run.cells[index] != 0; ++index) {
            table[static_cast<size_t>(run.first) + index] = ShiftJISForm(run.row, run.cells[index]);
        }
    }
    return table;
}();

void Add(Bytes& result, DoubleByte pair)
{
    result.Add(pair.first);
    result.Add(pair.second);
}

DoubleByte JISForm(DoubleByte pair) noexcept
{
    const int lead = pair.first;
    const int trail = pair.second;
    const int row = lead < 160 ? lead - 129 : lead - 193;
    const bool isOddRow = trail < 159;
    const int first = row * 2 + (isOddRow ? 33 : 34);
    const int second = trail - (!isOddRow ? 126 : trail < 127 ? 31 : 32);
    if (!MathUtility::IsBetween(first, 33, 126) || !MathUtility::IsBetween(second, 33, 126)) return unknownInJIS;
    return {static_cast<BYTE>(first), static_cast<BYTE>(second)};
}

bool IsLead(BYTE byte) noexcept
{
    return ::IsDBCSLeadByteEx(shiftJIS, byte) != FALSE;
}

bool IsHalfWidth(BYTE byte, HalfWidth what) noexcept
{
    const int value = byte;
    return MathUtility::IsBetween(value, 32, 126) ||
           (what == HalfWidth::ASCIIAndKatakana && MathUtility::IsBetween(value, 161, 223));
}

void AddEUCForm(Bytes& result, BYTE character)
{
    // Deliberate: '$' has a pair of its own, and the other characters land in row 3, also where that row is empty.
    if (character == ' ') return Add(result, {161, 161});
    if (character == '$') return Add(result, {161, 231});
    if (MathUtility::IsBetween<int>(character, 33, 126)) Add(result, {163, static_cast<BYTE>(character + 128)});
}

/// Copies a pair, or its first byte alone if the text ends after it, and gives the index of its last byte.
int CopyPair(Bytes& result, const Bytes& text, int index)
{
    result.Add(text[index]);
    if (!text.IsValidIndex(index + 1)) return index;
    result.Add(text[index + 1]);
    return index + 1;
}

} // namespace

DoubleByte FullWidthForm(BYTE character) noexcept
{
    return fullWidthTable[character];
}

void SwapBytes(wchar_t* text) noexcept
{
    for (; *text != L'\0'; ++text) *text = static_cast<wchar_t>(MAKEWORD(HIBYTE(*text), LOBYTE(*text)));
}

void ShiftJISToJIS(const Bytes& text, Bytes& result, bool fullWidth)
{
    result.RemoveAll();
    for (int index = 0; index < text.GetSize(); ++index) {
        const BYTE byte = text[index];
        if (IsLead(byte)) {
            ++index;
            Add(result, JISForm({byte, text.IsValidIndex(index) ? text[index] : BYTE{0}}));
        } else if (fullWidth) {
            Add(result, JISForm(FullWidthForm(byte)));
        } else {
            result.Add(byte);
        }
    }
}

void ToFullWidth(const Bytes& text, Bytes& result, HalfWidth what)
{
    result.RemoveAll();
    for (int index = 0; index < text.GetSize(); ++index) {
        const BYTE byte = text[index];
        if (IsLead(byte))
            index = CopyPair(result, text, index);
        else if (IsHalfWidth(byte, what))
            Add(result, FullWidthForm(byte));
        else
            result.Add(byte);
    }
}

void ToFullWidthEUC(const Bytes& text, Bytes& result)
{
    result.RemoveAll();
    for (int index = 0; index < text.GetSize(); ++index) {
        if (text[index] < 128)
            AddEUCForm(result, text[index]);
        else
            index = CopyPair(result, text, index);
    }
}
