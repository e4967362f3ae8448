// SPDX-License-Identifier: MIT
#include "support/product/QuietSeconds.h"

#include <limits>

namespace {

constexpr DWORD haste = 10;

const OWaitHandle& Handled()
{
    static const OWaitHandle handled(::CreateSemaphoreW(nullptr, 0, std::numeric_limits<LONG>::max(), nullptr));
    return handled;
}

bool wasQuiet = false; // of the notification thread

DWORD WINAPI WaitAndCount(DWORD count, const HANDLE* handles, BOOL all, DWORD ms)
{
    if (wasQuiet) ::ReleaseSemaphore(Handled().Get(), 1, nullptr); // it is back from its work
    const DWORD result = ::WaitForMultipleObjects(count, handles, all, ms / haste);
    wasQuiet = result == WAIT_TIMEOUT;
    return result;
}

} // namespace

QuietSeconds::QuietSeconds(const ProductModule& product)
    : _hook("WaitForMultipleObjects", WaitAndCount, product.Handle())
{
    wasQuiet = false;
}

bool QuietSeconds::PassOne() const
{
    constexpr DWORD patienceMs = 30000;
    const HANDLE handled = Handled().Get();
    while (::WaitForSingleObject(handled, 0) == WAIT_OBJECT_0) continue;
    // The first may belong to work that had begun before.
    return ::WaitForSingleObject(handled, patienceMs) == WAIT_OBJECT_0 &&
           ::WaitForSingleObject(handled, patienceMs) == WAIT_OBJECT_0;
}
