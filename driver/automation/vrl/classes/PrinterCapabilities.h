// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"

/// What the driver says that a printer can do. Nothing is kept: every member asks the driver (DeviceCapabilitiesW).
///
/// Threading: any thread. Errors: `PrinterCapabilityUnknown_E` where the driver doesn't know the capability.
class PrinterCapabilities final : public AutomationObject<PrinterCapabilities, IPrinterCapabilities> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    /// The printer. Throws `PrinterNotInitialized_E`: this class has no failure of its own for that.
    Bound<XPrinterRef>::Hold CheckBound() const { return _xPrinter.Check<PrinterNotInitialized_E>(); }

    STDMETHODIMP get_Collate(VARIANT_BOOL* retCollate) noexcept override;
    STDMETHODIMP get_Color(VARIANT_BOOL* retColor) noexcept override;
    STDMETHODIMP get_Duplex(VARIANT_BOOL* retDuplex) noexcept override;
    STDMETHODIMP get_MaximumCopies(unsigned long* retMaximumCopies) noexcept override;
    /// The rate and its unit, such as "4 ppm".
    STDMETHODIMP get_PrintSpeed(BSTR* retPrintSpeed) noexcept override;
    STDMETHODIMP get_Staple(VARIANT_BOOL* retStaple) noexcept override;

private:
    Bound<XPrinterRef> _xPrinter{_lock};
};
