// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>
#include <vector>

/// A module of the own process.
struct LoadedModule {
    std::wstring path;
    DWORD64 base;
    DWORD size; ///< bytes from `base` on
};

/// The modules that the process has loaded, by whichever listing the platform offers; empty if it offers none.
std::vector<LoadedModule> ListLoadedModules();
