// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// A text file in UTF-8, with or without a byte order mark. Nothing if it can't be read.
std::optional<std::wstring> ReadTextFile(const wchar_t* path);

/// Replaces the file. False if it can't be written.
bool WriteTextFile(const wchar_t* path, const std::wstring& text);
