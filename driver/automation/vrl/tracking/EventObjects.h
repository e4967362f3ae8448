// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "vrl/frame/Automation.h"

#include <wrl/client.h>

/// The objects that events carry. Defined with the automation classes, so that the thread doesn't know them.
///
/// Both give null if the object can't be made, and an object that is not bound if it can't be bound.

/// A `Printer` of the system's own.
Microsoft::WRL::ComPtr<IPrinter> MakeEventPrinter(const OString& printerName);

/// A `PrintJob` of the system's own. The job need not exist any more.
Microsoft::WRL::ComPtr<IPrintJob> MakeEventJob(const OString& printerName, DWORD jobID);
