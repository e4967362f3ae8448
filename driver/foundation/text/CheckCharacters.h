// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// Check characters of barcode symbologies for the text before them. A character that the symbology doesn't know counts
/// as 0.

/// The digit of EAN and UPC: weight 3 on the last digit and every second one before it.
char CheckDigitMod10(const OString& digits);

/// The digit of the Luhn formula: the last digit and every second one before it doubled, less 9 if that has two digits.
char CheckDigitLuhn(const OString& digits);

/// The character of Code 39, out of "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%".
char CheckCharMod43(const OString& text);
