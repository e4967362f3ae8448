// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <concepts>

/// Arithmetic on 32-bit numbers.
namespace MathUtility {

/// a * b / divisor, rounded to the nearest, with a product of 64 bits; -1 if the result doesn't fit.
int MulDivS(int a, int b, int divisor);

/// a * b / divisor, rounded to the nearest, as long as the product stays below 2^32. Above that it is an approximation:
/// 70000 * 70000 / 100000 gives 48999. If one factor equals the divisor, the result is the other one.
DWORD MulDivU(DWORD a, DWORD b, DWORD divisor);

/// `value`, limited to the range from `low` to `high`. The low bound is tested first.
template <std::integral T>
constexpr T Clamp(T value, T low, T high) noexcept
{
    if (value < low) return low;
    return value > high ? high : value;
}

/// Whether `value` lies from `low` to `high`, both included.
template <std::integral T>
constexpr bool IsBetween(T value, T low, T high) noexcept
{
    return value >= low && value <= high;
}

/// The hypotenuse of a right-angled triangle.
float Hypot(float a, float b) noexcept;

/// The same, rounded. If one side is 0 the result is the other as it is, so it may be negative. A result beyond 31 bits
/// wraps.
int Hypot(int a, int b) noexcept;

} // namespace MathUtility
