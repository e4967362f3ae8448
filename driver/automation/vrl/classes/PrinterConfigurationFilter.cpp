// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterConfigurationFilter.h"

/// A plain field goes out as it came in: no wrapper, and no text for a null pointer.
HRESULT PrinterConfigurationFilter::Give(VARIANT_BOOL* out, const Field& field) noexcept
{
    if (!out) return E_POINTER;
    *out = field;
    return S_OK;
}

HRESULT PrinterConfigurationFilter::Keep(Field& field, VARIANT_BOOL value) noexcept
{
    field = value;
    return S_OK;
}

STDMETHODIMP PrinterConfigurationFilter::get_Stocks(VARIANT_BOOL* retStocks) noexcept
{
    return Give(retStocks, _stocks);
}

STDMETHODIMP PrinterConfigurationFilter::put_Stocks(VARIANT_BOOL argStocks) noexcept
{
    return Keep(_stocks, argStocks);
}

STDMETHODIMP PrinterConfigurationFilter::get_Presets(VARIANT_BOOL* retPresets) noexcept
{
    return Give(retPresets, _presets);
}

STDMETHODIMP PrinterConfigurationFilter::put_Presets(VARIANT_BOOL argPresets) noexcept
{
    return Keep(_presets, argPresets);
}

STDMETHODIMP PrinterConfigurationFilter::get_UtilityFonts(VARIANT_BOOL* retUtilityFonts) noexcept
{
    return Give(retUtilityFonts, _utilityFonts);
}

STDMETHODIMP PrinterConfigurationFilter::put_UtilityFonts(VARIANT_BOOL argUtilityFonts) noexcept
{
    return Keep(_utilityFonts, argUtilityFonts);
}

STDMETHODIMP PrinterConfigurationFilter::get_FontSubstitutions(VARIANT_BOOL* retFontSubstitutions) noexcept
{
    return Give(retFontSubstitutions, _fontSubstitutions);
}

STDMETHODIMP PrinterConfigurationFilter::put_FontSubstitutions(VARIANT_BOOL argFontSubstitutions) noexcept
{
    return Keep(_fontSubstitutions, argFontSubstitutions);
}

STDMETHODIMP PrinterConfigurationFilter::get_DownloadedFonts(VARIANT_BOOL* retDownloadedFonts) noexcept
{
    return Give(retDownloadedFonts, _downloadedFonts);
}

STDMETHODIMP PrinterConfigurationFilter::put_DownloadedFonts(VARIANT_BOOL argDownloadedFonts) noexcept
{
    return Keep(_downloadedFonts, argDownloadedFonts);
}

STDMETHODIMP PrinterConfigurationFilter::get_OptionalFonts(VARIANT_BOOL* retOptionalFonts) noexcept
{
    return Give(retOptionalFonts, _optionalFonts);
}

STDMETHODIMP PrinterConfigurationFilter::put_OptionalFonts(VARIANT_BOOL argOptionalFonts) noexcept
{
    return Keep(_optionalFonts, argOptionalFonts);
}

STDMETHODIMP PrinterConfigurationFilter::get_PrinterProperties(VARIANT_BOOL* retPrinterProperties) noexcept
{
    return Give(retPrinterProperties, _printerProperties);
}

STDMETHODIMP PrinterConfigurationFilter::put_PrinterProperties(VARIANT_BOOL argPrinterProperties) noexcept
{
    return Keep(_printerProperties, argPrinterProperties);
}

STDMETHODIMP PrinterConfigurationFilter::get_PrintingPreferences(VARIANT_BOOL* retPrintingPreferences) noexcept
{
    return Give(retPrintingPreferences, _printingPreferences);
}

STDMETHODIMP PrinterConfigurationFilter::put_PrintingPreferences(VARIANT_BOOL argPrintingPreferences) noexcept
{
    return Keep(_printingPreferences, argPrintingPreferences);
}

STDMETHODIMP PrinterConfigurationFilter::get_NetworkSettings(VARIANT_BOOL* retNetworkSettings) noexcept
{
    return Give(retNetworkSettings, _networkSettings);
}

STDMETHODIMP PrinterConfigurationFilter::put_NetworkSettings(VARIANT_BOOL argNetworkSettings) noexcept
{
    return Keep(_networkSettings, argNetworkSettings);
}
