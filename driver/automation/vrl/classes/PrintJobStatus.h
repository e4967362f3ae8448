// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// The state of a job, read from the shared record at the moment of the call.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrintJobStatus final : public AutomationObject<PrintJobStatus, IPrintJobStatus> {
public:
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
};
