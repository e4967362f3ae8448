// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "spooler/SpoolerControl.h"

/// The next matching call of the simulated spooler stands still from the moment it is made until `Release`, at the
/// latest until the end of the scope.
class HeldCall {
public:
    explicit HeldCall(SpoolerCall call, DWORD level = spoolerAnyLevel)
    {
        SpoolerFailure hold;
        hold.call = call;
        hold.level = level;
        hold.effect = SpoolerEffect::Hold;
        hold.entered = _entered.Get();
        hold.release = _release.Get();
        ::SpoolerInject(hold);
    }
    HeldCall(const HeldCall&) = delete;
    HeldCall& operator=(const HeldCall&) = delete;
    ~HeldCall() { Release(); }

    /// Waits until the call has been made; false if that takes too long.
    bool WaitUntilMade() const { return ::WaitForSingleObject(_entered.Get(), patienceMs) == WAIT_OBJECT_0; }

    void Release() const { ::SetEvent(_release.Get()); }

private:
    static constexpr DWORD patienceMs = 30000;

    OWaitHandle _entered{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    OWaitHandle _release{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};
