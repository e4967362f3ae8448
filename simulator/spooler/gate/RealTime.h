// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

/// Keeps the printers going whose pace is real time, on a thread of its own.
///
/// The thread starts when the first such printer is there, keeps the module loaded, and ends with the process.
class RealTime {
public:
    /// There is a printer to keep going, and no thread yet.
    bool IsNeeded(const World& world) const noexcept;
    /// `lock` guards the world; `used` is notified whenever something was done to it. All three live as long as the
    /// process.
    void Start(World& world, std::mutex& lock, std::condition_variable& used) noexcept;

private:
    using Clock = std::chrono::steady_clock;

    void Run();
    bool DoWhatIsDue();
    bool KeepGoing(const PrinterRecord& printer, Clock::time_point now);

    World* _world = nullptr;
    std::mutex* _lock = nullptr;
    std::condition_variable* _used = nullptr;
    std::map<DWORD, Clock::time_point> _due; // the next step of each printer that has one
};
