// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// Readers of what a port monitor answers. They take any bytes, with a terminator or without, and call nothing of the
/// platform. What they give points into the answer.
namespace Qrml {

using Answer = std::span<const unsigned char>;

/// The text that the answer begins with, up to its first NUL.
std::string_view ReadText(Answer answer);

/// The second of two states, up to its NUL; nothing if the answer is too short for one or says that the printer isn't
/// monitored.
std::optional<std::string_view> ReadStateValue(Answer answer);

/// A word of eight hexadecimal digits; what is missing is 0, and no other character is rejected either.
uint32_t ReadFlags(std::string_view value);

/// The decimal number that a text begins with, as `strtol` reads it; 0 without one.
int32_t ReadNumber(std::string_view text);

/// Whether a condition of the port holds.
bool ReadPortCondition(Answer answer);

} // namespace Qrml
