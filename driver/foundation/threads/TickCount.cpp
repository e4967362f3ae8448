// SPDX-License-Identifier: MIT
#include "foundation/threads/TickCount.h"

#include <atomic>

namespace {
std::atomic<TickCountSource> tickSource{nullptr};
}

DWORD TickCount() noexcept
{
    const TickCountSource source = tickSource.load();
    return source ? source() : ::GetTickCount();
}

TickCountSource SetTickCountSource(TickCountSource source) noexcept
{
    return tickSource.exchange(source);
}
