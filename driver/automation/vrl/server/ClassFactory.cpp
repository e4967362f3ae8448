// SPDX-License-Identifier: MIT
#include "vrl/server/ClassFactory.h"

#include "vrl/frame/Module.h"

#include <utility>

namespace {

template <size_t... row>
std::array<ClassFactory, sizeof...(row)> MakeFactories(std::index_sequence<row...>) noexcept
{
    return {ClassFactory(classTable[row])...};
}

std::array<ClassFactory, classTable.size()>& Factories() noexcept
{
    static auto factories = MakeFactories(std::make_index_sequence<classTable.size()>());
    return factories;
}

} // namespace

HRESULT ClassFactory::Get(REFCLSID classId, REFIID iid, void** factory) noexcept
{
    *factory = nullptr;
    const ClassEntry* const entry = FindClass(classId);
    if (!entry) return CLASS_E_CLASSNOTAVAILABLE;
    return Factories()[static_cast<size_t>(entry - classTable.data())].QueryInterface(iid, factory);
}

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() noexcept
{
    Module::AddObject();
    return 2;
}

STDMETHODIMP_(ULONG) ClassFactory::Release() noexcept
{
    Module::RemoveObject();
    return 1;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept
{
    if (!object) return E_POINTER;
    *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : _entry.create(iid, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept
{
    if (lock) {
        Module::AddLock();
    } else {
        Module::RemoveLock();
    }
    return S_OK;
}
