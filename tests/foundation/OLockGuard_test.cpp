// SPDX-License-Identifier: MIT
#include "foundation/OLockGuard.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Records its calls.
class RecordingSynchronizer : public OSynchronizer {
public:
    void Lock() override { calls += "L"; }
    void Unlock() override { calls += "U"; }

    std::string calls;
};

TEST(OLockGuard, LocksAtOnceAndUnlocksAtTheEnd)
{
    RecordingSynchronizer synchronizer;
    {
        const OLockGuard guard(synchronizer);
        EXPECT_EQ(synchronizer.calls, "L");
    }
    EXPECT_EQ(synchronizer.calls, "LU");
}

TEST(OLockGuard, DeferredGuardLocksNothing)
{
    RecordingSynchronizer synchronizer;
    {
        const OLockGuard guard(synchronizer, true);
    }
    EXPECT_EQ(synchronizer.calls, "");
}

TEST(OLockGuard, DeferredGuardThatLockedUnlocksAtTheEnd)
{
    RecordingSynchronizer synchronizer;
    {
        OLockGuard guard(synchronizer, true);
        guard.Lock();
        EXPECT_EQ(synchronizer.calls, "L");
    }
    EXPECT_EQ(synchronizer.calls, "LU");
}

TEST(OLockGuard, UnlockedByHandDoesNotUnlockAgain)
{
    RecordingSynchronizer synchronizer;
    {
        OLockGuard guard(synchronizer);
        guard.Unlock();
        EXPECT_EQ(synchronizer.calls, "LU");
        guard.Unlock();
    }
    EXPECT_EQ(synchronizer.calls, "LU");
}

TEST(OLockGuard, LockedAgainByHandUnlocksAtTheEnd)
{
    RecordingSynchronizer synchronizer;
    {
        OLockGuard guard(synchronizer);
        guard.Unlock();
        guard.Lock();
    }
    EXPECT_EQ(synchronizer.calls, "LULU");
}

TEST(OLockGuard, UnlocksWhenAnExceptionLeavesTheScope)
{
    RecordingSynchronizer synchronizer;
    try {
        const OLockGuard guard(synchronizer);
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(synchronizer.calls, "LU");
}

} // namespace
