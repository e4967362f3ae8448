// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/PortRecord.h"

/// Puts the device of that DLL behind the port. A plain file name is looked for beside the spooler's own module. The
/// DLL stays loaded for good. ERROR_PROC_NOT_FOUND for a DLL that is no device, or why it can't be loaded; the port
/// stays as it was then.
DWORD ConnectDevice(PortRecord& port, const std::wstring& path);
