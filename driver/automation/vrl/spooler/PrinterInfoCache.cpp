// SPDX-License-Identifier: MIT
#include "vrl/spooler/PrinterInfoCache.h"

#include <memory>

#include "foundation/OLockGuard.h"
#include "foundation/text/OStringArray.h"
#include "foundation/threads/TickCount.h"

namespace {

PrinterInfoCache processCache;

/// Deliberate: the sum wraps at 32 bits and the comparison is plain, so an entry of the second before the wrap counts
/// as old until the ticks have wrapped as well.
bool IsTooOld(DWORD readTick) noexcept
{
    return TickCount() > readTick + PrinterInfoCache::maximumAgeMs;
}

} // namespace

PrinterInfoCache& PrinterInfoCache::Instance() noexcept
{
    return processCache;
}

PrinterInfoCache::~PrinterInfoCache()
{
    Clear();
}

void PrinterInfoCache::Fill(PrinterInfo& info)
{
    OLockGuard guard(_lock);
    PrinterInfo* const entry = _entries.Lookup(info.GetPrinterName(), nullptr);
    if (!entry) {
        Add(info);
        return;
    }
    if (IsTooOld(entry->GetReadTick())) entry->ReadFromSpooler();
    info = *entry;
}

void PrinterInfoCache::Clear()
{
    OLockGuard guard(_lock);
    OStringArray names;
    _entries.GetKeys(names);
    for (int i = 0; i < names.GetSize(); ++i) {
        const std::unique_ptr<PrinterInfo> entry(_entries.Lookup(names.GetAt(i), nullptr));
        // Two names of one hash have one entry: it must not be met again.
        if (entry) _entries.SetAt(names.GetAt(i), nullptr);
    }
}

/// The spooler may know the printer by another name than the one that is asked for; the entry stays under that one.
void PrinterInfoCache::Add(PrinterInfo& info)
{
    const OString name(info.GetPrinterName().wstring());
    info.ReadFromSpooler();
    _entries.SetAt(name, std::make_unique<PrinterInfo>(info).release());
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the map keeps the entry until Clear
