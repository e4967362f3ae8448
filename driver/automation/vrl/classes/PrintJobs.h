// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// A collection of jobs that the caller or a queue fills. It does not track the queue.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrintJobs final : public AutomationObject<PrintJobs, IPrintJobs> {
public:
    STDMETHODIMP get__NewEnum(IUnknown** retEnum) noexcept override;
    STDMETHODIMP get_Item(long Index, IPrintJob** retJob) noexcept override;
    STDMETHODIMP get_Count(long* retCount) noexcept override;
    STDMETHODIMP Create(IPrintJob** retJob) noexcept override;
    STDMETHODIMP Add(IPrintJob* argJob) noexcept override;
    STDMETHODIMP Remove(IPrintJob* argJob) noexcept override;
    STDMETHODIMP RemoveAll() noexcept override;
    STDMETHODIMP Find(BSTR argPrinterName, long argJobID, IPrintJob** retJob) noexcept override;
};
