// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/Platform.h"

/// What the data of a queue say about a printer that a terminal session redirects here: such a queue looks local to the
/// spooler, but for its user the printer stands on the client machine.
///
/// Ownership: the handle is lent for the construction only. Threading: none; it lives on one stack for one read.
/// Errors:    a failed read ends the work with what was found until then.
class TerminalClientPrinter {
public:
    /// Reads the printer data "TSSessionID", "ClientName" and "PrinterName". Version 5.0 of the system has no names
    /// there: then they come from the queue's own name, and are written to the printer data for the next read. On that
    /// version a queue without name is an internal failure.
    explicit TerminalClientPrinter(HANDLE hPrinter);

    /// The queue belongs to a terminal session.
    bool IsClientPrinter() const noexcept { return _session < noSession; }

    /// The printer's name on the client; may be empty even for a client printer.
    const OString& GetPrinterName() const noexcept { return _printerName; }

    /// The client machine's name; may be empty even for a client printer.
    const OString& GetClientName() const noexcept { return _clientName; }

private:
    static constexpr DWORD noSession = 0xFFFFFFFF;

    void InitializeWin2000(HANDLE hPrinter);

    DWORD _session = noSession;
    OString _printerName;
    OString _clientName;
};
