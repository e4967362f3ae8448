// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigValues.h"

#include "spooler/config/ConfigTexts.h"

#include <algorithm>
#include <cwchar>

namespace {

[[noreturn]] void Fail(const ConfigEntry& entry, const wchar_t* wanted)
{
    throw ConfigError{entry.line, L"\"" + entry.key + L"\" wants " + wanted + L", not \"" + entry.value + L"\""};
}

std::optional<DWORDLONG> ParseNumber(std::wstring_view text, int base, DWORDLONG highest)
{
    constexpr std::wstring_view digits = L"0123456789abcdefABCDEF";
    const std::wstring_view allowed = digits.substr(0, base == 16 ? digits.size() : 10);
    if (text.empty() || text.find_first_not_of(allowed) != std::wstring_view::npos) return std::nullopt;
    DWORDLONG number = 0;
    for (const wchar_t character : text) {
        const wchar_t written[] = {character, L'\0'};
        const DWORDLONG digit = std::wcstoul(written, nullptr, base);
        if (number > (highest - digit) / static_cast<unsigned>(base)) return std::nullopt;
        number = number * static_cast<unsigned>(base) + digit;
    }
    return number;
}

std::optional<DWORDLONG> ParseNumber(std::wstring_view text, DWORDLONG highest)
{
    const bool hexadecimal = text.starts_with(L"0x") || text.starts_with(L"0X");
    return hexadecimal ? ParseNumber(text.substr(2), 16, highest) : ParseNumber(text, 10, highest);
}

std::optional<DWORD> ParseNumber(std::wstring_view text)
{
    const std::optional<DWORDLONG> number = ParseNumber(text, 0xFFFFFFFF);
    return number ? std::optional(static_cast<DWORD>(*number)) : std::nullopt;
}

/// Data of any type: "hex(7):00 00", or "hex:01 ff" for bytes. Nothing if the value has neither form.
std::optional<PrinterData::Value> ParseTypedBytes(const ConfigEntry& entry)
{
    const std::wstring_view value = entry.value;
    if (value.starts_with(L"hex:")) return PrinterData::Value{REG_BINARY, ConfigBytes(entry, value.substr(4))};
    constexpr std::wstring_view typed = L"hex(";
    const size_t end = value.find(L"):");
    if (!value.starts_with(typed) || end == std::wstring_view::npos) return std::nullopt;
    const std::optional<DWORD> type = ParseNumber(value.substr(typed.size(), end - typed.size()));
    if (!type) Fail(entry, L"the number of a type in \"hex(...)\"");
    return PrinterData::Value{*type, ConfigBytes(entry, value.substr(end + 2))};
}

bool IsAbsolute(std::wstring_view path)
{
    return path.starts_with(L'\\') || path.starts_with(L'/') || (path.size() > 1 && path[1] == L':');
}

} // namespace

OptionalText ConfigText(const ConfigEntry& entry)
{
    if (!entry.isQuoted && entry.value == nullForm) return std::nullopt;
    if (entry.isQuoted || !IsTextForm(entry.value)) return entry.value;
    OptionalText text = ReadTextForm(entry.value);
    if (!text) Fail(entry, L"one text in quotes after \"text:\"");
    return text;
}

std::wstring ConfigPresentText(const ConfigEntry& entry)
{
    const OptionalText text = ConfigText(entry);
    if (!text) Fail(entry, L"a text");
    return *text;
}

ConfigEntry ElementOf(const ConfigEntry& entry, std::wstring_view text)
{
    return {entry.line, entry.key, std::wstring(text), false, entry.writtenKey};
}

Bytes ConfigBytes(const ConfigEntry& entry, std::wstring_view text)
{
    Bytes bytes;
    for (const std::wstring& piece : ConfigPieces(text, L' ')) {
        const std::optional<DWORDLONG> number = ParseNumber(piece, 16, 0xFF);
        if (!number) Fail(entry, L"bytes in hexadecimal");
        bytes.push_back(static_cast<BYTE>(*number));
    }
    return bytes;
}

std::vector<std::wstring> ConfigPieces(std::wstring_view text, wchar_t separator)
{
    std::vector<std::wstring> pieces;
    while (!text.empty()) {
        const size_t end = std::min(FindOutsideTexts(text, separator), text.size());
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

DWORDLONG ConfigLongNumber(const ConfigEntry& entry)
{
    const std::optional<DWORDLONG> number = ParseNumber(entry.value, 0xFFFFFFFFFFFFFFFF);
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
    const std::wstring_view value = entry.value;
    const std::optional<DWORDLONG> hours = ParseNumber(value.substr(0, colon), 10, 23);
    const std::optional<DWORDLONG> minutes = ParseNumber(value.substr(colon + 1), 10, 59);
    if (!hours || !minutes) Fail(entry, L"a time of day");
    return static_cast<DWORD>(*hours * 60 + *minutes);
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
    for (const std::wstring& piece : ConfigPieces(entry.value, L';'))
        list.append(ConfigPresentText(ElementOf(entry, piece))).push_back(L'\0');
    return list;
}

PrinterData::Value ConfigData(const ConfigEntry& entry)
{
    if (entry.isQuoted) return TextValue(entry.value);
    if (const auto bytes = ParseTypedBytes(entry)) return *bytes;
    constexpr std::wstring_view prefix = L"dword:";
    if (!entry.value.starts_with(prefix)) return TextValue(ConfigPresentText(entry));
    const std::optional<DWORD> number = ParseNumber(std::wstring_view(entry.value).substr(prefix.size()));
    if (!number) Fail(entry, L"a number after \"dword:\"");
    return NumberValue(*number);
}

std::wstring ConfigPath(const ConfigEntry& entry, const std::wstring& folder)
{
    const std::wstring path = ConfigPresentText(entry);
    if (path.empty()) Fail(entry, L"a path");
    return IsAbsolute(path) || folder.empty() ? path : folder + L"\\" + path;
}
