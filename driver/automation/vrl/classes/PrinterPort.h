// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"

/// The port of a printer, and questions to the device behind it.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrinterPort final : public AutomationObject<PrinterPort, IPrinterPort> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    STDMETHODIMP get_Name(BSTR* retName) noexcept override;
    STDMETHODIMP get_Description(BSTR* retDescription) noexcept override;
    STDMETHODIMP get_MonitorName(BSTR* retMonitorName) noexcept override;
    STDMETHODIMP get_Bidirectional(VARIANT_BOOL* retBidirectional) noexcept override;
    STDMETHODIMP get_Disconnected(VARIANT_BOOL* retDisconnected) noexcept override;
    STDMETHODIMP StartQuery(IQueryCommand* argCommand, long* retQueryNumber) noexcept override;
    STDMETHODIMP WaitForQuery(long argQueryNumber) noexcept override;
    STDMETHODIMP GetQueryResponse(long argQueryNumber, IQueryResponse** retResponse) noexcept override;

private:
    Bound<PrinterDriverRef> _driver{_lock};
};
