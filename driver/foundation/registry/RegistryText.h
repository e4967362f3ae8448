// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "foundation/text/OStringArray.h"

#include <string>
#include <string_view>
#include <vector>

/// A registry value as a line of text tells it; `type` says which of the last three counts.
struct RegistryTextValue {
    std::wstring name;
    DWORD type = REG_BINARY;
    std::wstring text;       ///< of REG_SZ
    DWORD number = 0;        ///< of REG_DWORD
    std::vector<BYTE> bytes; ///< of any other type
};

/// `text` as it stands between double quotes: a backslash before each backslash and double quote.
std::wstring QuotedRegistryText(std::wstring_view text);

/// Appends the line of a value, and those that continue it: bytes begin a new line when one is past 76 characters.
void WriteRegistryTextValue(const RegistryTextValue& value, OStringArray& lines);

/// Reads a line that was joined from those that continue it. Gives REG_SZ, REG_DWORD, REG_MULTI_SZ or REG_BINARY, which
/// stands for all other types too. False if the line has no name or no value. It isn't quite the reverse of writing:
/// the name stays quoted inside, and a double quote at its end or at the end of a text is lost.
bool ReadRegistryTextValue(std::wstring_view line, RegistryTextValue& value);
