// SPDX-License-Identifier: MIT
#include "vrl/spooler/DevModeCopy.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

struct PrivateDevMode {
    DEVMODEW common{};
    BYTE privateBytes[6]{'v', 'r', 'l', 0, 1, 2};
};

PrivateDevMode MakeDevMode()
{
    PrivateDevMode devMode;
    devMode.common.dmSize = sizeof(DEVMODEW);
    devMode.common.dmDriverExtra = sizeof devMode.privateBytes;
    devMode.common.dmCopies = 3;
    return devMode;
}

} // namespace

TEST(DevModeCopy, NullGivesNone)
{
    const DevModeCopy copy(nullptr);
    EXPECT_FALSE(copy);
    EXPECT_EQ(copy.Get(), nullptr);
    EXPECT_EQ(copy.Size(), 0u);
}

TEST(DevModeCopy, HoldsTheDriversPrivateBytesToo)
{
    const PrivateDevMode devMode = MakeDevMode();
    const DevModeCopy copy(&devMode.common);
    ASSERT_EQ(copy.Size(), sizeof(DEVMODEW) + 6);
    EXPECT_NE(copy.Get(), &devMode.common);
    EXPECT_EQ(std::memcmp(copy.Get(), &devMode, copy.Size()), 0);
}

TEST(DevModeCopy, HoldsNoMoreThanTheSizesTell)
{
    PrivateDevMode devMode = MakeDevMode();
    devMode.common.dmSize = 76;
    devMode.common.dmDriverExtra = 4;
    EXPECT_EQ(DevModeCopy(&devMode.common).Size(), 80u);
}

TEST(DevModeCopy, CopiesAreDeep)
{
    const PrivateDevMode devMode = MakeDevMode();
    const DevModeCopy first(&devMode.common);
    DevModeCopy second(first);
    EXPECT_NE(second.Get(), first.Get());
    EXPECT_EQ(second.Get()->dmCopies, 3);
    second = DevModeCopy();
    EXPECT_EQ(first.Get()->dmCopies, 3);
    EXPECT_EQ(second.Get(), nullptr);
}
