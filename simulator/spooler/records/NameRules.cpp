// SPDX-License-Identifier: MIT
#include "spooler/records/NameRules.h"

#include <algorithm>
#include <array>

namespace {

constexpr size_t longestShareName = 80;
constexpr size_t longestPrinterName = 220;
constexpr std::wstring_view shareNameExcludes = L"\"\\/[]:|<>+=;,*?";

constexpr std::array<std::wstring_view, 9> datatypes{
    L"RAW",          L"RAW [FF appended]", L"RAW [FF auto]", L"NT EMF 1.003", L"NT EMF 1.006",
    L"NT EMF 1.007", L"NT EMF 1.008",      L"TEXT",          L"XPS_PASS",
};

} // namespace

bool IsPrinterName(std::wstring_view name) noexcept
{
    return !name.empty() && name.size() <= longestPrinterName && name.find_first_of(L"\\,") == std::wstring_view::npos;
}

bool IsShareName(std::wstring_view name) noexcept
{
    return !name.empty() && name.size() <= longestShareName &&
           name.find_first_of(shareNameExcludes) == std::wstring_view::npos &&
           std::ranges::none_of(name, [](wchar_t character) { return character < 0x20; });
}

bool IsDatatype(std::wstring_view name) noexcept
{
    return std::ranges::any_of(datatypes, [name](std::wstring_view known) { return SameName(known, name); });
}
