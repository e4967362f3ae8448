// SPDX-License-Identifier: MIT
#include "vrl/frame/Module.h"

#include <gtest/gtest.h>

namespace {

TEST(Module, IsIdleAtFirst)
{
    EXPECT_TRUE(Module::IsIdle());
}

TEST(Module, EachObjectKeepsItBusy)
{
    Module::AddObject();
    Module::AddObject();
    Module::RemoveObject();
    EXPECT_FALSE(Module::IsIdle());
    Module::RemoveObject();
    EXPECT_TRUE(Module::IsIdle());
}

TEST(Module, EachLockKeepsItBusy)
{
    Module::AddLock();
    EXPECT_FALSE(Module::IsIdle());
    Module::RemoveLock();
    EXPECT_TRUE(Module::IsIdle());
}

TEST(Module, ALockDoesNotStandForAnObject)
{
    Module::AddObject();
    Module::RemoveLock();
    EXPECT_FALSE(Module::IsIdle());
    Module::RemoveObject();
    Module::AddLock();
    EXPECT_TRUE(Module::IsIdle());
}

} // namespace
