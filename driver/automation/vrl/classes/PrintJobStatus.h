// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/JobBinding.h"

/// The state of a job, read from the shared record at the moment of the call.
/// Threading: any thread.
class PrintJobStatus final : public AutomationObject<PrintJobStatus, IPrintJobStatus> {
public:
    /// Binds to the job that `job` names; an equal printer name keeps the printer that the object has.
    HRESULT Initialize(IPrintJob* job) noexcept;
    void FinalRelease() { _job.Clear(); }

    STDMETHODIMP get_Text(BSTR* retText) noexcept override;
    STDMETHODIMP get_Spooling(VARIANT_BOOL* retSpooling) noexcept override;
    STDMETHODIMP get_Printing(VARIANT_BOOL* retPrinting) noexcept override;
    STDMETHODIMP get_Paused(VARIANT_BOOL* retPaused) noexcept override;
    STDMETHODIMP get_Cancelled(VARIANT_BOOL* retCancelled) noexcept override;
    STDMETHODIMP get_Sent(VARIANT_BOOL* retSent) noexcept override;
    STDMETHODIMP get_Printed(VARIANT_BOOL* retPrinted) noexcept override;
    STDMETHODIMP get_Completed(VARIANT_BOOL* retCompleted) noexcept override;
    STDMETHODIMP get_UserInterventionRequired(VARIANT_BOOL* retUserInterventionRequired) noexcept override;
    STDMETHODIMP get_Restarted(VARIANT_BOOL* retRestarted) noexcept override;

    Bound<JobBinding>::Hold CheckBound() const { return _job.Check<JobStatusNotInitialized_E>(); }

private:
    Bound<JobBinding> _job{_lock};
};
