// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Platform.h"

/// How the simulator's own code gives up a call: the system error code that the caller is to see.
/// Caught where calls enter the world, never seen outside.
class SpoolerError {
public:
    explicit SpoolerError(DWORD code) noexcept : _code(code) {}
    DWORD Code() const noexcept { return _code; }

private:
    DWORD _code;
};

/// Gives up with `code` unless the condition holds.
inline void Require(bool condition, DWORD code)
{
    if (!condition) throw SpoolerError(code);
}
