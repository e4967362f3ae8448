// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "vrl/driver/DriverInterface.h"
#include "vrl/driver/Odometer.h"

struct XJobDevMode;

/// A printer's odometer, counted forward from the progress of its jobs, one current job at a time.
///
/// Threading: `Start` before any other; `Update` on the notification thread only; any thread may read.
class JobOdometer {
public:
    /// Takes up the stored count. `driver` keeps the count and must outlive this; `advancedDriver`: it can be asked for
    /// the device's own count.
    void Start(DriverInterface& driver, bool advancedDriver);

    /// Job `jobId` has printed `pagesPrinted` pages so far. Its device mode, null if it has none, tells copies and
    /// paper. What has been added is stored, unless the device counts by itself.
    void Update(DWORD jobId, const XJobDevMode* devMode, DWORD pagesPrinted);

    const Odometer& Get() const noexcept { return _odometer; }

private:
    DWORD PagesInJob(DWORD pagesPrinted, DWORD copies, bool deviceCounted);

    DriverInterface* _driver = nullptr;
    bool _advancedDriver = false;
    DWORD _currentJobId = 0;
    DWORD _pagesPrintedInJob = 0;
    DWORD _odometerPagesAtJobStart = 0;
    Odometer _odometer;
};
