// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigFile.h"

#include "spooler/config/ConfigTexts.h"

#include <algorithm>

namespace {

constexpr std::wstring_view blanks = L" \t\r";

std::wstring_view Trimmed(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::wstring LowerCase(std::wstring_view text)
{
    std::wstring lower(text);
    std::ranges::transform(lower, lower.begin(), [](wchar_t character) {
        return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
    });
    return lower;
}

std::wstring Decode(std::string_view text)
{
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (length == 0) throw ConfigError{0, L"the file is not a text in UTF-8"};
    std::wstring wide(static_cast<size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(), length);
    return wide;
}

ConfigSection ParseHeader(std::wstring_view line, size_t number)
{
    if (line.back() != L']') throw ConfigError{number, L"the section's \"]\" is missing"};
    const std::wstring_view inside = Trimmed(line.substr(1, line.size() - 2));
    const size_t blank = inside.find_first_of(blanks);
    ConfigSection section;
    section.line = number;
    section.kind = LowerCase(inside.substr(0, blank));
    if (blank == std::wstring_view::npos) return section;
    const std::wstring_view name = Trimmed(inside.substr(blank));
    const std::optional<std::wstring> text = IsTextForm(name) ? ReadTextForm(name) : std::wstring(name);
    if (!text) throw ConfigError{number, L"the section's name is malformed"};
    section.isNamed = true;
    section.name = *text;
    return section;
}

ConfigEntry ParseEntry(std::wstring_view line, size_t number)
{
    const size_t equals = FindOutsideTexts(line, L'=');
    if (equals == std::wstring_view::npos) throw ConfigError{number, L"neither a section nor \"key = value\""};
    const std::wstring_view key = Trimmed(line.substr(0, equals));
    std::wstring_view value = Trimmed(line.substr(equals + 1));
    const bool isQuoted = value.starts_with(L'"');
    if (isQuoted) {
        if (value.size() < 2 || value.back() != L'"') throw ConfigError{number, L"the closing quote is missing"};
        value = value.substr(1, value.size() - 2);
    }
    return {number, LowerCase(key), std::wstring(value), isQuoted, std::wstring(key)};
}

} // namespace

std::vector<ConfigSection> ParseConfig(std::string_view text)
{
    const std::wstring wide = Decode(text);
    std::vector<ConfigSection> sections;
    std::wstring_view rest = wide;
    for (size_t number = 1; !rest.empty(); ++number) {
        const size_t end = std::min(rest.find(L'\n'), rest.size());
        const std::wstring_view line = Trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));

        if (line.empty() || line.front() == L';' || line.front() == L'#') continue;
        if (line.front() == L'[') {
            sections.push_back(ParseHeader(line, number));
            continue;
        }
        if (sections.empty()) throw ConfigError{number, L"an entry before the first section"};
        sections.back().entries.push_back(ParseEntry(line, number));
    }
    return sections;
}
