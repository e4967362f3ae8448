// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "vrl/frame/AutomationObject.h"
#include "vrl/frame/Bound.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/classes/_IPrinterEvents_CP.h"

class PrinterCapabilities;
class PrinterConfiguration;
class PrinterPort;
class PrinterStatus;
class PrintJobSchedule;
class PrintQueue;

/// The object that a caller holds for one print queue of the machine: its properties, its files to send, its children.
///
/// Every property goes to the shared `XPrinter`, which asks the spooler each time. A child has its own count on the
/// `XPrinter` and outlives the `Printer` if the caller keeps it.
/// Threading: any thread. Two threads in `Initialize` of one object at once leave it bound to either printer.
class Printer final : public AutomationObject<Printer, IPrinter>, public IPrinterEvents_CP<Printer> {
public:
    Printer();
    ~Printer();

    HRESULT FinalConstruct() noexcept;
    void FinalRelease();

    /// The printer. Throws `PrinterNotInitialized_E`.
    Bound<XPrinterRef>::Hold CheckBound() const { return _xPrinter.Check<PrinterNotInitialized_E>(); }

    STDMETHODIMP Initialize(BSTR argPrinterName) noexcept override;
    STDMETHODIMP SendFile(BSTR argFileName, BSTR argJobName) noexcept override;

    STDMETHODIMP get_Name(BSTR* retName) noexcept override;
    STDMETHODIMP get_ServerName(BSTR* retServerName) noexcept override;
    STDMETHODIMP get_ShareName(BSTR* retShareName) noexcept override;
    STDMETHODIMP put_ShareName(BSTR argShareName) noexcept override;
    STDMETHODIMP get_PortName(BSTR* retPortName) noexcept override;
    STDMETHODIMP put_PortName(BSTR argPortName) noexcept override;
    STDMETHODIMP get_ModelName(BSTR* retModelName) noexcept override;
    STDMETHODIMP get_Comment(BSTR* retComment) noexcept override;
    STDMETHODIMP put_Comment(BSTR argComment) noexcept override;
    STDMETHODIMP get_Location(BSTR* retLocation) noexcept override;
    STDMETHODIMP put_Location(BSTR argLocation) noexcept override;
    STDMETHODIMP get_Local(VARIANT_BOOL* retLocal) noexcept override;
    STDMETHODIMP get_Network(VARIANT_BOOL* retNetwork) noexcept override;
    STDMETHODIMP get_Shared(VARIANT_BOOL* retShared) noexcept override;
    STDMETHODIMP put_Shared(VARIANT_BOOL argShared) noexcept override;

    STDMETHODIMP get_Queue(IPrintQueue** retQueue) noexcept override;
    STDMETHODIMP get_Status(IPrinterStatus** retStatus) noexcept override;
    STDMETHODIMP get_Configuration(IPrinterConfiguration** retConfiguration) noexcept override;
    STDMETHODIMP get_Port(IPrinterPort** retPort) noexcept override;
    STDMETHODIMP get_DefaultSchedule(IPrintJobSchedule** retDefaultSchedule) noexcept override;
    STDMETHODIMP get_Capabilities(IPrinterCapabilities** retCapabilities) noexcept override;

    // Events

    /// Starts the printer's notification thread and enters this object in the printer's list of objects with sinks.
    /// E_POINTER for an object that is not bound: bind it before a sink is connected.
    HRESULT FirstSinkConnecting() noexcept;
    void LastSinkGone() noexcept;

private:
    void BindPrinter(const OString& name);
    HRESULT BindChildren();

    OString _printerName GUARDED_BY(_lock); // as given to the last `Initialize`
    Bound<XPrinterRef> _xPrinter{_lock};
    Microsoft::WRL::ComPtr<PrintQueue> _printQueue;
    Microsoft::WRL::ComPtr<PrinterStatus> _printerStatus;
    Microsoft::WRL::ComPtr<PrinterConfiguration> _printerConfiguration;
    Microsoft::WRL::ComPtr<PrinterPort> _printerPort;
    Microsoft::WRL::ComPtr<PrintJobSchedule> _defaultSchedule;
    Microsoft::WRL::ComPtr<PrinterCapabilities> _printerCapabilities;
};
