// SPDX-License-Identifier: MIT
#include "foundation/threads/TickCount.h"

#include <gtest/gtest.h>

TEST(TickCount, ReadsTheSourceThatWasSet)
{
    const TickCountSource before = SetTickCountSource([] { return DWORD{4711}; });
    EXPECT_EQ(before, nullptr);
    EXPECT_EQ(TickCount(), 4711u);
    SetTickCountSource(nullptr);
}

TEST(TickCount, ReadsThePlatformWithoutASource)
{
    const DWORD before = ::GetTickCount();
    const DWORD ticks = TickCount();
    EXPECT_LE(ticks - before, ::GetTickCount() - before);
}
