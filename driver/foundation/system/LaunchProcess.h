// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/text/OString.h"

/// Starts a program and doesn't wait for it. `show` is how its first window is to appear (SW_SHOWNORMAL and so on).
/// False, with the last error set, if the platform can't start it.
bool LaunchProcess(const OString& commandLine, WORD show);
