// SPDX-License-Identifier: MIT
#pragma once

// What a C++ client needs to receive events: a sink, its connection to an object, and the text of a failed call.

#include <windows.h>

#include "vrl/Vorlane.h"

#include <comutil.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <atomic>
#include <cstdio>
#include <span>
#include <string>

/// A sink for the event interface `Events` of an object. Events come on a thread of the server's own, one at a time.
///
/// Ownership: counted; made with new, the first reference is the maker's.
template <class Events>
class EventSink : public IDispatch {
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Events);
        *object = known ? static_cast<IDispatch*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --_references;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return OnEvent(event, {parameters->rgvarg, parameters->cArgs});
    }

protected:
    virtual ~EventSink() = default;

    /// `arguments` stand in reverse order, the last one first. DISP_E_MEMBERNOTFOUND for an event that isn't known.
    virtual HRESULT OnEvent(DISPID event, std::span<const VARIANT> arguments) = 0;

private:
    std::atomic<ULONG> _references{1};
};

/// Connects `sink` to the events of `source` until the end of the scope.
template <class Events>
class Connection {
public:
    Connection(IUnknown* source, EventSink<Events>* sink)
    {
        Microsoft::WRL::ComPtr<IConnectionPointContainer> container;
        _result = source->QueryInterface(IID_PPV_ARGS(&container));
        if (SUCCEEDED(_result)) _result = container->FindConnectionPoint(__uuidof(Events), &_point);
        if (SUCCEEDED(_result)) _result = _point->Advise(sink, &_cookie);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection()
    {
        if (SUCCEEDED(_result)) _point->Unadvise(_cookie);
    }

    HRESULT Result() const { return _result; }

private:
    Microsoft::WRL::ComPtr<IConnectionPoint> _point;
    DWORD _cookie = 0;
    HRESULT _result = S_OK;
};

/// The object in an event's argument, null if it is not of that interface.
template <class Interface>
Microsoft::WRL::ComPtr<Interface> ObjectIn(const VARIANT& argument)
{
    Microsoft::WRL::ComPtr<Interface> object;
    if (argument.vt == VT_DISPATCH && argument.pdispVal) argument.pdispVal->QueryInterface(IID_PPV_ARGS(&object));
    return object;
}

/// The value of an object's text property, such as "Printing" for a job's status; empty if there is none.
template <class Interface>
std::wstring TextOf(Interface* object, HRESULT (__stdcall Interface::*property)(BSTR*))
{
    _bstr_t text;
    if (!object || FAILED((object->*property)(text.GetAddress()))) return {};
    return {static_cast<const wchar_t*>(text), text.length()};
}

/// Begins a line of output with the time of day.
inline void PrintTime()
{
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    std::printf("%02u:%02u:%02u.%03u  ", now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
}

/// Prints what the server says of a failed call.
inline void PrintFailure(const char* what, HRESULT result)
{
    Microsoft::WRL::ComPtr<IErrorInfo> information;
    _bstr_t text;
    if (::GetErrorInfo(0, &information) == S_OK) information->GetDescription(text.GetAddress());
    std::fprintf(stderr, "%s: %ls (0x%08lX)\n", what, text.length() ? static_cast<const wchar_t*>(text) : L"failed",
                 static_cast<unsigned long>(result));
}
