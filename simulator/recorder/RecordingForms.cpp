// SPDX-License-Identifier: MIT
#include "recorder/RecordingForms.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>

namespace {

constexpr uint64_t microsecondsOfSecond = 1000000;
constexpr std::wstring_view digits = L"0123456789ABCDEF";

struct Escape {
    wchar_t letter; // after the backslash
    wchar_t character;
};

constexpr std::array escapes{
    Escape{L'"',  L'"' },
    Escape{L'\\', L'\\'},
    Escape{L'n',  L'\n'},
    Escape{L'r',  L'\r'},
    Escape{L't',  L'\t'},
};

bool IsHighSurrogate(wchar_t character) noexcept
{
    return character >= 0xD800 && character < 0xDC00;
}

bool IsLowSurrogate(wchar_t character) noexcept
{
    return character >= 0xDC00 && character < 0xE000;
}

/// A character that can stand in a line of text only by its number.
bool NeedsNumber(std::wstring_view text, size_t index) noexcept
{
    const wchar_t character = text[index];
    if (IsHighSurrogate(character)) return index + 1 == text.size() || !IsLowSurrogate(text[index + 1]);
    if (IsLowSurrogate(character)) return index == 0 || !IsHighSurrogate(text[index - 1]);
    return character < L' ' || character == 0x7F;
}

/// The digit's value in that base; nothing for other characters.
std::optional<DWORD> DigitOf(wchar_t character, DWORD base) noexcept
{
    const wchar_t capital = character >= L'a' && character <= L'f' ? static_cast<wchar_t>(character - 0x20) : character;
    const size_t value = digits.find(capital);
    return value < base ? std::optional(static_cast<DWORD>(value)) : std::nullopt;
}

std::optional<uint64_t> ReadDigits(std::wstring_view text, DWORD base, uint64_t highest) noexcept
{
    if (text.empty()) return std::nullopt;
    uint64_t number = 0;
    for (const wchar_t character : text) {
        const std::optional<DWORD> digit = DigitOf(character, base);
        if (!digit || number > (highest - *digit) / base) return std::nullopt;
        number = number * base + *digit;
    }
    return number;
}

std::optional<WORD> ReadWord(std::wstring_view text) noexcept
{
    const std::optional<uint64_t> number = ReadDigits(text, 10, 0xFFFF);
    return number ? std::optional(static_cast<WORD>(*number)) : std::nullopt;
}

/// The character of the escape that `rest` begins with, without its backslash; takes it off.
std::optional<wchar_t> TakeEscape(std::wstring_view& rest) noexcept
{
    constexpr size_t numberLength = 5; // "u" and four digits
    if (rest.starts_with(L'u')) {
        if (rest.size() < numberLength) return std::nullopt;
        const std::optional<uint64_t> number = ReadDigits(rest.substr(1, numberLength - 1), 16, 0xFFFF);
        rest.remove_prefix(numberLength);
        return number ? std::optional(static_cast<wchar_t>(*number)) : std::nullopt;
    }
    const auto found =
        std::ranges::find_if(escapes, [&](const Escape& escape) { return rest.starts_with(escape.letter); });
    if (found == escapes.end()) return std::nullopt;
    rest.remove_prefix(1);
    return found->character;
}

} // namespace

std::wstring QuotedText(std::wstring_view text)
{
    std::wstring quoted = L"\"";
    for (size_t index = 0; index < text.size(); ++index) {
        const auto escape = std::ranges::find(escapes, text[index], &Escape::character);
        if (escape != escapes.end()) {
            quoted += L'\\';
            quoted += escape->letter;
        } else if (NeedsNumber(text, index)) {
            quoted += L"\\u";
            for (int shift = 12; shift >= 0; shift -= 4) quoted += digits[(text[index] >> shift) & 0xF];
        } else {
            quoted += text[index];
        }
    }
    return quoted + L'"';
}

size_t QuotedLength(std::wstring_view text) noexcept
{
    for (size_t index = 1; index < text.size(); ++index) {
        if (text[index] == L'"') return index + 1;
        if (text[index] == L'\\') ++index;
    }
    return 0;
}

