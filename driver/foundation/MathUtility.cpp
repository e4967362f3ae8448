// SPDX-License-Identifier: MIT
#include "foundation/MathUtility.h"

#include <cmath>

#include "foundation/Assert.h"

namespace {

constexpr DWORD High(DWORD value) noexcept
{
    return value >> 16;
}

constexpr DWORD Low(DWORD value) noexcept
{
    return value & 0xFFFF;
}

} // namespace

int MathUtility::MulDivS(int a, int b, int divisor)
{
    ASSERT(divisor != 0);
    return ::MulDiv(a, b, divisor);
}

DWORD MathUtility::MulDivU(DWORD a, DWORD b, DWORD divisor)
{
    ASSERT(divisor != 0);
    if (a == divisor) return b;
    if (b == divisor) return a;

    const DWORD highProduct = High(a) * High(b);
    const DWORD lowProduct = Low(a) * Low(b);
    const DWORD firstCross = High(a) * Low(b);
    const DWORD secondCross = Low(a) * High(b);
    const DWORD cross = firstCross + secondCross;

    // Deliberate: neither the carry of the rounding term nor the weight 2^32 of the high word is taken exactly. The
    // places in OHashMap follow from these results.
    const DWORD lowWord = lowProduct + (cross << 16) + (divisor >> 1);
    const DWORD highWord = highProduct + High(cross) + High(High(lowProduct) + Low(firstCross) + Low(secondCross));
    return highWord % divisor * (0xFFFFFFFF / divisor) + lowWord / divisor;
}

float MathUtility::Hypot(float a, float b) noexcept
{
    return std::sqrt(a * a + b * b);
}

int MathUtility::Hypot(int a, int b) noexcept
{
    if (a == 0) return b;
    if (b == 0) return a;
    const double length = std::sqrt(static_cast<double>(a) * a + static_cast<double>(b) * b);
    return static_cast<int>(std::llround(length));
}
