// SPDX-License-Identifier: MIT
#include "vrl/classes/Printer.h"

#include "vrl/frame/Bstr.h"
#include "vrl/classes/PrinterCapabilities.h"
#include "vrl/classes/PrinterConfiguration.h"
#include "vrl/classes/PrinterPort.h"
#include "vrl/classes/PrinterStatus.h"
#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/classes/PrintQueue.h"
#include "vrl/core/XPrinter.h"

Printer::Printer() = default;
Printer::~Printer() = default;

HRESULT Printer::FinalConstruct() noexcept
{
    return Guard("Printer::FinalConstruct", [&] {
        CreateChild(_printerStatus);
        CreateChild(_printQueue);
        CreateChild(_printerConfiguration);
        CreateChild(_printerPort);
        CreateChild(_defaultSchedule);
        CreateChild(_printerCapabilities);
    });
}

void Printer::FinalRelease()
{
    _xPrinter.Clear();
    _printerStatus.Reset();
    _printQueue.Reset();
    _printerConfiguration.Reset();
    _printerPort.Reset();
    _defaultSchedule.Reset();
    _printerCapabilities.Reset();
}

STDMETHODIMP Printer::Initialize(BSTR argPrinterName) noexcept
{
    return Guard("Printer::Initialize", [&] {
        BindPrinter(FromBstr(argPrinterName));
        return BindChildren();
    });
}

void Printer::BindPrinter(const OString& name)
{
    {
        OLockGuard guard(_lock);
        const bool otherName = _printerName.CompareNoCase(name) != 0;
        if (_xPrinter.Get() && !otherName) return;
        _printerName = OString(name.wstring()); // a text of its own: another thread may be in here next
    }
    _xPrinter.Clear();
    _xPrinter.Set(XPrinterRef::Acquire(name));
}

HRESULT Printer::BindChildren()
{
    HRESULT result = _printQueue->Initialize(this);
    if (SUCCEEDED(result)) result = _printerStatus->Initialize(this);
    if (SUCCEEDED(result)) result = _printerConfiguration->Initialize(this);
    if (SUCCEEDED(result)) result = _printerPort->Initialize(this);
    if (SUCCEEDED(result)) result = _defaultSchedule->Initialize(this);
    if (SUCCEEDED(result)) result = _printerCapabilities->Initialize(this);
    return result;
}

STDMETHODIMP Printer::SendFile(BSTR argFileName, BSTR argJobName) noexcept
{
    const auto send = [](const XPrinterRef& xPrinter, const OString& fileName, const OString& jobName) -> HRESULT {
        return xPrinter->SendFile(fileName, jobName) ? S_OK : S_FALSE;
    };
    return Call("Printer::SendFile", send, argFileName, argJobName);
}

STDMETHODIMP Printer::get_Name(BSTR* retName) noexcept
{
    return Get("Printer::get_Name", Checks::BoundThenOut, retName, &XPrinter::GetPrinterName);
}

STDMETHODIMP Printer::get_ServerName(BSTR* retServerName) noexcept
{
    return Get("Printer::get_ServerName", Checks::BoundThenOut, retServerName, &XPrinter::GetServerName);
}

STDMETHODIMP Printer::get_ShareName(BSTR* retShareName) noexcept
{
    return Get("Printer::get_ShareName", Checks::BoundThenOut, retShareName, &XPrinter::GetShareName);
}

STDMETHODIMP Printer::put_ShareName(BSTR argShareName) noexcept
{
    return Put("Printer::put_ShareName", &XPrinter::SetShareName, argShareName);
}

STDMETHODIMP Printer::get_PortName(BSTR* retPortName) noexcept
{
    return Get("Printer::get_PortName", Checks::BoundThenOut, retPortName, &XPrinter::GetPortName);
}

STDMETHODIMP Printer::put_PortName(BSTR argPortName) noexcept
{
    return Put("Printer::put_PortName", &XPrinter::SetPortName, argPortName);
}

