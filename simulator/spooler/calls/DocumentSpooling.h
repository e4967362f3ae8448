// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// The calls that spool a document: StartDocPrinterW, StartPagePrinter, WritePrinter, EndPagePrinter, EndDocPrinter.
/// They give up with ERROR_SPL_NO_STARTDOC outside a document, and with ERROR_PRINT_CANCELLED once its job is gone.
class DocumentSpooling {
public:
    explicit DocumentSpooling(World& world) noexcept : _world(world) {}

    /// Makes the job and gives its number. ERROR_INVALID_LEVEL, ERROR_INVALID_DATATYPE, ERROR_INVALID_HANDLE for a
    /// handle that has a document already.
    DWORD StartDoc(HANDLE handle, DWORD level, const BYTE* info);
    void StartPage(HANDLE handle);
    /// Spools up to `limit` of the bytes and gives how many.
    DWORD Write(HANDLE handle, const void* bytes, DWORD size, DWORD limit);
    void EndPage(HANDLE handle);
    /// Ends the document: its job may be printed.
    void EndDoc(HANDLE handle);

private:
    struct Spooling {
        const PrinterRecord& printer;
        OpenDocument& document;
    };

    Spooling SpoolingOf(HANDLE handle);
    JobRecord MakeJob(const PrinterAccess& access, const DOC_INFO_1W& info) const;

    World& _world;
};
