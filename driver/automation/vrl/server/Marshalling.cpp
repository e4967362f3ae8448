// SPDX-License-Identifier: MIT
#include "vrl/server/Marshalling.h"

// The platform's header for marshalling code knows the C form of interfaces only.
#define CINTERFACE
#include <objbase.h>
#include <rpcproxy.h>

extern "C" const ExtendedProxyFileInfo Vorlane_ProxyFileInfo;

namespace {

// {C83204D8-630A-4F8C-8056-F52CDBBF1A31}
constexpr CLSID factoryClassId{
    0xc83204d8, 0x630a, 0x4f8c, {0x80, 0x56, 0xf5, 0x2c, 0xdb, 0xbf, 0x1a, 0x31}
};

const ProxyFileInfo* proxyFiles[] = {&Vorlane_ProxyFileInfo, nullptr};
CStdPSFactoryBuffer factory{};

IPSFactoryBuffer* FactoryInterface() noexcept
{
    return reinterpret_cast<IPSFactoryBuffer*>(&factory);
}

} // namespace

// The stubs in the generated code end here; the second form is that of interfaces which build on another module's.
extern "C" ULONG WINAPI CStdStubBuffer_Release(IRpcStubBuffer* stub)
{
    return ::NdrCStdStubBuffer_Release(stub, FactoryInterface());
}

extern "C" ULONG WINAPI CStdStubBuffer2_Release(IRpcStubBuffer* stub)
{
    return ::NdrCStdStubBuffer2_Release(stub, FactoryInterface());
}

HRESULT Marshalling::GetClassObject(REFCLSID classId, REFIID interfaceId, void** result) noexcept
{
    return ::NdrDllGetClassObject(classId, interfaceId, result, proxyFiles, &factoryClassId, &factory);
}

HRESULT Marshalling::CanUnloadNow() noexcept
{
    return ::NdrDllCanUnloadNow(&factory);
}

HRESULT Marshalling::Register(HMODULE module) noexcept
{
    return ::NdrDllRegisterProxy(module, proxyFiles, &factoryClassId);
}

HRESULT Marshalling::Unregister(HMODULE module) noexcept
{
    return ::NdrDllUnregisterProxy(module, proxyFiles, &factoryClassId);
}
