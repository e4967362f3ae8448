// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/arrays/OTypedArray.h"

/// Conversions of Japanese text between its encodings, on bytes.
///
/// Results replace the content of an array, which must not be the source. A lead byte is what the platform calls one
/// in code page 932.

/// Two bytes that make one character.
struct DoubleByte {
    BYTE first;
    BYTE second;

    bool operator==(const DoubleByte&) const = default;
};

/// The full-width form, in Shift-JIS, of an ASCII character or a half-width katakana; two zeros for any other byte.
///
/// JIS X 0208 has no straight quotes: its closing quotes stand for them. '-' and '~' are its minus sign and wave dash.
DoubleByte FullWidthForm(BYTE character) noexcept;

/// Swaps the bytes of each unit of a zero-terminated text.
void SwapBytes(wchar_t* text) noexcept;

/// Shift-JIS to the 7-bit pairs of JIS. What has no place there becomes the pair 33, 121; so does a lead byte at the
/// very end. Single bytes are copied, or with `fullWidth` converted in their full-width form.
void ShiftJISToJIS(const OTypedArray<unsigned char>& text, OTypedArray<unsigned char>& result, bool fullWidth);

/// What `ToFullWidth` replaces: bytes 32 to 126, or also the katakana 161 to 223.
enum class HalfWidth { ASCII, ASCIIAndKatakana };

/// Replaces the single bytes of a Shift-JIS text by their full-width forms. Pairs and other bytes stay.
void ToFullWidth(const OTypedArray<unsigned char>& text, OTypedArray<unsigned char>& result, HalfWidth what);

/// Replaces the blank and bytes 33 to 126 of an EUC text by pairs. Other bytes below 128 are dropped, bytes from there
/// on copied in pairs.
void ToFullWidthEUC(const OTypedArray<unsigned char>& text, OTypedArray<unsigned char>& result);
