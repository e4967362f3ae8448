// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstddef>

/// The standard CRC-32 (reflected polynomial 0xEDB88320, inverted at start and end) of `length` bytes behind a run that
/// ended with `seed`; 0 starts anew. So the parts of a text, each with the result before it, give the sum of the whole.
DWORD CRC32(const void* data, size_t length, DWORD seed) noexcept;

/// CRC-CCITT (polynomial 0x1021, high bit first, nothing inverted) of `length` bytes, starting from `seed`.
WORD CRC16(const void* data, size_t length, WORD seed) noexcept;
