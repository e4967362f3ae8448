// SPDX-License-Identifier: MIT
#include "foundation/MathUtility.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "support/AssertCatcher.h"
#include "support/RandomSeed.h"

namespace {

using namespace MathUtility;

TEST(MulDivU, GivesTheRoundedQuotientWhileTheProductIsBelow32Bits)
{
    static constexpr struct {
        DWORD a, b, divisor, result;
    } rows[] = {
        {10,    10,    3,          33        }, // 33.3
        {10,    2,     8,          3         }, // 2.5 goes up
        {5,     1,     2,          3         }, // 2.5 goes up
        {1,     1,     3,          0         }, // 0.3
        {2,     1,     3,          1         }, // 0.7
        {1000,  1000,  7,          142857    }, // 142857.1
        {65535, 65535, 65536,      65534     }, // the largest square of 16 bits
        {65536, 65535, 3,          1431633920}, // one high half
        {65535, 65536, 3,          1431633920}, // the other
        {300,   1,     4294967295, 0         },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MulDivU(row.a, row.b, row.divisor), row.result) << row.a << " * " << row.b << " / " << row.divisor;
    }
}

TEST(MulDivU, IsAnApproximationAbove32Bits)
{
    // Worked out by hand: low word, high word, and what they give.
    static constexpr struct {
        DWORD a, b, divisor, result;
    } rows[] = {
        {70000,      70000,      100000,     48999     }, // 605082704, 1: 42949 + 6050; exact 49000
        {100000,     100000,     3,          470021803 }, // 1410065409, 3: 0 + 470021803; exact 3333333333
        {100000,     100000,     7,          2042138183}, // 1410065411, 3: 3 * 613566756 + 201437915; exact 1428571429
        {0xFFFFFFFF, 0xFFFFFFFE, 1,          2         }, // 2, 0xFFFEFFFD: all but the low word is lost
        {0x80000000, 4,          0xFFFFFFFF, 2         }, // 0x7FFFFFFF, 2: 2 * 1 + 0
        {0x80000000, 3,          0xFFFFFFFF, 2         }, // 0xFFFFFFFF, 1: 1 * 1 + 1
        {0x80000000, 1,          0xFFFFFFFF, 1         }, // 0xFFFFFFFF, 0: 0 + 1
        {0x7FFFFFFF, 1,          0xFFFFFFFF, 0         }, // 0xFFFFFFFE, 0: 0 + 0
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MulDivU(row.a, row.b, row.divisor), row.result) << row.a << " * " << row.b << " / " << row.divisor;
    }
}

TEST(MulDivU, DropsTheCarryOfTheRoundingTerm)
{
    EXPECT_EQ(MulDivU(0xFFFFFFFF, 1, 2), 0u); // the low word becomes 0 and no high word takes the carry
    EXPECT_EQ(MulDivU(0xFFFFFFFE, 1, 2), 0x7FFFFFFFu);
}

TEST(MulDivU, OfZeroIsZero)
{
    static constexpr DWORD factors[] = {0, 1, 6, 7, 8, 65536, 0x80000000, 0xFFFFFFFF};
    for (const DWORD factor : factors) EXPECT_EQ(MulDivU(0, factor, 7), 0u) << factor;
}

TEST(MulDivU, GivesTheOtherFactorWithoutArithmeticIfOneIsTheDivisor)
{
    static constexpr struct {
        DWORD a, b, divisor, result;
    } rows[] = {
        {7,          0xFFFFFFFF, 7,          0xFFFFFFFF},
        {0xFFFFFFFF, 7,          7,          0xFFFFFFFF},
        {0xFFFFFFFF, 12345,      0xFFFFFFFF, 12345     },
        {100000,     70001,      100000,     70001     },
        {9,          9,          9,          9         },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MulDivU(row.a, row.b, row.divisor), row.result) << row.a << " * " << row.b << " / " << row.divisor;
    }
}

