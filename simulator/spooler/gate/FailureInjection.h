// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/gate/CallLog.h"

/// The failures that are to hit calls, in the order in which they were put in.
///
/// Threading: any thread; own lock.
class FailureInjection {
public:
    void Inject(const SpoolerFailure& failure);

    /// What is to happen to this call, if anything: every failure that matches counts the call, the first that is due
    /// hits it.
    std::optional<SpoolerFailure> Take(const CallRecord& call);

    DWORD Pending() const;
    void Clear();

private:
    struct Entry {
        SpoolerFailure failure;
        OptionalText printer;
        OptionalText valueName;
        DWORD seen = 0; // matching calls so far
        DWORD hits = 0;

        bool Matches(const CallRecord& call) const;
        bool IsUsedUp() const noexcept { return failure.count != 0 && hits >= failure.count; }
    };

    mutable Mutex _lock;
    std::vector<Entry> _entries GUARDED_BY(_lock);
};
