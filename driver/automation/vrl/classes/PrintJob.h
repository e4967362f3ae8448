// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/_IPrintJobEvents_CP.h"
#include "vrl/classes/JobBinding.h"

class PrintJobSchedule;
class PrintJobStatus;

/// One job of a queue: a live view on the shared job record, with status, schedule and events.
///
/// The record is loaded once and follows the spooler's notices from then on; a job that was gone by then has a number
/// and a printer only. A child has its own counts and outlives the `PrintJob` if the caller keeps it. Threading: any
/// thread.
class PrintJob final : public AutomationObject<PrintJob, IPrintJob>, public IPrintJobEvents_CP<PrintJob> {
public:
    PrintJob();
    ~PrintJob();

    HRESULT FinalConstruct() noexcept;
    void BeforeLastRelease() noexcept;
    void FinalRelease();

    STDMETHODIMP Initialize(BSTR argPrinterName, long argJobID) noexcept override;

    // A refusal of the spooler looks like success.

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

    /// Enters this object in the list of the job's objects with sinks. E_POINTER for an object that is not bound: bind
    /// it before a sink is connected.
    HRESULT FirstSinkConnecting() noexcept;
    void LastSinkGone() noexcept;

    Bound<JobBinding>::Hold CheckBound() const { return _job.Check<JobNotInitialized_E>(); }

private:
    HRESULT BindChildren();
    HRESULT Control(void (XJob::*operation)()) noexcept;

    Bound<JobBinding> _job{_lock};
    Microsoft::WRL::ComPtr<PrintJobStatus> _jobStatus;
    Microsoft::WRL::ComPtr<PrintJobSchedule> _jobSchedule;
};
