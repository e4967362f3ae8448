// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// Names of charsets, code pages, and the charset numbers of the platform's fonts. Names are compared without regard to
/// case.

/// Whether `name` is one of the names of ASCII.
bool IsASCIIName(const OString& name);

/// The code page for a charset's name as text: a number, or "UTF-8" or "UTF-16". Empty for an unknown name.
OString CharsetToCodePage(const OString& name);

/// The code page for the charset number of a font; 0 for an unknown one.
int CharsetToCodePage(int charset) noexcept;

/// The charset number of a font for a code page, OEM code pages included; -1 for an unknown one.
int CodePageToCharset(int codePage) noexcept;

/// The same for a code page that goes by a name: "JIS" or "Mac-Western".
int CodePageToCharset(const OString& codePageName);

/// Whether a font's charset number is that of a charset with one or two bytes for a character.
bool IsDoubleByteCharset(int charset) noexcept;
