// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterConfigurationFilter.h"

STDMETHODIMP PrinterConfigurationFilter::get_Stocks(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_Stocks(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_Presets(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_Presets(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_UtilityFonts(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_UtilityFonts(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_FontSubstitutions(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_FontSubstitutions(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_DownloadedFonts(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_DownloadedFonts(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_OptionalFonts(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_OptionalFonts(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_PrinterProperties(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_PrinterProperties(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_PrintingPreferences(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_PrintingPreferences(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::get_NetworkSettings(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterConfigurationFilter::put_NetworkSettings(VARIANT_BOOL) noexcept
{
    return E_NOTIMPL;
}
