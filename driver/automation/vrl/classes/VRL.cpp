// SPDX-License-Identifier: MIT
#include "vrl/classes/VRL.h"

STDMETHODIMP VRL::get_Version(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP VRL::get_Platform(BSTR*) noexcept
{
    return E_NOTIMPL;
}
