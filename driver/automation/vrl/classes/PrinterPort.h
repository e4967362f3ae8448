// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/classes/PrinterBinding.h"
#include "vrl/frame/AutomationObject.h"

#include <atomic>
#include <memory>

/// The port of a printer, and questions to the device behind it. All but the port's description needs a printer with a
/// driver of its own.
///
/// A question has nothing but a number here: the port monitor keeps it under a key that is made from the number, so any
/// object of the same printer can ask for any number, its own or not.
/// Threading: any thread. `WaitForQuery` holds its caller until the monitor tells an end.
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

    Bound<PrinterDriverRef>::Hold CheckBound() const { return _driver.Check<PrinterPortNotInitialized_E>(); }

private:
    /// The machine's ports as they were when they were first asked for.
    struct PortList {
        SpoolerBuffer ports;
        const PORT_INFO_2W* current = nullptr; ///< into `ports`
    };

    Bound<PrinterDriverRef>::Hold CheckAdvanced() const;
    std::shared_ptr<const PortList> FindPort(const XPrinter& xPrinter);
    std::shared_ptr<const PortList> GetPorts() noexcept;
    void SetPorts(std::shared_ptr<const PortList> ports) noexcept;
    HRESULT ReadPortText(const char* function, BSTR* out, wchar_t* PORT_INFO_2W::*field) noexcept;
    OString MakeQueryKey(long number) const;

    Bound<PrinterDriverRef> _driver{_lock};
    std::shared_ptr<const PortList> _ports GUARDED_BY(_lock);
    std::atomic<long> _nextQueryNumber{1};
};
