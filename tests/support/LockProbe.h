// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/OSynchronizer.h"

#include <thread>

/// A thread that waits to take a lock once, so that a test can find out from inside a call whether the lock is held.
/// Asking allocates nothing. The lock must be free at the end of the probe at the latest.
class LockProbe {
public:
    explicit LockProbe(OSynchronizer& lock)
        : _taker([this, &lock] {
              ::WaitForSingleObject(_asked.Get(), INFINITE);
              lock.Lock();
              lock.Unlock();
              ::SetEvent(_taken.Get());
          })
    {
    }
    LockProbe(const LockProbe&) = delete;
    LockProbe& operator=(const LockProbe&) = delete;
    ~LockProbe() { ::SetEvent(_asked.Get()); }

    /// Whether another thread gets the lock now. Ask once.
    bool IsFree() const
    {
        constexpr DWORD patienceMs = 3000; // spent only if the lock is held
        ::SetEvent(_asked.Get());
        return ::WaitForSingleObject(_taken.Get(), patienceMs) == WAIT_OBJECT_0;
    }

private:
    OWaitHandle _asked{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    OWaitHandle _taken{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::jthread _taker; // last: it uses the events
};
