// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigTexts.h"

#include "recorder/RecordingForms.h"
#include "recorder/Utf8.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::wstring_view prefix = L"text:";

/// How many characters the form at the start of `text` takes; 0 if there is none.
size_t FormLength(std::wstring_view text) noexcept
{
    if (!IsTextForm(text)) return 0;
    const size_t quoted = QuotedLength(text.substr(prefix.size()));
    return quoted ? prefix.size() + quoted : 0;
}

bool IsControl(wchar_t character) noexcept
{
    return character < L' ' || character == 0x7F;
}

bool IsBlank(wchar_t character) noexcept
{
    return character == L' ' || character == L'\t';
}

/// The text can stand in a line, and is read there as nothing else.
bool IsPlain(std::wstring_view text)
{
    if (text.empty()) return true;
    if (IsBlank(text.front()) || IsBlank(text.back()) || text.front() == L'"') return false;
    if (text.find(prefix) != std::wstring_view::npos) return false;
    return std::ranges::none_of(text, IsControl) && FromUtf8(ToUtf8(text)) == text;
}

} // namespace

bool IsTextForm(std::wstring_view text) noexcept
{
    return text.starts_with(prefix) && text.substr(prefix.size()).starts_with(L'"');
}

std::optional<std::wstring> ReadTextForm(std::wstring_view form)
{
    return IsTextForm(form) ? ReadQuoted(form.substr(prefix.size())) : std::nullopt;
}

size_t FindOutsideTexts(std::wstring_view text, wchar_t character) noexcept
{
    size_t index = 0;
    while (index < text.size() && text[index] != character)
        index += std::max<size_t>(FormLength(text.substr(index)), 1);
    return index < text.size() ? index : std::wstring_view::npos;
}

size_t FindLastOutsideTexts(std::wstring_view text, wchar_t character) noexcept
{
    size_t last = std::wstring_view::npos;
    for (size_t begin = 0;;) {
        const size_t found = FindOutsideTexts(text.substr(begin), character);
        if (found == std::wstring_view::npos) return last;
        last = begin + found;
        begin = last + 1;
    }
}

std::wstring TextForm(std::wstring_view text, std::wstring_view reserved)
{
    const bool isPlain = IsPlain(text) && text.find_first_of(reserved) == std::wstring_view::npos;
    return isPlain ? std::wstring(text) : std::wstring(prefix) + QuotedText(text);
}
