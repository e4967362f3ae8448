// SPDX-License-Identifier: MIT

#include "foundation/Platform.h"

#include <objbase.h>

#include "foundation/ModuleInstance.h"
#include "vrl/Marshalling.h"
#include "vrl/Module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) noexcept
{
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    SetModuleInstance(instance);
    ::DisableThreadLibraryCalls(instance);
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** result)
{
    return Marshalling::GetClassObject(classId, interfaceId, result);
}

STDAPI DllCanUnloadNow()
{
    const HRESULT marshalling = Marshalling::CanUnloadNow();
    if (marshalling != S_OK) return marshalling;
    return Module::IsIdle() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer()
{
    return Marshalling::Register(GetModuleInstance());
}

STDAPI DllUnregisterServer()
{
    return Marshalling::Unregister(GetModuleInstance());
}
