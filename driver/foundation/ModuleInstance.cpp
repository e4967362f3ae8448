// SPDX-License-Identifier: MIT
#include "foundation/ModuleInstance.h"

namespace {

HINSTANCE moduleInstance;

} // namespace

void SetModuleInstance(HINSTANCE instance) noexcept
{
    moduleInstance = instance;
}

HINSTANCE GetModuleInstance() noexcept
{
    return moduleInstance;
}
