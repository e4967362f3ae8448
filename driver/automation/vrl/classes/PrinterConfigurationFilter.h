// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

#include <atomic>

/// Which groups of a driver's settings are meant: plain fields that keep what they are given, all false at first.
/// Threading: any thread.
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

private:
    using Field = std::atomic<VARIANT_BOOL>;

    static HRESULT Give(VARIANT_BOOL* out, const Field& field) noexcept;
    static HRESULT Keep(Field& field, VARIANT_BOOL value) noexcept;

    Field _stocks{VARIANT_FALSE};
    Field _presets{VARIANT_FALSE};
    Field _utilityFonts{VARIANT_FALSE};
    Field _fontSubstitutions{VARIANT_FALSE};
    Field _downloadedFonts{VARIANT_FALSE};
    Field _optionalFonts{VARIANT_FALSE};
    Field _printerProperties{VARIANT_FALSE};
    Field _printingPreferences{VARIANT_FALSE};
    Field _networkSettings{VARIANT_FALSE};
};
