// SPDX-License-Identifier: MIT
#include "foundation/system/ModuleInstance.h"

#include "foundation/files/PathParts.h"

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

OString GetModuleName(HMODULE module)
{
    wchar_t name[MAX_PATH + 1] = {};
    ::GetModuleFileNameW(module, name, MAX_PATH);
    return OString(name);
}

OString GetCurrentModuleName()
{
    return GetModuleName(GetModuleInstance());
}

OString GetCurrentModuleFolder()
{
    return GetFolderPart(GetCurrentModuleName());
}
