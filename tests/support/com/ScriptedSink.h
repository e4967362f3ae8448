// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/ClientObject.h"

/// A client's object that takes every event, and does in each call what the test says: a sink, or an argument.
///
/// Ownership: a local of the test; `references` counts what is out. Threads: the count is atomic.
class ScriptedSink : public ClientObject<IDispatch> {
public:
    std::function<HRESULT(DISPID, DISPPARAMS*)> onInvoke;
    int invocations = 0;
    bool refusesEvents = false; ///< knows no interface but IUnknown

    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++invocations;
        return onInvoke ? onInvoke(id, parameters) : S_OK;
    }

private:
    bool Knows(REFIID iid) const override { return !refusesEvents || iid == IID_IUnknown; }
};
