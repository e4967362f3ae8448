// SPDX-License-Identifier: MIT
#pragma once

#include "bench/RawNotification.h"
#include "foundation/OHandle.h"

#include <chrono>
#include <thread>

/// The bare loop: a thread that waits for a printer's change notification, with a time-out of a second as the product
/// has, and fetches what there is.
class RawWatcher {
public:
    using Clock = std::chrono::steady_clock;

    explicit RawWatcher(const std::wstring& printerName) : _notification(printerName) {}
    RawWatcher(const RawWatcher&) = delete;
    RawWatcher& operator=(const RawWatcher&) = delete;
    ~RawWatcher();

    /// Waits until something has been fetched. Throws std::runtime_error if that takes longer than a minute.
    void Wait() const;

    /// When the fetch that was waited for had come back.
    Clock::time_point Fetched() const noexcept { return _fetched; }

private:
    void Run();

    RawNotification _notification;
    const OWaitHandle _stop{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    const OWaitHandle _done{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    Clock::time_point _fetched;
    std::jthread _thread{[this] { Run(); }}; // last: it uses the others
};
