// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterBinding.h"

#include "vrl/frame/Bstr.h"
#include "vrl/frame/VRException.h"
#include "vrl/core/XPrinter.h"

namespace {

HRESULT ReadName(IPrinter& printer, OString& name)
{
    OBstr text;
    const HRESULT result = printer.get_Name(text.Receive());
    if (SUCCEEDED(result)) name = FromBstr(text.Get());
    return result;
}

} // namespace

HRESULT BindToPrinter(XPrinterRef& xPrinter, IPrinter* printer)
{
    xPrinter.Release();
    if (!printer) throw InvalidArgument_E();

    OString name;
    const HRESULT result = ReadName(*printer, name);
    if (FAILED(result)) return result;
    xPrinter = XPrinterRef::Acquire(name);
    return S_OK;
}

HRESULT RebindToPrinter(XPrinterRef& xPrinter, IPrinter* printer)
{
    if (!printer) throw InvalidArgument_E();

    OString name;
    const HRESULT result = ReadName(*printer, name);
    if (FAILED(result)) return result;
    if (xPrinter && xPrinter->GetPrinterName().CompareNoCase(name) != 0) xPrinter.Release();
    if (!xPrinter) xPrinter = XPrinterRef::Acquire(name);
    return S_OK;
}