STDMETHODIMP Printer::get_ModelName(BSTR* retModelName) noexcept
{
    return Get("Printer::get_ModelName", Checks::BoundThenOut, retModelName, &XPrinter::GetModelName);
}

STDMETHODIMP Printer::get_Comment(BSTR* retComment) noexcept
{
    return Get("Printer::get_Comment", Checks::BoundThenOut, retComment, &XPrinter::GetComment);
}

STDMETHODIMP Printer::put_Comment(BSTR argComment) noexcept
{
    return Put("Printer::put_Comment", &XPrinter::SetComment, argComment);
}

// Deliberate: from here on the out pointer is tested before the binding, further up after it.
STDMETHODIMP Printer::get_Location(BSTR* retLocation) noexcept
{
    return Get("Printer::get_Location", Checks::OutThenBound, retLocation, &XPrinter::GetLocation);
}

STDMETHODIMP Printer::put_Location(BSTR argLocation) noexcept
{
    return Put("Printer::put_Location", &XPrinter::SetLocation, argLocation);
}

STDMETHODIMP Printer::get_Local(VARIANT_BOOL* retLocal) noexcept
{
    return Get("Printer::get_Local", Checks::OutThenBound, retLocal, &XPrinter::IsLocal);
}

STDMETHODIMP Printer::get_Network(VARIANT_BOOL* retNetwork) noexcept
{
    return Get("Printer::get_Network", Checks::OutThenBound, retNetwork, &XPrinter::IsNetwork);
}

STDMETHODIMP Printer::get_Shared(VARIANT_BOOL* retShared) noexcept
{
    return Get("Printer::get_Shared", Checks::OutThenBound, retShared, &XPrinter::IsShared);
}

STDMETHODIMP Printer::put_Shared(VARIANT_BOOL argShared) noexcept
{
    return Put("Printer::put_Shared", &XPrinter::SetShared, argShared);
}

STDMETHODIMP Printer::get_Queue(IPrintQueue** retQueue) noexcept
{
    return GetChild("Printer::get_Queue", retQueue, _printQueue);
}

STDMETHODIMP Printer::get_Status(IPrinterStatus** retStatus) noexcept
{
    return GetChild("Printer::get_Status", retStatus, _printerStatus);
}

STDMETHODIMP Printer::get_Configuration(IPrinterConfiguration** retConfiguration) noexcept
{
    return GetChild("Printer::get_Configuration", retConfiguration, _printerConfiguration);
}

STDMETHODIMP Printer::get_Port(IPrinterPort** retPort) noexcept
{
    return GetChild("Printer::get_Port", retPort, _printerPort);
}

STDMETHODIMP Printer::get_DefaultSchedule(IPrintJobSchedule** retDefaultSchedule) noexcept
{
    return GetChild("Printer::get_DefaultSchedule", retDefaultSchedule, _defaultSchedule);
}

STDMETHODIMP Printer::get_Capabilities(IPrinterCapabilities** retCapabilities) noexcept
{
    return GetChild("Printer::get_Capabilities", retCapabilities, _printerCapabilities);
}

HRESULT Printer::FirstSinkConnecting() noexcept
{
    const auto xPrinter = _xPrinter.Get();
    if (!xPrinter) return E_POINTER;
    return Guard("Printer::Advise", [&] {
        (*xPrinter)->StartStatusThread();
        const auto references = (*xPrinter)->LockPrinterReferences();
        if (IsConnected()) (*xPrinter)->AddPrinterReference(*this); // the sink may have gone again on another thread
    });
}

void Printer::LastSinkGone() noexcept
{
    const auto xPrinter = _xPrinter.Get();
    if (!xPrinter) return;
    const auto references = (*xPrinter)->LockPrinterReferences();
    if (!IsConnected()) (*xPrinter)->RemovePrinterReference(*this); // or another may have come
}
