// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintersFilter.h"

STDMETHODIMP PrintersFilter::get_Local(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintersFilter::put_Local(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintersFilter::get_Network(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintersFilter::put_Network(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintersFilter::get_Shared(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintersFilter::put_Shared(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}
