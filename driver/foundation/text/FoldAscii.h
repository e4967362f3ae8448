// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/MathUtility.h"

/// 'a' to 'z' as 'A' to 'Z'; any other character, of whatever language, as it is. For comparisons without regard to
/// case, which don't ask the user's locale.
template <typename Char>
constexpr Char FoldAscii(Char character) noexcept
{
    const bool isSmall = MathUtility::IsBetween(character, Char{'a'}, Char{'z'});
    return isSmall ? static_cast<Char>(character - 32) : character;
}
