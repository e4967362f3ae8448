// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterCapabilities.h"

HRESULT PrinterCapabilities::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterCapabilities::Initialize", [&] { return BindToPrinter(_xPrinter, printer); });
}

STDMETHODIMP PrinterCapabilities::get_Collate(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterCapabilities::get_Color(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterCapabilities::get_Duplex(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterCapabilities::get_MaximumCopies(unsigned long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterCapabilities::get_PrintSpeed(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterCapabilities::get_Staple(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}
