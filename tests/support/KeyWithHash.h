// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>

/// A text made of `letter` in both cases whose CRC-32, terminator included, is `hash`. Two such texts of different
/// letters are a collision.
std::string KeyWithHash(DWORD hash, char letter = 'k');
