// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/frame/Collection.h"

/// A collection of jobs that the caller or a queue fills, with ours or with objects of the caller's own. It does not
/// track the queue. A job is known by its printer's name, compared case-sensitively, and its number: two objects of one
/// job count as one.
///
/// Ownership: one reference on each entry. Threading: any thread.
class PrintJobs final : public AutomationObject<PrintJobs, IPrintJobs> {
public:
    STDMETHODIMP get__NewEnum(IUnknown** retEnum) noexcept override;
    /// By number from 1 on.
    STDMETHODIMP get_Item(long Index, IPrintJob** retJob) noexcept override;
    STDMETHODIMP get_Count(long* retCount) noexcept override;
    /// A new `PrintJob` that is bound to nothing and not in the collection.
    STDMETHODIMP Create(IPrintJob** retJob) noexcept override;
    /// S_FALSE for a job that is there.
    STDMETHODIMP Add(IPrintJob* argJob) noexcept override;
    /// S_FALSE for a job that isn't there.
    STDMETHODIMP Remove(IPrintJob* argJob) noexcept override;
    STDMETHODIMP RemoveAll() noexcept override;
    /// Null and S_FALSE for a job that isn't there.
    STDMETHODIMP Find(BSTR argPrinterName, long argJobID, IPrintJob** retJob) noexcept override;

private:
    using Entry = Collection<IPrintJob>::Entry;

    Entry FindEntry(const OString& printerName, long jobID) const;

    Collection<IPrintJob> _jobs;
};
