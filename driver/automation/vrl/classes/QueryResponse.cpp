// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryResponse.h"

STDMETHODIMP QueryResponse::get_Binary(VARIANT*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryResponse::get_Text(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryResponse::get_Hexadecimal(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryResponse::get_Responded(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryResponse::get_Failed(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryResponse::get_Pending(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}
