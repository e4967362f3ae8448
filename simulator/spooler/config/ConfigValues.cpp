// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigValues.h"

#include <algorithm>
#include <cwchar>

namespace {

[[noreturn]] void Fail(const ConfigEntry& entry, const wchar_t* wanted)
{
    throw ConfigError{entry.line, L"\"" + entry.key + L"\" wants " + wanted + L", not \"" + entry.value + L"\""};
}

std::optional<DWORD> ParseNumber(std::wstring_view text, int base)
{
    constexpr std::wstring_view digits = L"0123456789abcdefABCDEF";
    const std::wstring_view allowed = digits.substr(0, base == 16 ? digits.size() : 10);
    if (text.empty() || text.find_first_not_of(allowed) != std::wstring_view::npos) return std::nullopt;
    unsigned long long number = 0;
    for (const wchar_t character : text) {
        const wchar_t digit[] = {character, L'\0'};
        number = number * static_cast<unsigned>(base) + std::wcstoul(digit, nullptr, base);
        if (number > 0xFFFFFFFF) return std::nullopt;
    }
    return static_cast<DWORD>(number);
}

std::optional<DWORD> ParseNumber(std::wstring_view text)
{
    const bool hexadecimal = text.starts_with(L"0x") || text.starts_with(L"0X");
    return hexadecimal ? ParseNumber(text.substr(2), 16) : ParseNumber(text, 10);
}

Bytes ParseBytes(const ConfigEntry& entry, std::wstring_view text)
{
    Bytes bytes;
    for (const std::wstring& piece : ConfigPieces(text, L' ')) {
        const std::optional<DWORD> number = ParseNumber(piece, 16);
        if (!number || *number > 0xFF) Fail(entry, L"bytes in hexadecimal");
        bytes.push_back(static_cast<BYTE>(*number));
    }
    return bytes;
}

bool IsAbsolute(std::wstring_view path)
{
    return path.starts_with(L'\\') || path.starts_with(L'/') || (path.size() > 1 && path[1] == L':');
}

} // namespace

std::vector<std::wstring> ConfigPieces(std::wstring_view text, wchar_t separator)
{
    std::vector<std::wstring> pieces;
    while (!text.empty()) {
        const size_t end = std::min(text.find(separator), text.size());
        const std::wstring_view piece = text.substr(0, end);
        const size_t first = piece.find_first_not_of(L" \t");
        if (first != std::wstring_view::npos)
            pieces.emplace_back(piece, first, piece.find_last_not_of(L" \t") - first + 1);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return pieces;
}

DWORD ConfigNumber(const ConfigEntry& entry)
{
    const std::optional<DWORD> number = ParseNumber(entry.value);
    if (!number) Fail(entry, L"a number");
    return *number;
}

bool ConfigTruth(const ConfigEntry& entry)
{
    if (SameName(entry.value, L"yes")) return true;
    if (!SameName(entry.value, L"no")) Fail(entry, L"yes or no");
    return false;
}

DWORD ConfigMinutes(const ConfigEntry& entry)
{
    const size_t colon = entry.value.find(L':');
    if (colon == std::wstring::npos) return ConfigNumber(entry);
    const std::optional<DWORD> hours = ParseNumber(std::wstring_view(entry.value).substr(0, colon), 10);
    const std::optional<DWORD> minutes = ParseNumber(std::wstring_view(entry.value).substr(colon + 1), 10);
    if (!hours || !minutes || *hours > 23 || *minutes > 59) Fail(entry, L"a time of day");
    return *hours * 60 + *minutes;
}

DWORD ConfigBits(const ConfigEntry& entry, std::span<const ConfigWord> words)
{
    if (const std::optional<DWORD> number = ParseNumber(entry.value)) return *number;
    DWORD bits = 0;
    for (const std::wstring& piece : ConfigPieces(entry.value, L',')) {
        const auto word = std::ranges::find_if(words, [&](const auto& row) { return SameName(row.word, piece); });
        if (word == words.end())
            throw ConfigError{entry.line, L"unknown word \"" + piece + L"\" for \"" + entry.key + L"\""};
        bits |= word->bits;
    }
    return bits;
}

std::wstring ConfigList(const ConfigEntry& entry)
{
    std::wstring list;
    for (const std::wstring& piece : ConfigPieces(entry.value, L';')) list.append(piece).push_back(L'\0');
    return list;
}

PrinterData::Value ConfigData(const ConfigEntry& entry)
{
    const std::wstring_view value = entry.value;
    if (value.starts_with(L"hex:")) return {REG_BINARY, ParseBytes(entry, value.substr(4))};
    if (!value.starts_with(L"dword:")) return TextValue(value);
    const std::optional<DWORD> number = ParseNumber(value.substr(6));
    if (!number) Fail(entry, L"a number behind \"dword:\"");
    return NumberValue(*number);
}

std::wstring ConfigPath(const ConfigEntry& entry, const std::wstring& folder)
{
    if (entry.value.empty()) Fail(entry, L"a path");
    return IsAbsolute(entry.value) || folder.empty() ? entry.value : folder + L"\\" + entry.value;
}
