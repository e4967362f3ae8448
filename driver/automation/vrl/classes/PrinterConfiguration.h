// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"

/// Saves, loads and resets the settings that a printer's driver keeps.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrinterConfiguration final : public AutomationObject<PrinterConfiguration, IPrinterConfiguration> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP Import(BSTR argFileName, VARIANT argFilter) noexcept override;
    STDMETHODIMP Export(BSTR argFileName, VARIANT argFilter) noexcept override;
    STDMETHODIMP ResetToDefaults(VARIANT argFilter) noexcept override;

private:
    Bound<PrinterDriverRef> _driver{_lock};
};
