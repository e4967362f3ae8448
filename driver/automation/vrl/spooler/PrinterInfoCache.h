// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/text/OString.h"
#include "foundation/text/OStringMap.h"
#include "vrl/spooler/PrinterInfo.h"

/// The last reads of the printers of this process, by the name that they were asked for with.
///
/// An entry is made at the first snapshot of a name and lives as long as the cache; a snapshot that finds it older than
/// `maximumAgeMs` renews its content. An entry whose read failed is read again by the next snapshot.
///
/// Ownership: its entries. No text of an entry is shared with what goes in or out.
/// Threading: any thread; one lock, held over the spooler's work.
class PrinterInfoCache {
public:
    /// The oldest entry that still answers, in milliseconds.
    static constexpr DWORD maximumAgeMs = 1000;

    PrinterInfoCache() = default;
    PrinterInfoCache(const PrinterInfoCache&) = delete;
    PrinterInfoCache& operator=(const PrinterInfoCache&) = delete;
    ~PrinterInfoCache();

    /// The process's own, which fills every snapshot.
    static PrinterInfoCache& Instance() noexcept;

    /// Fills `info` by its printer name.
    void Fill(PrinterInfo& info);

    /// Forgets all entries; for tests.
    void Clear();

private:
    void Add(PrinterInfo& info) REQUIRES(_lock);

    OCriticalSection _lock;
    OStringMap<PrinterInfo*> _entries GUARDED_BY(_lock); // owned; null for a name that was cleared
};
