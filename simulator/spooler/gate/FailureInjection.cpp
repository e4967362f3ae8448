// SPDX-License-Identifier: MIT
#include "spooler/gate/FailureInjection.h"

#include <algorithm>

bool FailureInjection::Entry::Matches(const CallRecord& call) const
{
    return failure.call == call.call && (failure.level == spoolerAnyLevel || failure.level == call.level) &&
           (!printer || SameName(*printer, call.printer)) && (!valueName || SameName(*valueName, call.valueName));
}

void FailureInjection::Inject(const SpoolerFailure& failure)
{
    const MutexLock guard(_lock);
    _entries.push_back({failure, CopyText(failure.printer), CopyText(failure.valueName)});
}

std::optional<SpoolerFailure> FailureInjection::Take(const CallRecord& call)
{
    const MutexLock guard(_lock);
    std::optional<SpoolerFailure> taken;
    for (Entry& entry : _entries) {
        if (!entry.Matches(call)) continue;
        ++entry.seen;
        if (taken || entry.seen < entry.failure.nth) continue;
        ++entry.hits;
        taken = entry.failure;
    }
    std::erase_if(_entries, [](const Entry& entry) { return entry.IsUsedUp(); });
    return taken;
}

DWORD FailureInjection::Pending() const
{
    const MutexLock guard(_lock);
    return static_cast<DWORD>(_entries.size());
}

void FailureInjection::Clear()
{
    const MutexLock guard(_lock);
    _entries.clear();
}
