// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/_IPrintQueueEvents_CP.h"
#include "vrl/classes/PrinterBinding.h"

/// The queue of a printer, and the source of the events of all its jobs.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL, and no sink can be connected.
class PrintQueue final : public AutomationObject<PrintQueue, IPrintQueue>, public IPrintQueueEvents_CP<PrintQueue> {
public:
    /// Binds to the printer that `printer` names; an equal name keeps the printer that the object has.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP EnumerateJobs(IPrintJobs* argJobsCollection, VARIANT argFilter) noexcept override;
    STDMETHODIMP Pause() noexcept override;
    STDMETHODIMP Resume() noexcept override;
    STDMETHODIMP Purge() noexcept override;

    // Events

    HRESULT FirstSinkConnecting() noexcept;
    void LastSinkGone() noexcept;

private:
    Bound<XPrinterRef> _xPrinter{_lock};
};
