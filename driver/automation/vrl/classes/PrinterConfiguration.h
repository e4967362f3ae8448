// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/classes/PrinterBinding.h"
#include "vrl/frame/AutomationObject.h"

/// Saves, loads and resets the settings that a printer's driver keeps, all of them or the groups that an
/// `IPrinterConfigurationFilter` names.
///
/// The driver does the work: a file name goes to it as it stands, and whether it succeeded nobody knows. S_FALSE says
/// that it can't do such a thing at all.
/// Threading: any thread.
class PrinterConfiguration final : public AutomationObject<PrinterConfiguration, IPrinterConfiguration> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP Import(BSTR argFileName, VARIANT argFilter) noexcept override;
    STDMETHODIMP Export(BSTR argFileName, VARIANT argFilter) noexcept override;
    STDMETHODIMP ResetToDefaults(VARIANT argFilter) noexcept override;

private:
    Bound<PrinterDriverRef>::Hold CheckBound() const { return _driver.Check<PrinterConfigurationNotInitialized_E>(); }

    Bound<PrinterDriverRef> _driver{_lock};
};
