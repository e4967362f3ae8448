// SPDX-License-Identifier: MIT
#include "support/product/ProductWaits.h"

#include "foundation/OHandle.h"
#include "spooler/SpoolerControl.h"
#include "support/Eventually.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace {

std::mutex lock;
std::condition_variable entered; ///< a thread waits
std::map<DWORD, HANDLE> waiting; ///< the notification that each thread waits for
int quietSeconds = 0;            ///< that have begun
const OWaitHandle quietSecond(::CreateEventW(nullptr, FALSE, FALSE, nullptr));

/// The product waits for several handles in one place only: for any of them, and up to a second.
DWORD WINAPI Wait(DWORD count, const HANDLE* handles, BOOL, DWORD)
{
    const DWORD thread = ::GetCurrentThreadId();
    {
        const std::lock_guard guard(lock);
        waiting[thread] = handles[0];
    }
    entered.notify_all();
    std::vector<HANDLE> all(handles, handles + count);
    all.push_back(quietSecond.Get());
    const DWORD result = ::WaitForMultipleObjects(count + 1, all.data(), FALSE, INFINITE);
    const std::lock_guard guard(lock);
    waiting.erase(thread);
    if (result != WAIT_OBJECT_0 + count) return result;
    ++quietSeconds;
    return WAIT_TIMEOUT;
}

/// Requires: `lock` held.
bool IsIdle()
{
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
    ::ResetEvent(quietSecond.Get());
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

void ProductWaits::BeginQuietSecond() const
{
    ::SetEvent(quietSecond.Get());
}

bool ProductWaits::PassQuietSecond() const
{
    const auto begun = [] {
        const std::lock_guard guard(lock);
        return quietSeconds;
    };
    const int before = begun();
    BeginQuietSecond();
    return Eventually([&] { return begun() > before; }) && WaitUntilIdle();
}
