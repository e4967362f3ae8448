// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/JobEvents.h"

#include <oaidl.h>
#include <wrl/client.h>

#include "vrl/Vorlane.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

/// One event of a job as a sink hears it, without the objects that it carries.
struct TalliedEvent {
    DISPID id;
    long oldValue = 0; ///< of a changed number, like `newValue`
    long newValue = 0;
};

/// A sink for job events that takes no time: it keeps the events of each job, in order.
///
/// Ownership: a local of the test, which outlives its connections. Threads: any.
class TallySink final : public IDispatch {
public:
    using Events = std::vector<TalliedEvent>;

    /// Events of each job so far, by job number; none are left.
    std::map<long, Events> Take()
    {
        const std::lock_guard guard(_lock);
        return std::exchange(_events, {});
    }

    /// Jobs that became final.
    DWORD Finalized() const noexcept { return _finalized; }

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override
    {
        constexpr UINT withNumbers = 3;
        const UINT count = parameters->cArgs;
        TalliedEvent event{id};
        if (count == withNumbers) {
            event.oldValue = parameters->rgvarg[1].lVal;
            event.newValue = parameters->rgvarg[0].lVal;
        }
        Microsoft::WRL::ComPtr<IPrintJob> job;
        long jobId = 0;
        Microsoft::WRL::ComPtr<IDispatch>(parameters->rgvarg[count - 1].pdispVal).As(&job);
        if (job) job->get_JobId(&jobId);
        const std::lock_guard guard(_lock);
        _events[jobId].push_back(event);
        if (id == onJobFinalized) ++_finalized;
        return S_OK;
    }

private:
    std::mutex _lock;
    std::map<long, Events> _events;
    std::atomic<DWORD> _finalized{0};
};
