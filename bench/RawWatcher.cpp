// SPDX-License-Identifier: MIT
#include "bench/RawWatcher.h"

#include <iterator>
#include <stdexcept>

RawWatcher::~RawWatcher()
{
    ::SetEvent(_stop.Get());
}

void RawWatcher::Wait() const
{
    constexpr DWORD limitMs = 60000;
    if (::WaitForSingleObject(_done.Get(), limitMs) != WAIT_OBJECT_0) throw std::runtime_error("a notice is missing");
}

void RawWatcher::Run()
{
    constexpr DWORD quietTimeMs = 1000;
    const HANDLE handles[] = {_notification.Handle(), _stop.Get()};
    for (;;) {
        switch (::WaitForMultipleObjects(std::size(handles), handles, FALSE, quietTimeMs)) {
        case WAIT_OBJECT_0:
            _notification.Fetch();
            _fetched = Clock::now();
            ::SetEvent(_done.Get());
            break;
        case WAIT_TIMEOUT:
            break;
        default:
            return;
        }
    }
}
