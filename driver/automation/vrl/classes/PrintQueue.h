// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/_IPrintQueueEvents_CP.h"
#include "vrl/classes/PrinterBinding.h"

/// The queue of a printer, and the source of the events of all its jobs.
///
/// A refusal of the spooler to pause, resume or purge looks like success.
/// Threading: any thread.
class PrintQueue final : public AutomationObject<PrintQueue, IPrintQueue>, public IPrintQueueEvents_CP<PrintQueue> {
public:
    /// Binds to the printer that `printer` names; an equal name keeps the printer that the object has.
    HRESULT Initialize(IPrinter* printer) noexcept;
    void FinalRelease() { _xPrinter.Clear(); }

    /// Puts an object for each job of the queue into the collection, which is not emptied first.
    STDMETHODIMP EnumerateJobs(IPrintJobs* argJobsCollection, VARIANT argFilter) noexcept override;
    STDMETHODIMP Pause() noexcept override;
    STDMETHODIMP Resume() noexcept override;
    STDMETHODIMP Purge() noexcept override;

    // Events

    /// Starts the printer's notification thread and enters this object in the printer's list of queues with sinks.
    /// E_POINTER for an object that is not bound: bind it before a sink is connected.
    HRESULT FirstSinkConnecting() noexcept;
    void LastSinkGone() noexcept;

    Bound<XPrinterRef>::Hold CheckBound() const { return _xPrinter.Check<InvalidPrinter_E>(); }

private:
    Bound<XPrinterRef> _xPrinter{_lock};
};
