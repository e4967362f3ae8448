// SPDX-License-Identifier: MIT
#include "foundation/OCriticalSection.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/OHandle.h"
#include "foundation/OLockGuard.h"

namespace {

constexpr DWORD generousMs = 30000;

/// Another thread that takes the lock and releases it.
class Contender {
public:
    explicit Contender(OCriticalSection& lock)
        : _thread([this, &lock] {
              ::SetEvent(_trying.Get());
              const OLockGuard guard(lock);
              ::SetEvent(_holding.Get());
          })
    {
        ::WaitForSingleObject(_trying.Get(), generousMs);
    }
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;
    ~Contender() { _thread.join(); }

    /// Gives it a while to get what it shouldn't.
    bool HasTheLock() const { return ::WaitForSingleObject(_holding.Get(), 50) == WAIT_OBJECT_0; }
    bool GetsTheLock() const { return ::WaitForSingleObject(_holding.Get(), generousMs) == WAIT_OBJECT_0; }

private:
    OWaitHandle _trying{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    OWaitHandle _holding{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::thread _thread;
};

TEST(OCriticalSection, KeepsOtherThreadsOutUntilItIsUnlocked)
{
    OCriticalSection lock;
    lock.Lock();
    const Contender contender(lock);
    EXPECT_FALSE(contender.HasTheLock());
    lock.Unlock();
    EXPECT_TRUE(contender.GetsTheLock());
}

TEST(OCriticalSection, MustBeUnlockedAsOftenAsItWasLocked)
{
    OCriticalSection lock;
    lock.Lock();
    lock.Lock();
    lock.Unlock();
    const Contender contender(lock);
    EXPECT_FALSE(contender.HasTheLock());
    lock.Unlock();
    EXPECT_TRUE(contender.GetsTheLock());
}

TEST(OCriticalSection, GuardOnALockHeldByTheSameThreadReleasesOneLevel)
{
    OCriticalSection lock;
    lock.Lock();
    {
        const OLockGuard guard(lock);
    }
    const Contender contender(lock);
    EXPECT_FALSE(contender.HasTheLock());
    lock.Unlock();
    EXPECT_TRUE(contender.GetsTheLock());
}

} // namespace
