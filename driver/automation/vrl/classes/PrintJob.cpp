// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJob.h"

STDMETHODIMP PrintJob::Initialize(BSTR, long) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::Cancel() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::Pause() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::Resume() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::Restart() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_JobId(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_PrinterName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_Name(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_MachineName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_UserName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_SubmittedTime(DATE*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_TotalPages(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_PagesPrinted(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_Size(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_DataType(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_NotifyUser(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::put_NotifyUser(BSTR) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_PrintProcessor(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_Status(IPrintJobStatus**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJob::get_Schedule(IPrintJobSchedule**) noexcept
{
    return E_NOTIMPL;
}

HRESULT PrintJob::FirstSinkConnecting() noexcept
{
    return E_NOTIMPL;
}

void PrintJob::LastSinkGone() noexcept {}
