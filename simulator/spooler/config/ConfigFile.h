// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// What is wrong with a configuration file, and in which line; line 0 means the file as a whole.
struct ConfigError {
    size_t line = 0;
    std::wstring message;
};

/// "key = value" of a section.
struct ConfigEntry {
    size_t line = 0;
    std::wstring key;      // lower case, inner blanks as they are
    std::wstring value;    // without the blanks and quotes around it
    bool isQuoted = false; // the value stood in quotes, so it is a text
    std::wstring writtenKey;
};

/// "[kind name]" and what follows it.
struct ConfigSection {
    size_t line = 0;
    std::wstring kind;    // lower case
    bool isNamed = false; // something follows the kind
    std::wstring name;
    std::vector<ConfigEntry> entries;
};

/// Reads the sections of a text in UTF-8, with or without a byte order mark, with either kind of line end. Lines that
/// begin with ';' or '#' are comments. Throws ConfigError.
std::vector<ConfigSection> ParseConfig(std::string_view text);
