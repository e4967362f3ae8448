// SPDX-License-Identifier: MIT
#include "bench/CountingSink.h"

#include <stdexcept>

using Microsoft::WRL::ComPtr;

ComPtr<CountingSink> CountingSink::Create()
{
    ComPtr<CountingSink> sink;
    *sink.GetAddressOf() = new CountingSink; // it is made with one reference
    return sink;
}

void CountingSink::Wait() const
{
    constexpr DWORD limitMs = 60000;
    if (::WaitForSingleObject(_done.Get(), limitMs) != WAIT_OBJECT_0) throw std::runtime_error("events are missing");
}

STDMETHODIMP CountingSink::QueryInterface(REFIID, void** object)
{
    *object = static_cast<IDispatch*>(this); // for whatever events it is asked
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CountingSink::Release()
{
    const ULONG left = --_references;
    if (left == 0) delete this;
    return left;
}

STDMETHODIMP CountingSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
{
    _entered = Clock::now();
    if (_event != DISPID_UNKNOWN && _event != id) return S_OK;
    if (--_missing == 0) ::SetEvent(_done.Get());
    return S_OK;
}
