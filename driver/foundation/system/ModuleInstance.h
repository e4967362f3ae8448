// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/text/OString.h"

/// Remembers the handle of the module that this code runs in. Called once at start, by the module's entry; it is the
/// only routine here that two threads must not enter at once.
void SetModuleInstance(HINSTANCE instance) noexcept;

/// The handle given to `SetModuleInstance`; null, which the platform reads as the program itself, if it never was.
HINSTANCE GetModuleInstance() noexcept;

/// The full path of a loaded module, null being the program itself; empty if there is none. Cut at 260 characters.
OString GetModuleName(HMODULE module);

/// The full path of the module that was given to `SetModuleInstance`.
OString GetCurrentModuleName();

/// The folder of that module, with no '\' at its end.
OString GetCurrentModuleFolder();
