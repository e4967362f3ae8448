// SPDX-License-Identifier: MIT
#include "vrl/frame/Bound.h"

#include "support/LockProbe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>
#include <utility>

namespace {

struct NotInitialized {};

/// Owns one count on a number that lives as long as the test.
class Count {
public:
    explicit Count(std::atomic<int>* counted) noexcept : _counted(counted) { ++*_counted; }
    Count(Count&& other) noexcept : _counted(std::exchange(other._counted, nullptr)) {}
    Count& operator=(Count&&) = delete;
    ~Count()
    {
        if (_counted) --*_counted;
    }
    explicit operator bool() const noexcept { return _counted && *_counted > 0; }

private:
    std::atomic<int>* _counted;
};

class BoundTest : public ::testing::Test {
protected:
    OCriticalSection lock;
    std::atomic<int> first = 0;
    std::atomic<int> second = 0;
    Bound<Count> bound{lock};
};

TEST_F(BoundTest, IsUnboundAtFirst)
{
    EXPECT_EQ(bound.Get(), nullptr);
    EXPECT_THROW(bound.Check<NotInitialized>(), NotInitialized);
}

TEST_F(BoundTest, HoldsOneCount)
{
    bound.Set(Count(&first));
    EXPECT_EQ(first, 1);
    EXPECT_NO_THROW(bound.Check<NotInitialized>());
    EXPECT_EQ(first, 1);
}

TEST_F(BoundTest, BindingAgainLetsGoOfTheOld)
{
    bound.Set(Count(&first));
    bound.Set(Count(&second));
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(BoundTest, ClearLetsGo)
{
    bound.Set(Count(&first));
    bound.Clear();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(bound.Get(), nullptr);
}

TEST_F(BoundTest, WhatAMemberWorksOnLivesUntilItIsThrough)
{
    bound.Set(Count(&first));
    auto hold = bound.Check<NotInitialized>();
    bound.Set(Count(&second));
    EXPECT_EQ(first, 1);
    hold.reset();
    EXPECT_EQ(first, 0);
}

TEST_F(BoundTest, BindingThatStandsForNothingCountsAsNone)
{
    bound.Set(Count(&first));
    first = 0;
    EXPECT_THROW(bound.Check<NotInitialized>(), NotInitialized);
    EXPECT_NE(bound.Get(), nullptr);
    first = 1;
}

/// Looks, when it is destroyed, whether a lock is free.
class LooksAtLock {
public:
    LooksAtLock(const LockProbe& lock, std::optional<bool>& free) noexcept : _lock(&lock), _free(&free) {}
    LooksAtLock(LooksAtLock&& other) noexcept : _lock(std::exchange(other._lock, nullptr)), _free(other._free) {}
    LooksAtLock& operator=(LooksAtLock&&) = delete;
    ~LooksAtLock()
    {
        if (_lock) *_free = _lock->IsFree();
    }
    explicit operator bool() const noexcept { return true; }

private:
    const LockProbe* _lock;
    std::optional<bool>* _free;
};

TEST_F(BoundTest, LetsGoOfTheOldOutsideOfTheLock)
{
    const LockProbe probe(lock);
    std::optional<bool> free;
    Bound<LooksAtLock> watched(lock);
    watched.Set(LooksAtLock(probe, free));
    watched.Clear();
    EXPECT_EQ(free, true);
}

TEST_F(BoundTest, ReaderMeetsOneOrTheOtherWhileAThreadBinds)
{
    bound.Set(Count(&first));
    std::atomic<bool> done = false;
    std::jthread binder([&] {
        for (int i = 0; i < 5000; ++i) bound.Set(Count(i % 2 ? &first : &second));
        done = true;
    });
    int unbound = 0;
    while (!done) {
        const auto hold = bound.Get();
        if (!hold || !*hold) ++unbound;
    }
    EXPECT_EQ(unbound, 0);
}

} // namespace
