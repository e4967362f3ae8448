// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <atomic>
#include <chrono>

/// A client's sink that counts its calls and keeps the time at which the last one entered.
///
/// Ownership: counted. Threads: one waits, one calls.
class CountingSink final : public IDispatch {
public:
    using Clock = std::chrono::steady_clock;

    static Microsoft::WRL::ComPtr<CountingSink> Create();

    CountingSink(const CountingSink&) = delete;
    CountingSink& operator=(const CountingSink&) = delete;

    /// So many calls are going to be waited for: of any event, or of that one only.
    void Expect(long calls, DISPID event = DISPID_UNKNOWN) noexcept
    {
        _event = event;
        _missing = calls;
    }

    /// Waits for the calls. Throws std::runtime_error if they don't come within a minute.
    void Wait() const;

    /// When the last of the calls that were waited for entered.
    Clock::time_point Entered() const noexcept { return _entered; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override;

private:
    CountingSink() = default;
    virtual ~CountingSink() = default;

    const OWaitHandle _done{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    std::atomic<ULONG> _references{1};
    std::atomic<long> _missing{0};
    std::atomic<DISPID> _event{DISPID_UNKNOWN};
    Clock::time_point _entered;
};
