// SPDX-License-Identifier: MIT
#include "support/product/ProductWaits.h"

#include "spooler/SpoolerControl.h"
#include "support/Eventually.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

namespace {

std::mutex lock;
std::condition_variable entered; ///< a thread waits
std::map<DWORD, HANDLE> waiting; ///< the notification that each thread waits for
std::atomic<DWORD> longestMs{INFINITE};
std::atomic<int> timeouts{0};

DWORD WINAPI Wait(DWORD count, const HANDLE* handles, BOOL all, DWORD ms)
{
    const DWORD thread = ::GetCurrentThreadId();
    {
        const std::lock_guard guard(lock);
        waiting[thread] = handles[0];
    }
    entered.notify_all();
    const DWORD result = ::WaitForMultipleObjects(count, handles, all, std::min<DWORD>(ms, longestMs));
    const std::lock_guard guard(lock);
    waiting.erase(thread);
    if (result == WAIT_TIMEOUT) ++timeouts;
    return result;
}

/// Requires: `lock` held.
bool IsIdle()
{
    return waiting.size() == ::SpoolerOpenNotifications() && std::ranges::all_of(waiting, [](const auto& entry) {
               return ::WaitForSingleObject(entry.second, 0) == WAIT_TIMEOUT;
           });
}

} // namespace

ProductWaits::ProductWaits(const ProductModule& product, DWORD quietSecondMs)
    : _waits("WaitForMultipleObjects", Wait, product.Handle()),
      _noSleep(
          "Sleep", [](DWORD) { ::SwitchToThread(); }, product.Handle())
{
    longestMs = quietSecondMs;
}

ProductWaits::~ProductWaits()
{
    longestMs = INFINITE;
}

bool ProductWaits::WaitUntilIdle() const
{
    constexpr auto mayHaveEnded = std::chrono::milliseconds(10); // a thread that no longer waits, and tells nobody
    constexpr auto patience = std::chrono::seconds(30);
    const auto last = std::chrono::steady_clock::now() + patience;
    std::unique_lock guard(lock);
    while (!IsIdle()) {
        if (std::chrono::steady_clock::now() > last) return false;
        entered.wait_for(guard, mayHaveEnded);
    }
    return true;
}

/// What the first time-out leads to is over when the second comes.
bool ProductWaits::PassQuietSecond() const
{
    const int before = timeouts;
    return Eventually([&] { return timeouts >= before + 2; });
}
