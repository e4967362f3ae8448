// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The text in UTF-8; halves of surrogate pairs become replacement characters.
std::string ToUtf8(std::wstring_view text);

/// Nothing if the bytes are not a text in UTF-8.
std::optional<std::wstring> FromUtf8(std::string_view bytes);
