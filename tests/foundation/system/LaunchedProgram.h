// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// What the launched program tells its starter, in shared memory of the name on its command line.
struct LaunchReport {
    DWORD startupFlags;
    WORD show;
};

/// After the name: the event that the program waits for, and the one that it sets with its report.
inline constexpr const wchar_t* goSuffix = L".go";
inline constexpr const wchar_t* doneSuffix = L".done";

/// No wait takes this long unless something is broken.
inline constexpr DWORD launchLimitMs = 60'000;
