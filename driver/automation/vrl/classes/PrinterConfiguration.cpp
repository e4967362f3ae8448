// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterConfiguration.h"

HRESULT PrinterConfiguration::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterConfiguration::Initialize", [&] { return BindToPrinter(_driver, printer); });
}

STDMETHODIMP PrinterConfiguration::Import(BSTR, VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfiguration::Export(BSTR, VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfiguration::ResetToDefaults(VARIANT) noexcept
{
    return E_NOTIMPL;
}
