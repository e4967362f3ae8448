// SPDX-License-Identifier: MIT
#include "vrl/frame/TypeInfo.h"

#include "foundation/system/ModuleInstance.h"
#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <array>
#include <iterator>

namespace {

using Microsoft::WRL::ComPtr;

/// Holds raw references and gives none back: a release while the module is unloaded would call into a library that may
/// be gone already, and the platform keeps one instance of a type library for a path.
class TypeInfoCache {
public:
    HRESULT Find(REFIID iid, ITypeInfo** typeInfo)
    {
        OLockGuard guard(_lock);
        for (size_t i = 0; i < _count; ++i) {
            if (_entries[i].iid == iid) return _entries[i].typeInfo->QueryInterface(IID_PPV_ARGS(typeInfo));
        }
        return Load(iid, typeInfo);
    }

private:
    struct Entry {
        IID iid;
        ITypeInfo* typeInfo;
    };

    HRESULT Load(REFIID iid, ITypeInfo** typeInfo) REQUIRES(_lock)
    {
        std::wstring path;
        ComPtr<ITypeLib> library;
        HRESULT result = LoadModuleTypeLibrary(path, &library);
        if (FAILED(result)) return result;

        ComPtr<ITypeInfo> loaded;
        result = library->GetTypeInfoOfGuid(iid, &loaded);
        if (FAILED(result)) return result;

        if (_count < _entries.size()) {
            _entries[_count++] = {iid, loaded.Get()};
            loaded->AddRef();
        }
        *typeInfo = loaded.Detach();
        return S_OK;
    }

    OCriticalSection _lock;
    std::array<Entry, 32> _entries GUARDED_BY(_lock){};
    size_t _count GUARDED_BY(_lock) = 0;
};

TypeInfoCache& Cache()
{
    static TypeInfoCache cache;
    return cache;
}

HRESULT ModulePath(std::wstring& path)
{
    wchar_t buffer[MAX_PATH];
    const DWORD length = ::GetModuleFileNameW(GetModuleInstance(), buffer, static_cast<DWORD>(std::size(buffer)));
    if (length == 0) return HRESULT_FROM_WIN32(::GetLastError());
    if (length == std::size(buffer)) return HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
    path.assign(buffer, length);
    return S_OK;
}

} // namespace

HRESULT LoadModuleTypeLibrary(std::wstring& path, ITypeLib** library)
{
    const HRESULT result = ModulePath(path);
    return FAILED(result) ? result : ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library);
}

HRESULT InterfaceTypeInfo(REFIID iid, ITypeInfo** typeInfo) noexcept
try {
    return Cache().Find(iid, typeInfo);
} catch (...) {
    return E_OUTOFMEMORY;
}
