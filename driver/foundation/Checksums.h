// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstddef>

/// The standard CRC-32 (reflected polynomial 0xEDB88320, inverted at start and end) of `length` bytes. `seed` is the
/// result for the bytes before them, 0 if there are none: so data can be summed up in parts.
DWORD CRC32(const void* data, size_t length, DWORD seed) noexcept;

/// CRC-CCITT (polynomial 0x1021, high bit first, nothing inverted) of `length` bytes, starting from `seed`.
WORD CRC16(const void* data, size_t length, WORD seed) noexcept;
