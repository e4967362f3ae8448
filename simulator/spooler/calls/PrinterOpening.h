// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// OpenPrinterW and ClosePrinter: from names to handles.
class PrinterOpening {
public:
    explicit PrinterOpening(World& world) noexcept : _world(world) {}

    /// A handle to the printer, the job or the server of that name; `name` and `defaults` may be null.
    /// ERROR_INVALID_PRINTER_NAME, ERROR_ACCESS_DENIED, ERROR_INVALID_DATATYPE.
    HANDLE Open(const wchar_t* name, const PRINTER_DEFAULTSW* defaults);

    /// Ends a document that the handle is in the middle of. ERROR_INVALID_HANDLE.
    void Close(HANDLE handle);

private:
    struct Target {
        const PrinterRecord* printer = nullptr; // null: the server
        DWORD jobId = 0;                        // 0: the printer itself
        std::wstring serverPrefix;
    };

    Target Resolve(std::wstring_view name) const;
    const PrinterRecord* FindLocal(std::wstring_view nameOrShare) const noexcept;

    World& _world;
};
