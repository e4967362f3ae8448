// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/PrinterData.h"

/// A predefined value of the print server, as GetPrinterDataW gives it for a server's handle.
/// Gives up with ERROR_INVALID_PARAMETER for a name that isn't predefined.
PrinterData::Value ServerValue(const std::wstring& machineName, std::wstring_view name);
