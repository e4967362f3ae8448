// SPDX-License-Identifier: MIT
#include "support/com/RecordingSink.h"

using Microsoft::WRL::ComPtr;

ComPtr<RecordingSink> RecordingSink::Create(REFIID events)
{
    ComPtr<RecordingSink> sink;
    *sink.GetAddressOf() = new RecordingSink(events); // it is made with one reference
    return sink;
}

RecordingSink::RecordingSink(REFIID events) : _events(events), _called(::CreateSemaphoreW(nullptr, 0, MAXLONG, nullptr))
{
}

std::vector<RecordingSink::Call> RecordingSink::Calls() const
{
    const std::lock_guard guard(_lock);
    return _calls;
}

bool RecordingSink::WaitForCall() const
{
    constexpr DWORD limitMs = 60000;
    return ::WaitForSingleObject(_called.Get(), limitMs) == WAIT_OBJECT_0;
}

STDMETHODIMP RecordingSink::QueryInterface(REFIID iid, void** object)
{
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == _events;
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) RecordingSink::Release()
{
    const ULONG left = --_references;
    if (left == 0) delete this;
    return left;
}

STDMETHODIMP RecordingSink::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

STDMETHODIMP RecordingSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*)
{
    const std::lock_guard guard(_lock);
    _calls.push_back({id, parameters->cArgs, ::GetCurrentThreadId()});
    ::ReleaseSemaphore(_called.Get(), 1, nullptr);
    return S_OK;
}
