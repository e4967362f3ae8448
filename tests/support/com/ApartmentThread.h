// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <objbase.h>

#include <functional>
#include <thread>

/// A thread that lives in an apartment of its own and does what it is given, one work after the other. In between it
/// pumps messages, as a window's thread does, so that calls from other apartments come in.
class ApartmentThread {
public:
    explicit ApartmentThread(COINIT kind);
    ApartmentThread(const ApartmentThread&) = delete;
    ApartmentThread& operator=(const ApartmentThread&) = delete;

    /// Leaves the apartment and ends the thread.
    ~ApartmentThread();

    /// Does `work` on the thread and waits until it is done; without end in sight after a minute, the test fails and
    /// the process ends. `work` may throw nothing.
    void Run(const std::function<void()>& work);

    DWORD Id() const noexcept { return _id; }

private:
    void Body(COINIT kind);
    bool PumpUntilWork() const;

    OWaitHandle _ready;
    OWaitHandle _posted;
    OWaitHandle _done;
    const std::function<void()>* _work = nullptr; // null: the thread is to end
    DWORD _id = 0;
    std::thread _thread;
};
