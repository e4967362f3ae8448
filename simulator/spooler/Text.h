// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A text as it stands in a platform structure: null is something else than empty there.
using OptionalText = std::optional<std::wstring>;
using Bytes = std::vector<BYTE>;

/// Names of printers, ports, drivers, keys and values are the same if they differ in case only.
bool SameName(std::wstring_view left, std::wstring_view right) noexcept;

/// Order of names under which those that are the same are equal.
struct NameLess {
    using is_transparent = void;
    bool operator()(std::wstring_view left, std::wstring_view right) const noexcept;
};

/// Null stays null.
OptionalText CopyText(const wchar_t* text);

/// Null becomes empty.
std::wstring TextOrEmpty(const wchar_t* text);

/// A list of texts that ends with two nulls; the copy has the null of each text, but not the one of the list.
OptionalText CopyList(const wchar_t* list);

/// Null stays empty.
Bytes CopyBytes(const void* bytes, size_t size);

/// The device mode with its driver's private part; null stays empty.
Bytes CopyDevMode(const DEVMODEW* devMode);

/// Fills a field of a control structure: cut to its size, always terminated.
template <size_t size>
void CutText(wchar_t (&field)[size], std::wstring_view text)
{
    const size_t length = text.copy(field, size - 1);
    field[length] = L'\0';
}

/// Copies what fits and gives how much there is.
DWORD CopyOut(const Bytes& bytes, void* buffer, DWORD size) noexcept;
