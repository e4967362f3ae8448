// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/MethodGuard.h"
#include "vrl/frame/Module.h"
#include "vrl/frame/TypeInfo.h"
#include "vrl/frame/VRException.h"

#include <wrl/client.h>

#include <atomic>
#include <new>

/// Base of every automation class: reference counts, the interfaces of the class, dispatch over the type information of
/// its one interface, and error information.
///
/// `Class` may replace `FinalConstruct` and `FinalRelease`. It is made by `CreateObject` or `CreateInstance` only.
/// Threading: free; the reference count is atomic, and `_lock` guards what the class says.
template <class Class, class Interface>
class AutomationObject : public Interface, public ISupportErrorInfo {
public:
    AutomationObject(const AutomationObject&) = delete;
    AutomationObject& operator=(const AutomationObject&) = delete;

    // IUnknown

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object) return E_POINTER;
        *object = FindInterface(iid);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++_references; }

    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --_references;
        if (left == 0) {
            Self().FinalRelease();
            delete &Self();
        }
        return left;
    }

    // IDispatch

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override
    {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** typeInfo) noexcept override
    {
        if (!typeInfo) return E_POINTER;
        *typeInfo = nullptr;
        return index == 0 ? InterfaceTypeInfo(__uuidof(Interface), typeInfo) : DISP_E_BADINDEX;
    }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override
    {
        Microsoft::WRL::ComPtr<ITypeInfo> typeInfo;
        const HRESULT result = InterfaceTypeInfo(__uuidof(Interface), &typeInfo);
        return FAILED(result) ? result : typeInfo->GetIDsOfNames(names, count, ids);
    }

    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* returned,
                        EXCEPINFO* exception, UINT* argumentError) noexcept override
    {
        Microsoft::WRL::ComPtr<ITypeInfo> typeInfo;
        const HRESULT result = InterfaceTypeInfo(__uuidof(Interface), &typeInfo);
        if (FAILED(result)) return result;
        return typeInfo->Invoke(static_cast<Interface*>(this), id, flags, parameters, returned, exception,
                                argumentError);
    }

    // ISupportErrorInfo

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override
    {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }

    // Life of the object

    /// Runs once behind construction, with one reference held; a failure is the result of the creation.
    HRESULT FinalConstruct() noexcept { return S_OK; }

    /// Runs once when the last reference has gone, also behind a failed `FinalConstruct`.
    void FinalRelease() noexcept {}

    /// The object's own lock, under which event code reads its sink list.
    OCriticalSection& ObjectLock() noexcept { return _lock; }

protected:
    AutomationObject() { Module::AddObject(); }
    ~AutomationObject() { Module::RemoveObject(); }

    /// The wrapper of every public method; `function` is the text "Class::Member".
    template <class Body>
    HRESULT Guard(const char* function, Body&& body) noexcept
    {
        return MethodGuard(function, __uuidof(Class), static_cast<Body&&>(body));
    }

    /// Throws `InvalidArgument_E` for a null out pointer.
    static void CheckOut(const void* out)
    {
        if (!out) throw InvalidArgument_E();
    }

    OCriticalSection _lock;

private:
    Class& Self() noexcept { return static_cast<Class&>(*this); }

    void* FindInterface(REFIID iid) noexcept
    {
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Interface)) {
            return static_cast<Interface*>(this);
        }
        if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
        if constexpr (requires { Self().ConnectionPointContainer(); }) {
            if (iid == IID_IConnectionPointContainer) return Self().ConnectionPointContainer();
        }
        return nullptr;
    }

    std::atomic<ULONG> _references{1};
};

/// Makes a `T` with one reference for the caller. On a failure `*object` is null, and nothing of the object is left.
template <class T>
HRESULT CreateInstance(T** object) noexcept
try {
    *object = nullptr;
    Microsoft::WRL::ComPtr<T> made;
    *made.GetAddressOf() = new T; // not Attach, which counts once more in the library of this compiler
    const HRESULT result = made->FinalConstruct();
    if (SUCCEEDED(result)) *object = made.Detach();
    return result;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

/// Makes a `T` and asks it for `iid`, as class factories do.
template <class T>
HRESULT CreateObject(REFIID iid, void** object) noexcept
{
    *object = nullptr;
    Microsoft::WRL::ComPtr<T> made;
    const HRESULT result = CreateInstance(made.GetAddressOf());
    return FAILED(result) ? result : made->QueryInterface(iid, object);
}
