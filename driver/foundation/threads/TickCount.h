// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Milliseconds since the system started, wrapping at 32 bits. The product reads its ticks here and nowhere else.
DWORD TickCount() noexcept;

/// Replaces the source of `TickCount` and gives the one before; null restores the platform's own. For tests.
using TickCountSource = DWORD (*)();
TickCountSource SetTickCountSource(TickCountSource source) noexcept;
