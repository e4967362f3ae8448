// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <functional>
#include <thread>
#include <utility>

/// Runs a body on a thread of its own and tells whether it has come back. The destructor waits for it.
class BackgroundCall {
public:
    explicit BackgroundCall(std::function<void()> body)
        : _thread([this, run = std::move(body)] {
              run();
              ::SetEvent(_done.Get());
          })
    {
    }
    BackgroundCall(const BackgroundCall&) = delete;
    BackgroundCall& operator=(const BackgroundCall&) = delete;

    /// True once the body has ended; waits for it, within a generous limit.
    bool Ends() const { return ::WaitForSingleObject(_done.Get(), 30000) == WAIT_OBJECT_0; }

    /// True if the body is still blocked after a while. A body that is free to run has ended long before.
    bool IsHeldUp() const { return ::WaitForSingleObject(_done.Get(), 100) == WAIT_TIMEOUT; }

private:
    OWaitHandle _done{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::jthread _thread; // last: it uses the event
};
