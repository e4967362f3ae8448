// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobSchedule.h"

HRESULT PrintJobSchedule::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrintJobSchedule::Initialize", [&] { return RebindToPrinter(_xPrinter, printer); });
}

STDMETHODIMP PrintJobSchedule::get_Priority(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobSchedule::put_Priority(long) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobSchedule::get_StartTime(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobSchedule::put_StartTime(BSTR) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobSchedule::get_UntilTime(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobSchedule::put_UntilTime(BSTR) noexcept
{
    return E_NOTIMPL;
}
