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

namespace {

template <class Child>
void CreateChild(Microsoft::WRL::ComPtr<Child>& child)
{
    const HRESULT result = CreateInstance(child.ReleaseAndGetAddressOf());
    if (FAILED(result)) throw VRException(result, "CreateInstance failed");
}

} // namespace

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

void Printer::FinalRelease() noexcept
{
    _xPrinter.Release();
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
        const OString name = FromBstr(argPrinterName);
        if (_xPrinter && _printerName.CompareNoCase(name) != 0) _xPrinter.Release();
        if (!_xPrinter) {
            _printerName = name;
            _xPrinter = XPrinterRef::Acquire(_printerName);
        }
        return BindChildren();
    });
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
    return Guard("Printer::SendFile", [&] {
        CheckBound();
        return _xPrinter->SendFile(FromBstr(argFileName), FromBstr(argJobName)) ? S_OK : S_FALSE;
    });
}

STDMETHODIMP Printer::get_Name(BSTR* retName) noexcept
{
    return Guard("Printer::get_Name", [&] {
        CheckBound();
        CheckOut(retName);
        *retName = ToBstr(_xPrinter->GetPrinterName()).Detach();
    });
}

STDMETHODIMP Printer::get_ServerName(BSTR* retServerName) noexcept
{
    return Guard("Printer::get_ServerName", [&] {
        CheckBound();
        CheckOut(retServerName);
        *retServerName = ToBstr(_xPrinter->GetServerName()).Detach();
    });
}

STDMETHODIMP Printer::get_ShareName(BSTR* retShareName) noexcept
{
    return Guard("Printer::get_ShareName", [&] {
        CheckBound();
        CheckOut(retShareName);
        *retShareName = ToBstr(_xPrinter->GetShareName()).Detach();
    });
}

STDMETHODIMP Printer::put_ShareName(BSTR argShareName) noexcept
{
    return Guard("Printer::put_ShareName", [&] {
        CheckBound();
        _xPrinter->SetShareName(FromBstr(argShareName));
    });
}

STDMETHODIMP Printer::get_PortName(BSTR* retPortName) noexcept
{
    return Guard("Printer::get_PortName", [&] {
        CheckBound();
        CheckOut(retPortName);
        *retPortName = ToBstr(_xPrinter->GetPortName()).Detach();
    });
}

STDMETHODIMP Printer::put_PortName(BSTR argPortName) noexcept
{
    return Guard("Printer::put_PortName", [&] {
        CheckBound();
        _xPrinter->SetPortName(FromBstr(argPortName));
    });
}

STDMETHODIMP Printer::get_ModelName(BSTR* retModelName) noexcept
{
    return Guard("Printer::get_ModelName", [&] {
        CheckBound();
        CheckOut(retModelName);
        *retModelName = ToBstr(_xPrinter->GetModelName()).Detach();
    });
}

STDMETHODIMP Printer::get_Comment(BSTR* retComment) noexcept
{
    return Guard("Printer::get_Comment", [&] {
        CheckBound();
        CheckOut(retComment);
        *retComment = ToBstr(_xPrinter->GetComment()).Detach();
    });
}

STDMETHODIMP Printer::put_Comment(BSTR argComment) noexcept
{
    return Guard("Printer::put_Comment", [&] {
        CheckBound();
        _xPrinter->SetComment(FromBstr(argComment));
    });
}

// Deliberate: from here on the out pointer is tested before the binding, further up behind it.
STDMETHODIMP Printer::get_Location(BSTR* retLocation) noexcept
{
    return Guard("Printer::get_Location", [&] {
        CheckOut(retLocation);
        CheckBound();
        *retLocation = ToBstr(_xPrinter->GetLocation()).Detach();
    });
}

STDMETHODIMP Printer::put_Location(BSTR argLocation) noexcept
{
    return Guard("Printer::put_Location", [&] {
        CheckBound();
        _xPrinter->SetLocation(FromBstr(argLocation));
    });
}

STDMETHODIMP Printer::get_Local(VARIANT_BOOL* retLocal) noexcept
{
    return Guard("Printer::get_Local", [&] {
        CheckOut(retLocal);
        CheckBound();
        *retLocal = ToVariantBool(_xPrinter->IsLocal());
    });
}

STDMETHODIMP Printer::get_Network(VARIANT_BOOL* retNetwork) noexcept
{
    return Guard("Printer::get_Network", [&] {
        CheckOut(retNetwork);
        CheckBound();
        *retNetwork = ToVariantBool(_xPrinter->IsNetwork());
    });
}

STDMETHODIMP Printer::get_Shared(VARIANT_BOOL* retShared) noexcept
{
    return Guard("Printer::get_Shared", [&] {
        CheckOut(retShared);
        CheckBound();
        *retShared = ToVariantBool(_xPrinter->IsShared());
    });
}

STDMETHODIMP Printer::put_Shared(VARIANT_BOOL argShared) noexcept
{
    return Guard("Printer::put_Shared", [&] {
        CheckBound();
        _xPrinter->SetShared(argShared != VARIANT_FALSE);
    });
}

STDMETHODIMP Printer::get_Queue(IPrintQueue** retQueue) noexcept
{
    return Guard("Printer::get_Queue", [&] { return GiveChild(_printQueue, retQueue); });
}

STDMETHODIMP Printer::get_Status(IPrinterStatus** retStatus) noexcept
{
    return Guard("Printer::get_Status", [&] { return GiveChild(_printerStatus, retStatus); });
}

STDMETHODIMP Printer::get_Configuration(IPrinterConfiguration** retConfiguration) noexcept
{
    return Guard("Printer::get_Configuration", [&] { return GiveChild(_printerConfiguration, retConfiguration); });
}

STDMETHODIMP Printer::get_Port(IPrinterPort** retPort) noexcept
{
    return Guard("Printer::get_Port", [&] { return GiveChild(_printerPort, retPort); });
}

STDMETHODIMP Printer::get_DefaultSchedule(IPrintJobSchedule** retDefaultSchedule) noexcept
{
    return Guard("Printer::get_DefaultSchedule", [&] { return GiveChild(_defaultSchedule, retDefaultSchedule); });
}

STDMETHODIMP Printer::get_Capabilities(IPrinterCapabilities** retCapabilities) noexcept
{
    return Guard("Printer::get_Capabilities", [&] { return GiveChild(_printerCapabilities, retCapabilities); });
}

HRESULT Printer::FirstSinkConnecting() noexcept
{
    if (!_xPrinter) return E_POINTER;
    return Guard("Printer::Advise", [&] {
        _xPrinter->StartStatusThread();
        _xPrinter->AddPrinterReference(this);
    });
}

void Printer::LastSinkGone() noexcept
{
    if (_xPrinter) _xPrinter->RemovePrinterReference(this);
}

void Printer::CheckBound() const
{
    if (!_xPrinter) throw PrinterNotInitialized_E();
}
