// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigForms.h"

#include "spooler/TimeUnits.h"
#include "spooler/config/ConfigTexts.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::wstring_view digits = L"0123456789ABCDEF";

void AppendWith(std::wstring& text, std::wstring_view separator, std::wstring_view piece)
{
    if (!text.empty()) text += separator;
    text += piece;
}

/// The text of a stored text, if it is stored as such texts are: once, up to its one terminator.
OptionalText StoredText(const PrinterData::Value& value)
{
    if (value.type != REG_SZ || value.bytes.empty() || value.bytes.size() % sizeof(wchar_t) != 0) return std::nullopt;
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.bytes.data(), value.bytes.size());
    if (text.find(L'\0') != text.size() - 1) return std::nullopt;
    text.pop_back();
    return text;
}

/// Read as it is, the text would be data of another kind.
bool LooksLikeOtherData(std::wstring_view text)
{
    return text.starts_with(L"dword:") || text.starts_with(L"hex:") || text.starts_with(L"hex(");
}

} // namespace

std::wstring DecimalForm(DWORD number)
{
    return std::to_wstring(number);
}

std::wstring LongNumberForm(DWORDLONG number)
{
    std::wstring text;
    for (; number > 0 || text.empty(); number >>= 4) text.insert(text.begin(), digits[number & 0xF]);
    return L"0x" + text;
}

std::wstring MinutesForm(DWORD minutes)
{
    constexpr DWORD ofHour = 60;
    if (minutes >= minutesOfDay) return DecimalForm(minutes);
    const DWORD ofThisHour = minutes % ofHour;
    return DecimalForm(minutes / ofHour) + (ofThisHour < 10 ? L":0" : L":") + DecimalForm(ofThisHour);
}

std::wstring BitsForm(DWORD bits, std::span<const ConfigWord> words)
{
    const auto whole = std::ranges::find(words, bits, &ConfigWord::bits);
    if (whole != words.end()) return std::wstring(whole->word);
    std::wstring text;
    DWORD told = 0;
    for (const ConfigWord& word : words) {
        if (word.bits == 0 || (word.bits & ~bits) != 0 || (word.bits & ~told) == 0) continue;
        AppendWith(text, L", ", word.word);
        told |= word.bits;
    }
    return told == bits && bits != 0 ? text : LongNumberForm(bits);
}

std::wstring TruthForm(bool truth)
{
    return truth ? L"yes" : L"no";
}

std::wstring BytesForm(const Bytes& bytes)
{
    std::wstring text;
    text.reserve(bytes.size() * 3);
    for (const BYTE byte : bytes) {
        if (!text.empty()) text += L' ';
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::wstring OptionalForm(const OptionalText& text)
{
    return text ? TextForm(*text) : std::wstring(nullForm);
}

std::wstring ListForm(std::wstring_view list)
{
    std::wstring text;
    while (!list.empty()) {
        const size_t end = std::min(list.find(L'\0'), list.size());
        AppendWith(text, L"; ", TextForm(list.substr(0, end), L";"));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return text;
}

std::wstring DataForm(const PrinterData::Value& value)
{
    if (const OptionalText text = StoredText(value)) {
        const std::wstring form = TextForm(*text);
        return form == *text && LooksLikeOtherData(*text) ? L"\"" + *text + L"\"" : form;
    }
    if (value.type == REG_DWORD && value.bytes.size() == sizeof(DWORD)) {
        DWORD number = 0;
        std::memcpy(&number, value.bytes.data(), sizeof number);
        return L"dword:" + DecimalForm(number);
    }
    const std::wstring kind = value.type == REG_BINARY ? L"hex:" : L"hex(" + DecimalForm(value.type) + L"):";
    return kind + BytesForm(value.bytes);
}
