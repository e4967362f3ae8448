// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"

/// Priority and time window of a job, or those that a printer gives to new jobs.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrintJobSchedule final : public AutomationObject<PrintJobSchedule, IPrintJobSchedule> {
public:
    /// Binds to the printer that `printer` names; an equal name keeps the printer that the object has.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP get_Priority(long* retPriority) noexcept override;
    STDMETHODIMP put_Priority(long argPriority) noexcept override;
    STDMETHODIMP get_StartTime(BSTR* retStartTime) noexcept override;
    STDMETHODIMP put_StartTime(BSTR argStartTime) noexcept override;
    STDMETHODIMP get_UntilTime(BSTR* retUntilTime) noexcept override;
    STDMETHODIMP put_UntilTime(BSTR argUntilTime) noexcept override;

private:
    Bound<XPrinterRef> _xPrinter{_lock};
};
