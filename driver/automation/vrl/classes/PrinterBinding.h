// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/Automation.h"
#include "vrl/core/XPrinterRef.h"

/// How the parts of a printer are bound to the printer that an `IPrinter` names. The result is that of reading its
/// name, if that fails. Both throw `InvalidArgument_E` for a null `printer`; what `XPrinterPool::Acquire` throws goes
/// through.

/// Lets go of the old printer first, whatever follows.
HRESULT BindToPrinter(XPrinterRef& xPrinter, IPrinter* printer);

/// Keeps the old printer if the name is the same but for the case of the letters a to z.
HRESULT RebindToPrinter(XPrinterRef& xPrinter, IPrinter* printer);
