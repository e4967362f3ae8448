// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// A function that `module` exports under `name`; null if it doesn't. `Function` is its type.
template <typename Function>
Function* ImportedFunction(HMODULE module, const char* name) noexcept
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}
