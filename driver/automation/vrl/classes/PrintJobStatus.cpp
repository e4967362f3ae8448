// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobStatus.h"

HRESULT PrintJobStatus::Initialize(IPrintJob* job) noexcept
{
    return Guard("PrintJobStatus::Initialize", [&] { return RebindToJob(_job, job); });
}

STDMETHODIMP PrintJobStatus::get_Text(BSTR* retText) noexcept
{
    return Get("PrintJobStatus::get_Text", Checks::BoundThenOut, retText, &XJob::GetStatusText);
}

STDMETHODIMP PrintJobStatus::get_Spooling(VARIANT_BOOL* retSpooling) noexcept
{
    return Get("PrintJobStatus::get_Spooling", Checks::BoundThenOut, retSpooling, &XJob::IsSpooling);
}

STDMETHODIMP PrintJobStatus::get_Printing(VARIANT_BOOL* retPrinting) noexcept
{
    return Get("PrintJobStatus::get_Printing", Checks::BoundThenOut, retPrinting, &XJob::IsPrinting);
}

STDMETHODIMP PrintJobStatus::get_Paused(VARIANT_BOOL* retPaused) noexcept
{
    return Get("PrintJobStatus::get_Paused", Checks::BoundThenOut, retPaused, &XJob::IsPaused);
}

STDMETHODIMP PrintJobStatus::get_Cancelled(VARIANT_BOOL* retCancelled) noexcept
{
    return Get("PrintJobStatus::get_Cancelled", Checks::BoundThenOut, retCancelled, &XJob::IsCancelled);
}

STDMETHODIMP PrintJobStatus::get_Sent(VARIANT_BOOL* retSent) noexcept
{
    return Get("PrintJobStatus::get_Sent", Checks::BoundThenOut, retSent, &XJob::IsSent);
}

STDMETHODIMP PrintJobStatus::get_Printed(VARIANT_BOOL* retPrinted) noexcept
{
    return Get("PrintJobStatus::get_Printed", Checks::BoundThenOut, retPrinted, &XJob::IsPrinted);
}

STDMETHODIMP PrintJobStatus::get_Completed(VARIANT_BOOL* retCompleted) noexcept
{
    return Get("PrintJobStatus::get_Completed", Checks::BoundThenOut, retCompleted, &XJob::IsCompleted);
}

STDMETHODIMP PrintJobStatus::get_UserInterventionRequired(VARIANT_BOOL* retUserInterventionRequired) noexcept
{
    return Get("PrintJobStatus::get_UserInterventionRequired", Checks::BoundThenOut, retUserInterventionRequired,
               &XJob::IsUserInterventionRequired);
}

STDMETHODIMP PrintJobStatus::get_Restarted(VARIANT_BOOL* retRestarted) noexcept
{
    return Get("PrintJobStatus::get_Restarted", Checks::BoundThenOut, retRestarted, &XJob::IsRestarted);
}
