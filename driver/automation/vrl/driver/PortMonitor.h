// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/arrays/OTypedArray.h"
#include "foundation/text/OString.h"
#include "vrl/driver/DriverModule.h"

/// The port monitor file beside the printer driver, through which the device is asked. Make one for each request: the
/// module stays loaded as long as this object lives.
///
/// Errors: 0, which means failure, also if the module or an export is missing. A crash in the module comes out as it
/// is;
///         what was got from it is given back all the same.
class PortMonitor {
public:
    explicit PortMonitor(const OString& path) noexcept : _module(path.wstring()) {}

    /// Sends a request to which no answer is wanted and gives the monitor's result.
    DWORD Post(const OString& printerName, const char* request) const;

    /// Sends a request and gives the monitor's result. `answer` becomes what came back; it stays as it was if nothing
    /// did.
    DWORD Send(const OString& printerName, const char* request, OTypedArray<unsigned char>& answer) const;

private:
    DriverModule _module;
};
