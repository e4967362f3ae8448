// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <atomic>
#include <mutex>
#include <vector>

/// An event sink that answers to the event interfaces of its choice and records what it is told.
///
/// Ownership: counted; `References` tells how many there are. Threads: any.
class RecordingSink final : public IDispatch {
public:
    struct Call {
        DISPID id;
        UINT arguments;
        DWORD threadId;
    };

    /// A sink for the event interface `events`, and for IDispatch.
    static Microsoft::WRL::ComPtr<RecordingSink> Create(REFIID events);

    RecordingSink(const RecordingSink&) = delete;
    RecordingSink& operator=(const RecordingSink&) = delete;

    /// References that are held now.
    ULONG References() const noexcept { return _references; }

    std::vector<Call> Calls() const;

    /// Waits until an event has come, with a limit of a minute; the wait uses up one.
    bool WaitForCall() const;

    // IUnknown and IDispatch

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override;

private:
    explicit RecordingSink(REFIID events);
    virtual ~RecordingSink() = default;

    const IID _events;
    const OWaitHandle _called;
    std::atomic<ULONG> _references{1};
    mutable std::mutex _lock;
    std::vector<Call> _calls;
};
