// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobs.h"

#include "vrl/classes/PrintJob.h"

namespace {

/// What tells a job from others in a collection.
struct JobIdentity {
    // Deliberate: whether the object answers is not looked at; one that doesn't has no name and the number 0.
    explicit JobIdentity(IPrintJob& job)
    {
        OBstr name;
        job.get_PrinterName(name.Receive());
        job.get_JobId(&jobID);
        printerName = FromBstr(name.Get());
    }

    OString printerName;
    long jobID = 0;
};

} // namespace

STDMETHODIMP PrintJobs::get__NewEnum(IUnknown** retEnum) noexcept
{
    return Guard("PrintJobs::get__NewEnum", [&] {
        CheckOut(retEnum);
        *retEnum = nullptr;
        *retEnum = _jobs.NewEnum().Detach();
    });
}

STDMETHODIMP PrintJobs::get_Item(long Index, IPrintJob** retJob) noexcept
{
    return Guard("PrintJobs::get_Item", [&] {
        CheckOut(retJob);
        *retJob = nullptr;
        *retJob = _jobs.At(Index).Detach();
    });
}

STDMETHODIMP PrintJobs::get_Count(long* retCount) noexcept
{
    return Guard("PrintJobs::get_Count", [&] {
        CheckOut(retCount);
        *retCount = _jobs.GetCount();
    });
}

STDMETHODIMP PrintJobs::Create(IPrintJob** retJob) noexcept
{
    return Guard("PrintJobs::Create", [&]() -> HRESULT {
        CheckOut(retJob);
        *retJob = nullptr;
        Microsoft::WRL::ComPtr<PrintJob> job;
        const HRESULT result = CreateInstance(job.GetAddressOf());
        if (SUCCEEDED(result)) *retJob = job.Detach();
        return result;
    });
}

STDMETHODIMP PrintJobs::Add(IPrintJob* argJob) noexcept
{
    return Guard("PrintJobs::Add", [&]() -> HRESULT {
        CheckOut(argJob);
        const JobIdentity added(*argJob);
        const OLockGuard guard(_jobs.Lock());
        if (FindEntry(added.printerName, added.jobID)) return S_FALSE;
        _jobs.Add(Entry::Share(argJob));
        return S_OK;
    });
}

STDMETHODIMP PrintJobs::Remove(IPrintJob* argJob) noexcept
{
    return Guard("PrintJobs::Remove", [&]() -> HRESULT {
        CheckOut(argJob);
        const JobIdentity removed(*argJob);
        const Entry entry = FindEntry(removed.printerName, removed.jobID);
        return entry && _jobs.Remove(entry.Get()) ? S_OK : S_FALSE;
    });
}

STDMETHODIMP PrintJobs::RemoveAll() noexcept
{
    return Guard("PrintJobs::RemoveAll", [&] { _jobs.RemoveAll(); });
}

STDMETHODIMP PrintJobs::Find(BSTR argPrinterName, long argJobID, IPrintJob** retJob) noexcept
{
    return Guard("PrintJobs::Find", [&]() -> HRESULT {
        CheckOut(retJob);
        *retJob = nullptr;
        CheckOut(argPrinterName);
        *retJob = FindEntry(FromBstr(argPrinterName), argJobID).Detach();
        return *retJob ? S_OK : S_FALSE;
    });
}

/// The first entry of that job, empty without one.
PrintJobs::Entry PrintJobs::FindEntry(const OString& printerName, long jobID) const
{
    for (Entry& entry : _jobs.Entries()) {
        const JobIdentity identity(*entry.Get());
        if (identity.jobID == jobID && identity.printerName.Compare(printerName) == 0) return std::move(entry);
    }
    return {};
}
