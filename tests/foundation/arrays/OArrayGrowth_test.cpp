// SPDX-License-Identifier: MIT
#include "foundation/arrays/OArrayGrowth.h"

#include <gtest/gtest.h>

#include <climits>

TEST(OArrayGrowth, StepIsAnEighthOfTheSizeWithinFloorAndCeilingUnlessFixed)
{
    static constexpr struct {
        int size, growBy, step;
    } rows[] = {
        {0,       0,    4   },
        {1,       0,    4   },
        {39,      0,    4   },
        {40,      0,    5   },
        {47,      0,    5   },
        {48,      0,    6   },
        {800,     0,    100 },
        {8191,    0,    1023},
        {8192,    0,    1024},
        {9000,    0,    1024},
        {1 << 30, 0,    1024},
        {9000,    3,    3   },
        {0,       1,    1   },
        {9000,    5000, 5000},
    };
    for (const auto& row : rows) EXPECT_EQ(OArrayGrowth::Step(row.size, row.growBy), row.step) << row.size;
}

TEST(OArrayGrowth, NewMaximumIsTheGreaterOfNewSizeAndOldRoomPlusStep)
{
    static constexpr struct {
        int newSize, size, maxSize, growBy, newMaximum;
    } rows[] = {
        {2,   1,   1,   0,  5  },
        {100, 1,   1,   0,  100},
        {101, 100, 100, 0,  112},
        {112, 100, 100, 0,  112},
        {113, 100, 100, 0,  113},
        {5,   4,   4,   3,  7  },
        {5,   4,   4,   -2, 5  },
        {1,   0,   0,   0,  4  },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OArrayGrowth::NewMaximum(row.newSize, row.size, row.maxSize, row.growBy), row.newMaximum)
            << row.newSize << " from " << row.maxSize;
    }
}

TEST(OArrayGrowth, RoomThatWouldLeaveThirtyTwoBitsGivesWayToTheNewSize)
{
    EXPECT_EQ(OArrayGrowth::NewMaximum(2, 1, 1, INT_MAX), 2);
}

TEST(OArrayGrowth, SumThatLeavesThirtyTwoBitsIsNegative)
{
    EXPECT_EQ(OArrayGrowth::Sum(40, 2), 42);
    EXPECT_EQ(OArrayGrowth::Sum(INT_MAX, 1), INT_MIN);
}
