// SPDX-License-Identifier: MIT
#include "spooler/Text.h"

#include <algorithm>
#include <cwchar>

namespace {

int CompareNames(std::wstring_view left, std::wstring_view right) noexcept
{
    return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                  static_cast<int>(right.size()), TRUE);
}

} // namespace

bool SameName(std::wstring_view left, std::wstring_view right) noexcept
{
    return left.size() == right.size() && CompareNames(left, right) == CSTR_EQUAL;
}

bool NameLess::operator()(std::wstring_view left, std::wstring_view right) const noexcept
{
    return CompareNames(left, right) == CSTR_LESS_THAN;
}

OptionalText CopyText(const wchar_t* text)
{
    if (!text) return std::nullopt;
    return std::wstring(text);
}

std::wstring TextOrEmpty(const wchar_t* text)
{
    return text ? text : L"";
}

OptionalText CopyList(const wchar_t* list)
{
    if (!list) return std::nullopt;
    const wchar_t* end = list;
    while (*end) end += std::wcslen(end) + 1;
    return std::wstring(list, end);
}

Bytes CopyBytes(const void* bytes, size_t size)
{
    const auto* first = static_cast<const BYTE*>(bytes);
    return first ? Bytes(first, first + size) : Bytes();
}

Bytes CopyDevMode(const DEVMODEW* devMode)
{
    return devMode ? CopyBytes(devMode, size_t{devMode->dmSize} + devMode->dmDriverExtra) : Bytes();
}

DWORD CopyOut(const Bytes& bytes, void* buffer, DWORD size) noexcept
{
    if (buffer) std::copy_n(bytes.data(), std::min<size_t>(size, bytes.size()), static_cast<BYTE*>(buffer));
    return static_cast<DWORD>(bytes.size());
}
