// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/levels/PackedWriter.h"
#include "spooler/records/PrinterRecord.h"

/// A printer as one reader sees it.
struct PrinterView {
    const PrinterRecord& printer;
    std::wstring serverPrefix; // "\\HOST" if it was reached by a name with a server; empty otherwise
    bool withSecurity = false; // the reader may read its security descriptor

    std::wstring Name() const;
    OptionalText ServerName() const;
};

/// Packs the printers as an array of PRINTER_INFO structures of that level. ERROR_INVALID_LEVEL for a level that isn't
/// in the table of GetPrinterW (`forOne`) or of EnumPrintersW.
PackedWriter PackPrinters(const std::vector<PrinterView>& printers, DWORD level, bool forOne);
