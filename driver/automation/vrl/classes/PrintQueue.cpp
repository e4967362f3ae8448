// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintQueue.h"

#include "vrl/classes/PrintJob.h"
#include "vrl/frame/Bstr.h"

namespace {

/// Puts an object for job `jobID` into the collection, whose answer is not looked at.
HRESULT AddJob(IPrintJobs& jobs, BSTR printerName, unsigned long jobID)
{
    Microsoft::WRL::ComPtr<PrintJob> job;
    HRESULT result = CreateInstance(job.GetAddressOf());
    if (SUCCEEDED(result)) result = job->Initialize(printerName, static_cast<long>(jobID));
    if (FAILED(result)) return result;
    jobs.Add(job.Get());
    return S_OK;
}

} // namespace

HRESULT PrintQueue::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrintQueue::Initialize", [&] { return RebindToPrinter(_xPrinter, printer); });
}

// Deliberate: the filter is not read.
STDMETHODIMP PrintQueue::EnumerateJobs(IPrintJobs* argJobsCollection, VARIANT) noexcept
{
    return Guard("PrintQueue::EnumerateJobs", [&]() -> HRESULT {
        if (!argJobsCollection) throw InvalidArgument_E();
        const auto xPrinter = CheckBound();
        OTypedArray<unsigned long> jobIDs;
        (*xPrinter)->EnumJobIds(jobIDs);
        const OBstr printerName = ToBstr((*xPrinter)->GetPrinterName());
        for (int i = 0; i < jobIDs.GetSize(); ++i) {
            const HRESULT result = AddJob(*argJobsCollection, printerName.Get(), jobIDs.GetAt(i));
            if (FAILED(result)) return result;
        }
        return S_OK;
    });
}

// Deliberate: unlike the other two, it answers E_POINTER for an object that is not bound, without error information.
STDMETHODIMP PrintQueue::Pause() noexcept
{
    if (!_xPrinter.Get()) return E_POINTER;
    return Call("PrintQueue::Pause", &XPrinter::Pause);
}

STDMETHODIMP PrintQueue::Resume() noexcept
{
    return Call("PrintQueue::Resume", &XPrinter::Resume);
}

STDMETHODIMP PrintQueue::Purge() noexcept
{
    return Call("PrintQueue::Purge", &XPrinter::Purge);
}

HRESULT PrintQueue::FirstSinkConnecting() noexcept
{
    const auto xPrinter = _xPrinter.Get();
    if (!xPrinter) return E_POINTER;
    return Guard("PrintQueue::Advise", [&] {
        (*xPrinter)->StartStatusThread();
        const auto references = (*xPrinter)->LockQueueReferences();
        if (IsConnected()) (*xPrinter)->AddQueueReference(*this); // the sink may have gone again on another thread
    });
}

void PrintQueue::LastSinkGone() noexcept
{
    const auto xPrinter = _xPrinter.Get();
    if (!xPrinter) return;
    const auto references = (*xPrinter)->LockQueueReferences();
    if (!IsConnected()) (*xPrinter)->RemoveQueueReference(*this); // or another may have come
}
