// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OLockGuard.h"
#include "vrl/frame/SinkOwner.h"

#include <string>
#include <utility>
#include <vector>

/// An object with sinks that is no automation object: it stands in lists and records what it is told to fire.
///
/// Ownership: a local of the test; `references` counts what is out. It leaves every list at its end. Threads: any,
/// under
///            its lock.
class RecordingSinkOwner : private IDispatch, public SinkOwner {
public:
    struct Argument {
        VARTYPE type;
        long number;       ///< of VT_I4
        std::wstring text; ///< of VT_BSTR
        IDispatch* object; ///< of VT_DISPATCH, not counted
    };
    struct Event {
        DISPID id;
        std::vector<Argument> arguments; ///< in the order in which a sink reads them
    };

    RecordingSinkOwner() : SinkOwner(lock) {}
    ~RecordingSinkOwner() { LeaveLists(); }

    /// The object as it stands in events, not counted.
    IDispatch* Object() noexcept { return this; }

    std::vector<Event> Fired()
    {
        OLockGuard guard(lock);
        return _fired;
    }

    // SinkOwner

    Microsoft::WRL::ComPtr<IDispatch> Identity() noexcept override
    {
        return alive ? Microsoft::WRL::ComPtr<IDispatch>(Object()) : nullptr;
    }

    HRESULT Fire(DISPID eventId, const EventArguments& arguments) noexcept override
    {
        OLockGuard guard(lock);
        const DISPPARAMS parameters = arguments.AsDispParams();
        Event event{eventId, {}};
        for (UINT i = parameters.cArgs; i > 0; --i) event.arguments.push_back(Describe(parameters.rgvarg[i - 1]));
        _fired.push_back(std::move(event));
        return answer;
    }

    OCriticalSection lock;
    bool alive = true;     ///< false: its last reference has gone
    HRESULT answer = S_OK; ///< what `Fire` gives
    ULONG references = 0;

private:
    static Argument Describe(const VARIANT& value)
    {
        Argument argument{value.vt, 0, {}, nullptr};
        if (value.vt == VT_I4) argument.number = value.lVal;
        if (value.vt == VT_BSTR) argument.text = value.bstrVal;
        if (value.vt == VT_DISPATCH) argument.object = value.pdispVal;
        return argument;
    }

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

    std::vector<Event> _fired GUARDED_BY(lock);
};
