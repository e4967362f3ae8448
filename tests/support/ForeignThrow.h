// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// The structured exception by which code of the platform's usual compiler throws in C++.
inline constexpr DWORD foreignExceptionCode = 0xE06D7363;

/// Throws as such code does, and so doesn't return.
void ThrowAsForeignCode();
