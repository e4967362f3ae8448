// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

#include <atomic>
#include <functional>

/// A client's own object that implements one interface of the product: counts its references, and does at each turn
/// what the test says. The interface's members are a matter of the class derived from it.
///
/// Ownership: a local of the test; `references` counts what is out. Threads: the count is atomic.
template <class Interface>
class ClientObject : public Interface {
public:
    std::function<void()> onQueryInterface;
    std::function<void()> onAddRef;
    std::function<void()> onRelease; ///< before the reference is given back
    std::atomic<ULONG> references = 0;
    bool hasInterface = true; ///< whether it answers for `Interface`
    bool hasDispatch = true;  ///< whether it answers for IDispatch

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        if (onQueryInterface) onQueryInterface();
        const bool known = Knows(iid);
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
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

private:
    virtual bool Knows(REFIID iid) const
    {
        return iid == IID_IUnknown || (hasDispatch && iid == IID_IDispatch) ||
               (hasInterface && iid == __uuidof(Interface));
    }
};
