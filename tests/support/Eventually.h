// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Whether `condition` becomes true within a generous limit. For changes that no event announces.
template <class Condition>
bool Eventually(Condition&& condition)
{
    constexpr DWORD patienceMs = 30000;
    const DWORD start = ::GetTickCount();
    while (!condition()) {
        if (::GetTickCount() - start > patienceMs) return false;
        ::SwitchToThread();
    }
    return true;
}
