// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatorTest.h"

#include "foundation/OHandle.h"

/// A handle that FindFirstPrinterChangeNotification gave out.
using ChangeHandle = OHandle<::FindClosePrinterChangeNotification>;

/// The nine printer fields and the nine job fields that a label application asks for.
extern const std::vector<WORD> usualPrinterFields;
extern const std::vector<WORD> usualJobFields;

/// A client that watches a printer. What it fetches reads as a line: the change word, then "-" for no block or the
/// entries in their order, as "J7.STATUS=0x8" or "P.COMMENT='Gate 3'".
class Watch {
public:
    Watch(const PrinterHandle& printer, DWORD filter, std::vector<WORD> jobFields = {},
          std::vector<WORD> printerFields = {});

    HANDLE Handle() const noexcept { return _handle.Get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(_handle); }
    bool IsSignalled() const { return ::WaitForSingleObject(_handle.Get(), 0) == WAIT_OBJECT_0; }

    /// What one FindNextPrinterChangeNotification gives; "failed" with the last error if it fails.
    std::string Next(DWORD flags = 0) const;
    /// All that waits, a line for each batch.
    std::vector<std::string> All() const;
    BOOL Close() { return ::FindClosePrinterChangeNotification(_handle.Detach()); }

private:
    ChangeHandle _handle;
};

/// The entries of a block as they are written in a line; "" for a block without any.
std::string EntriesText(const PRINTER_NOTIFY_INFO& info);
