// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// Which groups of a driver's settings are meant.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrinterConfigurationFilter final
    : public AutomationObject<PrinterConfigurationFilter, IPrinterConfigurationFilter> {
public:
    STDMETHODIMP get_Stocks(VARIANT_BOOL* retStocks) noexcept override;
    STDMETHODIMP put_Stocks(VARIANT_BOOL argStocks) noexcept override;
    STDMETHODIMP get_Presets(VARIANT_BOOL* retPresets) noexcept override;
    STDMETHODIMP put_Presets(VARIANT_BOOL argPresets) noexcept override;
    STDMETHODIMP get_UtilityFonts(VARIANT_BOOL* retUtilityFonts) noexcept override;
    STDMETHODIMP put_UtilityFonts(VARIANT_BOOL argUtilityFonts) noexcept override;
    STDMETHODIMP get_FontSubstitutions(VARIANT_BOOL* retFontSubstitutions) noexcept override;
    STDMETHODIMP put_FontSubstitutions(VARIANT_BOOL argFontSubstitutions) noexcept override;
    STDMETHODIMP get_DownloadedFonts(VARIANT_BOOL* retDownloadedFonts) noexcept override;
    STDMETHODIMP put_DownloadedFonts(VARIANT_BOOL argDownloadedFonts) noexcept override;
    STDMETHODIMP get_OptionalFonts(VARIANT_BOOL* retOptionalFonts) noexcept override;
    STDMETHODIMP put_OptionalFonts(VARIANT_BOOL argOptionalFonts) noexcept override;
    STDMETHODIMP get_PrinterProperties(VARIANT_BOOL* retPrinterProperties) noexcept override;
    STDMETHODIMP put_PrinterProperties(VARIANT_BOOL argPrinterProperties) noexcept override;
    STDMETHODIMP get_PrintingPreferences(VARIANT_BOOL* retPrintingPreferences) noexcept override;
    STDMETHODIMP put_PrintingPreferences(VARIANT_BOOL argPrintingPreferences) noexcept override;
    STDMETHODIMP get_NetworkSettings(VARIANT_BOOL* retNetworkSettings) noexcept override;
    STDMETHODIMP put_NetworkSettings(VARIANT_BOOL argNetworkSettings) noexcept override;
};
