// SPDX-License-Identifier: MIT
#include "foundation/registry/RegistryText.h"

#include "foundation/text/Hex.h"

namespace {

constexpr size_t fullLine = 76; // characters
constexpr std::wstring_view numberPrefix = L"dword:";
constexpr std::wstring_view bytesPrefix = L"hex";

std::wstring HexDigits(DWORD value, int digits)
{
    std::wstring text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += L"0123456789abcdef"[value >> shift & 0xF];
    return text;
}

std::wstring BytesPrefix(DWORD type)
{
    if (type == REG_BINARY) return L"hex:";
    return L"hex(" + std::to_wstring(type) + L"):";
}

void WriteBytes(std::wstring line, const std::vector<BYTE>& bytes, OStringArray& lines)
{
    for (const BYTE byte : bytes) {
        if (line.size() > fullLine) {
            lines.Add((line + L'\\').c_str());
            line = L"  ";
        }
        line += HexDigits(byte, 2) + L',';
    }
    if (!bytes.empty()) line.pop_back();
    lines.Add(line.c_str());
}

std::wstring_view TrimmedQuotes(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(L'"');
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(L'"') - first + 1);
}

std::wstring Replaced(std::wstring_view text, std::wstring_view oldText, std::wstring_view newText)
{
    std::wstring result;
    for (;;) {
        const size_t hit = text.find(oldText);
        result += text.substr(0, hit);
        if (hit == text.npos) return result;
        result += newText;
        text.remove_prefix(hit + oldText.size());
    }
}

/// Deliberate: pairs with a quote go first and quotes are cut off both ends, so a quote at the end of a text is lost.
std::wstring Unquoted(std::wstring_view text)
{
    return Replaced(Replaced(TrimmedQuotes(text), L"\\\"", L"\""), L"\\\\", L"\\");
}

bool StartsWith(std::wstring_view text, std::wstring_view prefix)
{
    const std::wstring head(text.substr(0, prefix.size()));
    return OString::CompareNoCase(head.c_str(), std::wstring(prefix).c_str()) == 0;
}

/// The byte of two digits at the front of `digits`, which may be shorter.
BYTE Pair(std::wstring_view digits)
{
    return Hex::ReadPair(std::wstring(digits.substr(0, 2)).c_str());
}

DWORD Number(std::wstring_view digits)
{
    DWORD number = 0;
    for (size_t place = 0; place < 2 * sizeof number; place += 2) {
        number = number << 8 | (place < digits.size() ? Pair(digits.substr(place)) : 0);
    }
    return number;
}

std::vector<BYTE> Bytes(std::wstring_view list)
{
    std::vector<BYTE> bytes;
    while (!list.empty()) {
        bytes.push_back(Pair(list));
        const size_t comma = list.find(L',');
        list.remove_prefix(comma == list.npos ? list.size() : comma + 1);
    }
    return bytes;
}

bool ReadBytes(std::wstring_view text, RegistryTextValue& value)
{
    const size_t colon = text.find(L':');
    if (colon == text.npos) return false;
    // Deliberate: no other number in parentheses is known.
    value.type = text.substr(bytesPrefix.size()).starts_with(L"(7)") ? REG_MULTI_SZ : REG_BINARY;
    value.bytes = Bytes(text.substr(colon + 1));
    return true;
}

} // namespace

std::wstring QuotedRegistryText(std::wstring_view text)
{
    return Replaced(Replaced(text, L"\\", L"\\\\"), L"\"", L"\\\"");
}

void WriteRegistryTextValue(const RegistryTextValue& value, OStringArray& lines)
{
    const std::wstring start = L'"' + QuotedRegistryText(value.name) + L"\"=";
    switch (value.type) {
    case REG_SZ:
        lines.Add((start + L'"' + QuotedRegistryText(value.text) + L'"').c_str());
        break;
    case REG_DWORD:
        lines.Add((start + std::wstring(numberPrefix) + HexDigits(value.number, 8)).c_str());
        break;
    default:
        WriteBytes(start + BytesPrefix(value.type), value.bytes, lines);
        break;
    }
}

bool ReadRegistryTextValue(std::wstring_view line, RegistryTextValue& value)
{
    const size_t split = line.find(L"\"=");
    if (split == line.npos) return false;
    // Deliberate: what is quoted inside a name stays quoted.
    value.name = TrimmedQuotes(line.substr(0, split));

    const std::wstring_view text = line.substr(split + 2);
    if (text.starts_with(L'"')) {
        value.type = REG_SZ;
        value.text = Unquoted(text);
        return true;
    }
    if (StartsWith(text, numberPrefix)) {
        value.type = REG_DWORD;
        value.number = Number(text.substr(numberPrefix.size()));
        return true;
    }
    return StartsWith(text, bytesPrefix) && ReadBytes(text, value);
}
