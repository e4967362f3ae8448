// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Mutex.h"
#include "spooler/world/World.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>

/// Keeps the printers going whose pace is real time, on a thread of its own.
///
/// The thread starts when the first such printer is there, keeps the module loaded, and ends with the process.
class RealTime {
public:
    /// There is a printer to keep going, and no thread yet.
    bool IsNeeded(const World& world) const noexcept;
    /// `lock` guards the world; `used` is notified whenever something was done to it. All three live as long as the
    /// process. `noteUse` is called, with the lock held, when the thread has done something to it.
    void Start(World& world, Mutex& lock, std::condition_variable_any& used, std::function<void()> noteUse) noexcept
        REQUIRES(lock);

private:
    using Clock = std::chrono::steady_clock;

    void Run();
    bool DoWhatIsDue() REQUIRES(*_lock);
    bool KeepGoing(const PrinterRecord& printer, Clock::time_point now) REQUIRES(*_lock);

    Mutex* _lock = nullptr; // this and the next three are set before the thread starts, and stay
    std::condition_variable_any* _used = nullptr;
    std::function<void()> _noteUse;
    World* _world PT_GUARDED_BY(*_lock) = nullptr;
    std::map<DWORD, Clock::time_point> _due GUARDED_BY(*_lock); // the next step of each printer that has one
    Clock::time_point _nextLook GUARDED_BY(*_lock);             // at all devices
};
