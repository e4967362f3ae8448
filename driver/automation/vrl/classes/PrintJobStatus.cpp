// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobStatus.h"

STDMETHODIMP PrintJobStatus::get_Text(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Spooling(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Printing(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Paused(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Cancelled(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Sent(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Printed(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Completed(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_UserInterventionRequired(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobStatus::get_Restarted(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}
