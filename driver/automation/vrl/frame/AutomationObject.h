// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/LateBinding.h"
#include "vrl/frame/MethodGuard.h"
#include "vrl/frame/Module.h"
#include "vrl/frame/TypeInfo.h"
#include "vrl/frame/Values.h"
#include "vrl/frame/VRException.h"

#include <wrl/client.h>

#include <atomic>
#include <functional>
#include <tuple>
#include <type_traits>

/// The order in which a property tests its object and its out pointer: it differs from member to member, and is part of
/// the contract.
enum class Checks { BoundThenOut, OutThenBound };

/// Base of every automation class: reference counts, the interfaces of the class, dispatch over the type information of
/// its one interface, and error information.
///
/// `Class` may replace `FinalConstruct`, `FinalRelease` and `BeforeLastRelease`. A class whose members need something
/// that it is bound to has a `Bound` and gives it by `CheckBound`. It is made by `CreateObject` or `CreateInstance`
/// only. Threading: free; the reference count is atomic, and `_lock` guards what the class says.
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
        if (_references == 1) Self().BeforeLastRelease();
        const ULONG left = --_references;
        if (left == 0) Die();
        return left;
    }

    /// Takes a reference for the caller unless the last one has gone already. For those who hold none of their own.
    bool AddRefIfAlive() noexcept
    {
        ULONG references = _references;
        do {
            if (references == 0 || references >= parkedReferences) return false;
        } while (!_references.compare_exchange_weak(references, references + 1));
        return true;
    }

    /// Gives back the reference that the object was made with, and leaves the object be: whoever asks for one with a
    /// count of 0 takes the first reference himself.
    void DropFirstReference() noexcept { --_references; }

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
        return InvokeMember(typeInfo.Get(), static_cast<Interface*>(this), id, flags, parameters, returned, exception,
                            argumentError);
    }

    // ISupportErrorInfo

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override
    {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }

    // Life of the object

    /// Runs once, right after construction, with one reference held; a failure is the result of the creation.
    HRESULT FinalConstruct() noexcept { return S_OK; }

    /// Runs at each `Release` that finds the count at exactly 1, before the count is lowered.
    void BeforeLastRelease() noexcept {}

    /// Runs once, after the last reference has gone, and after a failed `FinalConstruct`. Whoever is called here may
    /// take references and give them back; the object dies all the same.
    void FinalRelease() {}

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

    // The shapes of members. What is asked or done is a member of the object that the class is bound to, or a function
    // that takes the binding; `arguments` follow.

    /// A property's getter: the answer of `query` goes out in the type of the property.
    template <class Out, class Query, class... Arguments>
    HRESULT Get(const char* function, Checks order, Out* out, Query query, Arguments... arguments) noexcept
    {
        return Guard(function, [&] {
            EmptyOut(out);
            if (order == Checks::OutThenBound) CheckOut(out);
            const auto bound = Self().CheckBound();
            CheckOut(out);
            GiveValue(out, std::invoke(query, *bound, arguments...));
        });
    }

    /// A getter of a child, which it gives with one more reference. It works on an object that is not bound.
    template <class Out, class Child>
    HRESULT GetChild(const char* function, Out** out, const Microsoft::WRL::ComPtr<Child>& child) noexcept
    {
        return Guard(function, [&] {
            CheckOut(out);
            return child.CopyTo(out);
        });
    }

    /// A property's setter.
    template <class Operation, class Argument>
    HRESULT Put(const char* function, Operation operation, Argument argument) noexcept
    {
        return Call(function, operation, argument);
    }

    /// A method without a result of its own, or one whose operation gives an HRESULT.
    template <class Operation, class... Arguments>
    HRESULT Call(const char* function, Operation operation, Arguments... arguments) noexcept
    {
        return Guard(function, [&] {
            const auto taken = std::make_tuple(TakeValue(arguments)...);
            const auto bound = Self().CheckBound();
            const auto run = [&](const auto&... values) { return std::invoke(operation, *bound, values...); };
            using Result = decltype(std::apply(run, taken));
            static_assert(std::is_void_v<Result> || std::is_same_v<Result, HRESULT>, "an answer that nobody looks at");
            return std::apply(run, taken);
        });
    }

    OCriticalSection _lock;

private:
    /// More than any number of references, so that those taken and given back meanwhile don't end the object again.
    static constexpr ULONG parkedReferences = 0x40000000;

    Class& Self() noexcept { return static_cast<Class&>(*this); }

    void Die() noexcept
    {
        _references = parkedReferences;
        if constexpr (requires { Self().Disconnect(); }) Self().Disconnect();
        Contain([&] { Self().FinalRelease(); });
        delete &Self();
    }

    template <class Out>
    static void EmptyOut(Out* out)
    {
        if constexpr (std::is_pointer_v<Out>) {
            if (out) *out = nullptr;
        }
    }

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

/// A new `T`, not finally constructed. Throws what its constructor throws.
template <class T>
Microsoft::WRL::ComPtr<T> MakeObject()
{
    return Adopt(new T);
}

/// Makes a `T` with one reference for the caller. On a failure `*object` is null, and nothing of the object is left.
template <class T>
HRESULT CreateInstance(T** object) noexcept
{
    *object = nullptr;
    return Contain([&] {
        auto made = MakeObject<T>();
        const HRESULT result = made->FinalConstruct();
        if (SUCCEEDED(result)) *object = made.Detach();
        return result;
    });
}

/// Makes a child of an automation object. Throws a `VRException` with the result of a failed creation.
template <class Child>
void CreateChild(Microsoft::WRL::ComPtr<Child>& child)
{
    const HRESULT result = CreateInstance(child.ReleaseAndGetAddressOf());
    if (FAILED(result)) throw VRException(result, "CreateInstance failed");
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
