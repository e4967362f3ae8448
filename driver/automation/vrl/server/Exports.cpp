// SPDX-License-Identifier: MIT

#include "foundation/Platform.h"

#include <objbase.h>

#include "foundation/system/ModuleInstance.h"
#include "vrl/server/ClassFactory.h"
#include "vrl/server/Marshalling.h"
#include "vrl/frame/Module.h"
#include "vrl/server/ModuleRegistration.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) noexcept
{
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    SetModuleInstance(instance);
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object)
{
    if (!object) return E_POINTER;
    if (SUCCEEDED(Marshalling::GetClassObject(classId, iid, object))) return S_OK;
    return ClassFactory::Get(classId, iid, object);
}

STDAPI DllCanUnloadNow()
{
    const HRESULT marshalling = Marshalling::CanUnloadNow();
    if (marshalling != S_OK) return marshalling;
    return Module::IsIdle() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer()
{
    const HRESULT result = ModuleRegistration::Register();
    return FAILED(result) ? result : Marshalling::Register(GetModuleInstance());
}

STDAPI DllUnregisterServer()
{
    HRESULT result = ModuleRegistration::Unregister();
    // Deliberate: entered once more first, so that there is always something to take out.
    if (SUCCEEDED(result)) result = Marshalling::Register(GetModuleInstance());
    return FAILED(result) ? result : Marshalling::Unregister(GetModuleInstance());
}