std::optional<std::wstring> ReadQuoted(std::wstring_view quoted)
{
    if (!quoted.starts_with(L'"') || QuotedLength(quoted) != quoted.size()) return std::nullopt;
    std::wstring_view rest = quoted.substr(1, quoted.size() - 2);
    std::wstring text;
    while (!rest.empty()) {
        std::optional<wchar_t> character = rest.front();
        rest.remove_prefix(1);
        if (character == L'\\') character = TakeEscape(rest);
        if (!character) return std::nullopt;
        text += *character;
    }
    return text;
}

std::wstring NumberText(DWORD number)
{
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4) text += digits[(number >> shift) & 0xF];
    return text;
}

std::optional<DWORD> ReadNumber(std::wstring_view text)
{
    const bool hexadecimal = text.starts_with(L"0x") || text.starts_with(L"0X");
    const std::optional<uint64_t> number =
        hexadecimal ? ReadDigits(text.substr(2), 16, 0xFFFFFFFF) : ReadDigits(text, 10, 0xFFFFFFFF);
    return number ? std::optional(static_cast<DWORD>(*number)) : std::nullopt;
}

std::wstring HexText(const std::vector<BYTE>& bytes)
{
    std::wstring text;
    for (const BYTE byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::optional<std::vector<BYTE>> ReadHex(std::wstring_view text)
{
    if (text.size() % 2 != 0) return std::nullopt;
    std::vector<BYTE> bytes;
    for (size_t index = 0; index < text.size(); index += 2) {
        const std::optional<uint64_t> byte = ReadDigits(text.substr(index, 2), 16, 0xFF);
        if (!byte) return std::nullopt;
        bytes.push_back(static_cast<BYTE>(*byte));
    }
    return bytes;
}

std::wstring SecondsText(uint64_t microseconds)
{
    const std::wstring decimals = std::to_wstring(microsecondsOfSecond + microseconds % microsecondsOfSecond).substr(1);
    return std::to_wstring(microseconds / microsecondsOfSecond) + L"." + decimals;
}

std::optional<uint64_t> ReadSeconds(std::wstring_view text)
{
    constexpr size_t mostDecimals = 6;
    const size_t point = text.find(L'.');
    std::wstring decimals = point == std::wstring_view::npos ? L"0" : std::wstring(text.substr(point + 1));
    if (decimals.empty() || decimals.size() > mostDecimals) return std::nullopt;
    decimals.append(mostDecimals - decimals.size(), L'0');

    const std::optional<uint64_t> seconds = ReadDigits(text.substr(0, point), 10, 0xFFFFFFFF);
    const std::optional<uint64_t> fraction = ReadDigits(decimals, 10, microsecondsOfSecond);
    if (!seconds || !fraction) return std::nullopt;
    return *seconds * microsecondsOfSecond + *fraction;
}

std::optional<std::wstring> DateText(const SYSTEMTIME& time)
{
    FILETIME fileTime = {};
    SYSTEMTIME normal = {};
    if (!::SystemTimeToFileTime(&time, &fileTime) || !::FileTimeToSystemTime(&fileTime, &normal)) return std::nullopt;
    if (std::memcmp(&time, &normal, sizeof time) != 0) return std::nullopt;
    wchar_t text[32] = {};
    std::swprintf(text, std::size(text), L"%04u-%02u-%02u %02u:%02u:%02u.%03u", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return text;
}

std::optional<SYSTEMTIME> ReadDate(std::wstring_view text)
{
    struct Part {
        size_t first;
        size_t length;
        WORD SYSTEMTIME::*field;
    };
    constexpr std::array parts{
        Part{0,  4, &SYSTEMTIME::wYear        },
        Part{5,  2, &SYSTEMTIME::wMonth       },
        Part{8,  2, &SYSTEMTIME::wDay         },
        Part{11, 2, &SYSTEMTIME::wHour        },
        Part{14, 2, &SYSTEMTIME::wMinute      },
        Part{17, 2, &SYSTEMTIME::wSecond      },
        Part{20, 3, &SYSTEMTIME::wMilliseconds},
    };
    SYSTEMTIME time = {};
    for (const Part& part : parts) {
        const std::optional<WORD> number =
            part.first < text.size() ? ReadWord(text.substr(part.first, part.length)) : std::nullopt;
        if (!number) return std::nullopt;
        time.*part.field = *number;
    }
    FILETIME fileTime = {};
    if (!::SystemTimeToFileTime(&time, &fileTime)) return std::nullopt;
    ::FileTimeToSystemTime(&fileTime, &time); // gives the day of the week
    return DateText(time) == text ? std::optional(time) : std::nullopt;
}
