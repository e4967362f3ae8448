// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJob.h"

#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/classes/PrintJobStatus.h"
#include "vrl/core/XPrinter.h"

namespace {

/// In the caller's time zone. Throws `SystemError_E`.
DATE LocalDate(const SYSTEMTIME& utc)
{
    SYSTEMTIME local{};
    DATE date = 0;
    if (!::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) || !::SystemTimeToVariantTime(&local, &date)) {
        throw SystemError_E();
    }
    return date;
}

} // namespace

PrintJob::PrintJob() = default;
PrintJob::~PrintJob() = default;

HRESULT PrintJob::FinalConstruct() noexcept
{
    return Guard("PrintJob::FinalConstruct", [&] {
        CreateChild(_jobStatus);
        CreateChild(_jobSchedule);
    });
}

void PrintJob::BeforeLastRelease() noexcept
{
    if (!IsListed()) return; // and so waits for nobody
    if (const auto job = _job.Get(); job && *job) (*job)->RemoveJobReference(*this);
}

void PrintJob::FinalRelease()
{
    _job.Clear();
    _jobStatus.Reset();
    _jobSchedule.Reset();
}

STDMETHODIMP PrintJob::Initialize(BSTR argPrinterName, long argJobID) noexcept
{
    return Guard("PrintJob::Initialize", [&] {
        BindToJob(_job, FromBstr(argPrinterName), static_cast<DWORD>(argJobID), this);
        const HRESULT result = BindChildren();
        if (FAILED(result)) return result;
        CheckBound()->xPrinter->StartStatusThread();
        return S_OK;
    });
}

HRESULT PrintJob::BindChildren()
{
    const HRESULT result = _jobStatus->Initialize(this);
    return FAILED(result) ? result : _jobSchedule->Initialize(this);
}

STDMETHODIMP PrintJob::Cancel() noexcept
{
    return Control(&XJob::Cancel);
}

STDMETHODIMP PrintJob::Pause() noexcept
{
    return Control(&XJob::Pause);
}

STDMETHODIMP PrintJob::Resume() noexcept
{
    return Control(&XJob::Resume);
}

STDMETHODIMP PrintJob::Restart() noexcept
{
    return Control(&XJob::Restart);
}

/// An object that is not bound has nothing to control; E_POINTER, without error information.
HRESULT PrintJob::Control(void (XJob::*operation)()) noexcept
{
    const auto job = _job.Get();
    if (!job || !*job) return E_POINTER;
    Contain([&] { ((**job).*operation)(); });
    return S_OK;
}

STDMETHODIMP PrintJob::get_JobId(long* retJobId) noexcept
{
    return Get("PrintJob::get_JobId", Checks::BoundThenOut, retJobId, &XJob::GetJobID);
}

STDMETHODIMP PrintJob::get_PrinterName(BSTR* retPrinterName) noexcept
{
    return Get("PrintJob::get_PrinterName", Checks::BoundThenOut, retPrinterName, &XJob::GetPrinterName);
}

STDMETHODIMP PrintJob::get_Name(BSTR* retName) noexcept
{
    return Get("PrintJob::get_Name", Checks::BoundThenOut, retName, &XJob::GetName);
}

STDMETHODIMP PrintJob::get_MachineName(BSTR* retMachineName) noexcept
{
    return Get("PrintJob::get_MachineName", Checks::BoundThenOut, retMachineName, &XJob::GetMachineName);
}

STDMETHODIMP PrintJob::get_UserName(BSTR* retUserName) noexcept
{
    return Get("PrintJob::get_UserName", Checks::BoundThenOut, retUserName, &XJob::GetUserName);
}

STDMETHODIMP PrintJob::get_SubmittedTime(DATE* retSubmittedTime) noexcept
{
    const auto submitted = [](const JobBinding& job) { return LocalDate(job->GetSubmittedTime()); };
    return Get("PrintJob::get_SubmittedTime", Checks::BoundThenOut, retSubmittedTime, submitted);
}

STDMETHODIMP PrintJob::get_TotalPages(long* retTotalPages) noexcept
{
    return Get("PrintJob::get_TotalPages", Checks::BoundThenOut, retTotalPages, &XJob::GetTotalPages);
}

STDMETHODIMP PrintJob::get_PagesPrinted(long* retPagesPrinted) noexcept
{
    return Get("PrintJob::get_PagesPrinted", Checks::BoundThenOut, retPagesPrinted, &XJob::GetPagesPrinted);
}

STDMETHODIMP PrintJob::get_Size(long* retSize) noexcept
{
    return Get("PrintJob::get_Size", Checks::BoundThenOut, retSize, &XJob::GetSize);
}

STDMETHODIMP PrintJob::get_DataType(BSTR* retDataType) noexcept
{
    return Get("PrintJob::get_DataType", Checks::BoundThenOut, retDataType, &XJob::GetDataType);
}

STDMETHODIMP PrintJob::get_NotifyUser(BSTR* retNotifyUser) noexcept
{
    return Get("PrintJob::get_NotifyUser", Checks::BoundThenOut, retNotifyUser, &XJob::GetNotifyName);
}

STDMETHODIMP PrintJob::put_NotifyUser(BSTR argNotifyUser) noexcept
{
    return Put("PrintJob::put_NotifyUser", &XJob::SetNotifyName, argNotifyUser);
}

STDMETHODIMP PrintJob::get_PrintProcessor(BSTR* retPrintProcessor) noexcept
{
    return Get("PrintJob::get_PrintProcessor", Checks::BoundThenOut, retPrintProcessor, &XJob::GetPrintProcessor);
}

STDMETHODIMP PrintJob::get_Status(IPrintJobStatus** retStatus) noexcept
{
    return GetChild("PrintJob::get_Status", retStatus, _jobStatus);
}

STDMETHODIMP PrintJob::get_Schedule(IPrintJobSchedule** retSchedule) noexcept
{
    return GetChild("PrintJob::get_Schedule", retSchedule, _jobSchedule);
}

HRESULT PrintJob::FirstSinkConnecting() noexcept
{
    const auto job = _job.Get();
    if (!job || !*job) return E_POINTER;
    return Guard("PrintJob::Advise", [&] {
        const auto references = (*job)->LockJobReferences();
        if (IsConnected()) (*job)->AddJobReference(*this); // the sink may have gone again on another thread
    });
}

void PrintJob::LastSinkGone() noexcept
{
    const auto job = _job.Get();
    if (!job || !*job) return;
    const auto references = (*job)->LockJobReferences();
    if (!IsConnected()) (*job)->RemoveJobReference(*this); // or another may have come
}
