// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

#include <map>

/// A document that a handle is spooling.
struct OpenDocument {
    DWORD jobId = 0;
    bool inPage = false;
};

/// What stands behind a handle that OpenPrinterW gave out.
struct OpenHandle {
    enum class Kind { Server, Printer, Job };

    Kind kind = Kind::Server;
    DWORD printerId = 0;
    DWORD jobId = 0;
    DWORD access = 0;
    std::wstring
        serverPrefix;      // "\\HOST" if the printer was opened by a name with a server; names are read back with it
    OptionalText datatype; // of PRINTER_DEFAULTS
    Bytes devMode;         // of PRINTER_DEFAULTS
    std::optional<OpenDocument> document;
};

/// The open handles. A value is never given out twice, so that a stale handle stays invalid.
class HandleTable {
public:
    HANDLE Add(OpenHandle handle);
    /// Null for a value that isn't open.
    OpenHandle* Find(HANDLE value) noexcept;
    void Remove(HANDLE value) noexcept { _open.erase(value); }
    void Clear() noexcept { _open.clear(); }
    const std::map<HANDLE, OpenHandle>& Open() const noexcept { return _open; }

private:
    static constexpr ULONG_PTR firstValue = 0x5B001000;
    static constexpr ULONG_PTR step = 4;

    std::map<HANDLE, OpenHandle> _open;
    ULONG_PTR _next = firstValue;
};
