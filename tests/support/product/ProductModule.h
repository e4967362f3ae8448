// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <unknwn.h>

#include <string>

/// The Vorlane.dll in the folder of the test program: the very file that ships, reached by its exports.
class ProductModule {
public:
    /// Throws std::runtime_error if it cannot be loaded or lacks an export.
    ProductModule();

    HMODULE Handle() const noexcept { return _module.Get(); }
    const std::wstring& Path() const noexcept { return _path; }

    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) const
    {
        return _getClassObject(classId, iid, object);
    }
    HRESULT CanUnloadNow() const { return _canUnloadNow(); }
    HRESULT RegisterServer() const { return _registerServer(); }
    HRESULT UnregisterServer() const { return _unregisterServer(); }

    /// Makes an object of a class by its factory, without the registry.
    HRESULT CreateInstance(REFCLSID classId, REFIID iid, void** object) const;

private:
    template <typename Procedure>
    void Find(const char* name, Procedure& procedure) const;

    std::wstring _path;
    OModuleHandle _module;
    HRESULT(STDMETHODCALLTYPE* _getClassObject)(REFCLSID, REFIID, void**);
    HRESULT(STDMETHODCALLTYPE* _canUnloadNow)();
    HRESULT(STDMETHODCALLTYPE* _registerServer)();
    HRESULT(STDMETHODCALLTYPE* _unregisterServer)();
};
