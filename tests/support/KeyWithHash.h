// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>

/// A text of `letter` in both cases whose CRC-32, terminator included, is `hash`. Texts of two letters with the same
/// hash are a collision.
std::string KeyWithHash(DWORD hash, char letter = 'k');
