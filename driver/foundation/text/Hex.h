// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Bytes as pairs of hexadecimal digits and back. Texts are char or wchar_t, and no terminator is written.
///
/// Reading is lenient and can't fail: '0' to '9' have their value, any other character counts as its low four bits plus
/// nine, so that 'A' and 'a' are both 10 and 'z' is 19. A pair keeps the low eight bits of what its characters give.
namespace Hex {

/// Writes two upper-case digits for each of `count` bytes.
template <typename Char>
void Encode(const void* in, Char* out, int count);

/// Reads `count` bytes from twice as many characters.
template <typename Char>
void Decode(const Char* in, void* out, int count);

/// Write four or eight digits, the high byte first.
template <typename Char>
void EncodeWord(WORD value, Char* out);
template <typename Char>
void EncodeDWord(DWORD value, Char* out);

/// Read four or eight characters, the high byte first.
template <typename Char>
WORD DecodeWord(const Char* in);
template <typename Char>
DWORD DecodeDWord(const Char* in);

/// One byte from the first two characters of a zero-terminated text; 0 if the text ends before that.
template <typename Char>
BYTE ReadPair(const Char* text) noexcept;

/// '0' to '9', 'A' to 'F' and 'a' to 'f'.
template <typename Char>
bool IsHexDigit(Char character) noexcept;

/// Whether the first two characters of a zero-terminated text are digits.
template <typename Char>
bool IsHexPair(const Char* text) noexcept;

} // namespace Hex
