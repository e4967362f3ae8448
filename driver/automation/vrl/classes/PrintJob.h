// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/_IPrintJobEvents_CP.h"

/// One job of a queue: a live view on the shared job record, with status, schedule and events.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL, and no sink can be connected.
class PrintJob final : public AutomationObject<PrintJob, IPrintJob>, public IPrintJobEvents_CP<PrintJob> {
public:
    STDMETHODIMP Initialize(BSTR argPrinterName, long argJobID) noexcept override;
    STDMETHODIMP Cancel() noexcept override;
    STDMETHODIMP Pause() noexcept override;
    STDMETHODIMP Resume() noexcept override;
    STDMETHODIMP Restart() noexcept override;
    STDMETHODIMP get_JobId(long* retJobId) noexcept override;
    STDMETHODIMP get_PrinterName(BSTR* retPrinterName) noexcept override;
    STDMETHODIMP get_Name(BSTR* retName) noexcept override;
    STDMETHODIMP get_MachineName(BSTR* retMachineName) noexcept override;
    STDMETHODIMP get_UserName(BSTR* retUserName) noexcept override;
    STDMETHODIMP get_SubmittedTime(DATE* retSubmittedTime) noexcept override;
    STDMETHODIMP get_TotalPages(long* retTotalPages) noexcept override;
    STDMETHODIMP get_PagesPrinted(long* retPagesPrinted) noexcept override;
    STDMETHODIMP get_Size(long* retSize) noexcept override;
    STDMETHODIMP get_DataType(BSTR* retDataType) noexcept override;
    STDMETHODIMP get_NotifyUser(BSTR* retNotifyUser) noexcept override;
    STDMETHODIMP put_NotifyUser(BSTR argNotifyUser) noexcept override;
    STDMETHODIMP get_PrintProcessor(BSTR* retPrintProcessor) noexcept override;
    STDMETHODIMP get_Status(IPrintJobStatus** retStatus) noexcept override;
    STDMETHODIMP get_Schedule(IPrintJobSchedule** retSchedule) noexcept override;

    // Events

    HRESULT FirstSinkConnecting() noexcept;
    void LastSinkGone() noexcept;
};
