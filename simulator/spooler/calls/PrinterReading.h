// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/levels/PackedWriter.h"
#include "spooler/world/World.h"

/// The calls that read printers, ports and drivers: GetPrinterW, EnumPrintersW, EnumPortsW, GetPrinterDriverW.
class PrinterReading {
public:
    explicit PrinterReading(World& world) noexcept : _world(world) {}

    void ReadPrinter(HANDLE handle, DWORD level, const SizedBuffer& target);

    /// `name` may be null. ERROR_INVALID_NAME for a server that isn't this one, ERROR_INVALID_PARAMETER for flags that
    /// name nothing to enumerate or don't go with the level.
    void ListPrinters(DWORD flags, const wchar_t* name, DWORD level, const SizedBuffer& target);

    /// `server` may be null. ERROR_INVALID_NAME for a server that isn't this one.
    void ListPorts(const wchar_t* server, DWORD level, const SizedBuffer& target);

    /// `environment` may be null. ERROR_INVALID_ENVIRONMENT, ERROR_UNKNOWN_PRINTER_DRIVER.
    void ReadDriver(HANDLE handle, const wchar_t* environment, DWORD level, const SizedBuffer& target);

private:
    void EnumProviders(const SizedBuffer& target) const;

    World& _world;
};
