// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"

/// What the driver says that a printer can do: nothing cached, every member asks the driver.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrinterCapabilities final : public AutomationObject<PrinterCapabilities, IPrinterCapabilities> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP get_Collate(VARIANT_BOOL* retCollate) noexcept override;
    STDMETHODIMP get_Color(VARIANT_BOOL* retColor) noexcept override;
    STDMETHODIMP get_Duplex(VARIANT_BOOL* retDuplex) noexcept override;
    STDMETHODIMP get_MaximumCopies(unsigned long* retMaximumCopies) noexcept override;
    STDMETHODIMP get_PrintSpeed(BSTR* retPrintSpeed) noexcept override;
    STDMETHODIMP get_Staple(VARIANT_BOOL* retStaple) noexcept override;

private:
    Bound<XPrinterRef> _xPrinter{_lock};
};
