// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/LabelPrinter.h"
#include "spooler/Mutex.h"

#include <map>
#include <string>

/// All label printers of the process, and the clock of their queries.
class LabelPrinters {
public:
    void Reset();
    void Add(const std::wstring& name) { _printers.try_emplace(name); }
    bool Remove(const std::wstring& name) { return _printers.erase(name) != 0; }
    /// Null if there is no printer of that name.
    LabelPrinter* Find(const std::wstring& name);

    /// Milliseconds.
    ULONGLONG Now() const;
    void StopClock();
    void Advance(DWORD ms);

private:
    struct NameLess {
        bool operator()(const std::wstring& left, const std::wstring& right) const;
    };

    std::map<std::wstring, LabelPrinter, NameLess> _printers;
    bool _clockStopped = false;
    ULONGLONG _stoppedAt = 0;
};

/// The process's label printers. Made at the first use, and then the module stays in the process until that ends: port
/// monitor and interface module come and go.
struct SharedLabelPrinters {
    static SharedLabelPrinters& Instance();

    Mutex lock;
    LabelPrinters printers GUARDED_BY(lock);

private:
    SharedLabelPrinters();
};

/// Runs `body` under the lock; it gives a result, which is that of the call. Nothing thrown gets out.
template <class Body>
DWORD WithLabelPrinters(Body&& body) noexcept
try {
    SharedLabelPrinters& shared = SharedLabelPrinters::Instance();
    const MutexLock guard(shared.lock);
    return body(shared.printers);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

/// The same for one printer; ERROR_INVALID_PRINTER_NAME if there is none of that name.
template <class Body>
DWORD WithLabelPrinter(const wchar_t* printerName, Body&& body) noexcept
{
    return WithLabelPrinters([&](LabelPrinters& printers) -> DWORD {
        LabelPrinter* const printer = printerName ? printers.Find(printerName) : nullptr;
        if (!printer) return ERROR_INVALID_PRINTER_NAME;
        return body(*printer);
    });
}
