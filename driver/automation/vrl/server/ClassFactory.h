// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/server/ClassTable.h"

#include <unknwn.h>

/// Makes the objects of one row of the class table.
///
/// Ownership: one static object for each row; references are counted only as reasons to keep the module loaded.
/// Threading: any thread.
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ClassEntry& entry) noexcept : _entry(entry) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    /// Gives the factory of a class; CLASS_E_CLASSNOTAVAILABLE if the class table has no such class.
    static HRESULT Get(REFCLSID classId, REFIID iid, void** factory) noexcept;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override;
    STDMETHODIMP_(ULONG) Release() noexcept override;

    /// CLASS_E_NOAGGREGATION for an `outer`; else what the creation of the object gives.
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override;
    STDMETHODIMP LockServer(BOOL lock) noexcept override;

private:
    const ClassEntry& _entry;
};
