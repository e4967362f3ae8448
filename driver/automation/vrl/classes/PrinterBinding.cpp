// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterBinding.h"

#include "vrl/frame/Bstr.h"
#include "vrl/frame/VRException.h"

HRESULT ReadPrinterName(IPrinter* printer, OString& name)
{
    if (!printer) throw InvalidArgument_E();
    OBstr text;
    const HRESULT result = printer->get_Name(text.Receive());
    if (SUCCEEDED(result)) name = FromBstr(text.Get());
    return result;
}
