// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/ChangeScope.h"

/// SetPrinterW: commands to a printer, and changes of what it is.
class PrinterSetting {
public:
    explicit PrinterSetting(World& world) noexcept : _world(world) {}

    /// Checks everything before it changes anything. Besides ERROR_ACCESS_DENIED, ERROR_INVALID_LEVEL and
    /// ERROR_INVALID_PRINTER_COMMAND it gives up with the error that belongs to the wrong field, such as
    /// ERROR_UNKNOWN_PORT or ERROR_INVALID_SHARENAME.
    void Change(HANDLE handle, DWORD level, const BYTE* info, DWORD command);

private:
    World& _world;
};
