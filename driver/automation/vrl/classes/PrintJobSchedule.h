// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/JobBinding.h"

/// Priority and time window of a job, or those that a printer gives to new jobs. Times are texts in local time; the
/// spooler keeps minutes since midnight UTC.
///
/// A job's values are those of the shared record, which a write reaches only when the spooler tells of the change. A
/// refused write looks like success.
/// Threading: any thread.
class PrintJobSchedule final : public AutomationObject<PrintJobSchedule, IPrintJobSchedule> {
public:
    /// Binds to the job that `job` names; an equal printer name keeps the printer that the object has.
    HRESULT Initialize(IPrintJob* job) noexcept;
    /// Binds to the printer that `printer` names, and to no job; an equal name keeps the printer that the object has.
    HRESULT Initialize(IPrinter* printer) noexcept;
    void FinalRelease() { _job.Clear(); }

    STDMETHODIMP get_Priority(long* retPriority) noexcept override;
    STDMETHODIMP put_Priority(long argPriority) noexcept override;
    STDMETHODIMP get_StartTime(BSTR* retStartTime) noexcept override;
    STDMETHODIMP put_StartTime(BSTR argStartTime) noexcept override;
    STDMETHODIMP get_UntilTime(BSTR* retUntilTime) noexcept override;
    STDMETHODIMP put_UntilTime(BSTR argUntilTime) noexcept override;

    /// What the schedule speaks of: a job if there is one, else a printer.
    class Subject;
    Subject CheckBound() const;

private:
    Bound<JobBinding> _job{_lock};
};
