// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

#include <functional>

/// A client's object whose every call does what the test says: a sink, or an argument.
///
/// Ownership: a local of the test; `references` counts what is out. Threads: as the test does.
class ScriptedSink : public IDispatch {
public:
    std::function<void()> onQueryInterface;
    std::function<void()> onAddRef;
    std::function<void()> onRelease; ///< before the reference is given back
    std::function<HRESULT(DISPID, DISPPARAMS*)> onInvoke;
    ULONG references = 0;
    int invocations = 0;
    bool refusesEvents = false; ///< knows no interface but IUnknown

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        if (onQueryInterface) onQueryInterface();
        const bool known = !refusesEvents || iid == IID_IUnknown;
        *object = known ? this : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override
    {
        if (onAddRef) onAddRef();
        return ++references;
    }
    STDMETHODIMP_(ULONG) Release() override
    {
        if (onRelease) onRelease();
        return --references;
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++invocations;
        return onInvoke ? onInvoke(id, parameters) : S_OK;
    }
};