TEST(MulDivU, AgreesWith64BitsForAnyProductBelow32Bits)
{
    std::mt19937_64 engine(RandomSeed());
    std::uniform_int_distribution<DWORD> anyFactor(1, 0xFFFFFFFF);
    for (int run = 0; run < 100'000; ++run) {
        const DWORD a = anyFactor(engine) >> (run % 32);
        const DWORD b = std::uniform_int_distribution<DWORD>(0, 0x7FFFFFFF / (a | 1))(engine);
        const DWORD divisor = anyFactor(engine) >> (run / 32 % 31) | 1;
        const std::uint64_t exact = (std::uint64_t{a} * b + divisor / 2) / divisor;
        ASSERT_EQ(MulDivU(a, b, divisor), exact) << a << " * " << b << " / " << divisor;
    }
}

TEST(MulDivU, ADivisorOfZeroBreaksAnAssertion)
{
    EXPECT_EQ(BrokenAssert([] { MulDivU(0, 1, 0); }), "MathUtility::MulDivU ASSERT(divisor != 0)");
}

TEST(MulDivS, RoundsA64BitProduct)
{
    static constexpr struct {
        int a, b, divisor, result;
    } rows[] = {
        {7,          3,     2,      11   },
        {-7,         3,     2,      -11  },
        {7,          -3,    2,      -11  },
        {7,          3,     -2,     -11  },
        {10,         10,    3,      33   },
        {70000,      70000, 100000, 49000},
        {0x7FFFFFFF, 2,     1,      -1   }, // doesn't fit
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MulDivS(row.a, row.b, row.divisor), row.result) << row.a << " * " << row.b << " / " << row.divisor;
    }
}

TEST(MulDivS, ADivisorOfZeroBreaksAnAssertion)
{
    EXPECT_EQ(BrokenAssert([] { MulDivS(1, 1, 0); }), "MathUtility::MulDivS ASSERT(divisor != 0)");
}

TEST(Clamp, KeepsAValueBetweenItsBounds)
{
    static constexpr struct {
        int value, low, high, result;
    } rows[] = {
        {5,  1,  9,  5 },
        {1,  1,  9,  1 },
        {9,  1,  9,  9 },
        {0,  1,  9,  1 },
        {10, 1,  9,  9 },
        {-5, -3, -1, -3},
        {7,  -3, -1, -1},
        {5,  9,  1,  9 }, // crossed bounds: the low one is looked at first
    };
    for (const auto& row : rows) EXPECT_EQ(Clamp(row.value, row.low, row.high), row.result) << row.value;
}

TEST(Clamp, ComparesUnsignedValuesWithoutASign)
{
    EXPECT_EQ(Clamp(0xFFFFFFFFu, 1u, 9u), 9u);
    EXPECT_EQ(Clamp(0x80000000u, 1u, 0xFFFFFFFFu), 0x80000000u);
    EXPECT_EQ(Clamp(0u, 1u, 0x80000000u), 1u);
}

TEST(Hypot, OfFloatsIsTheRootOfTheSumOfSquares)
{
    EXPECT_FLOAT_EQ(Hypot(3.0f, 4.0f), 5.0f);
    EXPECT_FLOAT_EQ(Hypot(-0.5f, 1.2f), 1.3f);
    EXPECT_FLOAT_EQ(Hypot(0.0f, -2.0f), 2.0f);
}

TEST(Hypot, OfIntegersIsRounded)
{
    static constexpr struct {
        int a, b, result;
    } rows[] = {
        {3,     4,     5    },
        {-3,    4,     5    },
        {1,     1,     1    },
        {2,     2,     3    },
        {1,     2,     2    },
        {30000, 40000, 50000},
        {65536, 65536, 92682},
        {0,     7,     7    },
        {7,     0,     7    },
        {0,     0,     0    },
        {0,     -7,    -7   },
        {-7,    0,     -7   }, // the other side as it is
    };
    for (const auto& row : rows) EXPECT_EQ(Hypot(row.a, row.b), row.result) << row.a << ", " << row.b;
}

} // namespace
