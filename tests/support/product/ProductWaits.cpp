// SPDX-License-Identifier: MIT
#include "support/product/ProductWaits.h"

#include "spooler/SpoolerControl.h"
#include "support/Eventually.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>

namespace {

std::mutex lock;
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
    const DWORD result = ::WaitForMultipleObjects(count, handles, all, std::min<DWORD>(ms, longestMs));
    const std::lock_guard guard(lock);
    waiting.erase(thread);
    if (result == WAIT_TIMEOUT) ++timeouts;
    return result;
}

bool IsIdle()
{
    const std::lock_guard guard(lock);
    return waiting.size() == ::SpoolerOpenNotifications() && std::ranges::all_of(waiting, [](const auto& entry) {
               return ::WaitForSingleObject(entry.second, 0) == WAIT_TIMEOUT;
           });
}

} // namespace

ProductWaits::ProductWaits(const ProductModule& product)
    : _waits("WaitForMultipleObjects", Wait, product.Handle()),
      _noSleep(
          "Sleep", [](DWORD) { ::SwitchToThread(); }, product.Handle())
{
}

ProductWaits::~ProductWaits()
{
    longestMs = INFINITE;
}

bool ProductWaits::WaitUntilIdle() const
{
    return Eventually(IsIdle);
}

void ProductWaits::ShortenQuietSeconds(DWORD ms)
{
    longestMs = ms;
}

/// What the first time-out leads to is over when the second comes.
bool ProductWaits::WaitForQuietSecond() const
{
    const int before = timeouts;
    return Eventually([&] { return timeouts >= before + 2; });
}
