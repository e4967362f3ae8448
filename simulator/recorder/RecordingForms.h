// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How the values of a recording are written, and how they are read back. A function that reads gives nothing for a
/// text of another form.

/// In quotes, with escapes for quotes, backslashes, control characters and halves of surrogate pairs.
std::wstring QuotedText(std::wstring_view text);
/// How many characters a quoted text at the start of `text` takes; 0 if its closing quote is missing.
size_t QuotedLength(std::wstring_view text) noexcept;
std::optional<std::wstring> ReadQuoted(std::wstring_view quoted);

/// "0x00000010". Decimal numbers are read as well.
std::wstring NumberText(DWORD number);
std::optional<DWORD> ReadNumber(std::wstring_view text);

/// Two hexadecimal digits for each byte.
std::wstring HexText(const std::vector<BYTE>& bytes);
std::optional<std::vector<BYTE>> ReadHex(std::wstring_view text);

/// "12.000345": seconds, of microseconds. Fewer than six decimals, or none, are read as well.
std::wstring SecondsText(uint64_t microseconds);
std::optional<uint64_t> ReadSeconds(std::wstring_view text);

/// "2024-03-01 12:30:59.001"; nothing for what is no date, or one with the wrong day of the week.
std::optional<std::wstring> DateText(const SYSTEMTIME& time);
std::optional<SYSTEMTIME> ReadDate(std::wstring_view text);
