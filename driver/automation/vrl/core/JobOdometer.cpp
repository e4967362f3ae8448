// SPDX-License-Identifier: MIT
#include "vrl/core/JobOdometer.h"

#include "foundation/Assert.h"
#include "vrl/core/XJobDevMode.h"

void JobOdometer::Start(DriverInterface& driver, bool advancedDriver)
{
    _driver = &driver;
    _advancedDriver = advancedDriver;
    _odometer = driver.GetOdometer();
    _odometerPagesAtJobStart = _odometer.GetPages();
    _pagesPrintedInJob = 0;
    _currentJobId = 0;
}

// Deliberate: there is one current job. Jobs whose progress alternates are counted from 0 once more at each change.
void JobOdometer::Update(DWORD jobId, const XJobDevMode* devMode, DWORD pagesPrinted)
{
    if (jobId != _currentJobId) {
        _currentJobId = jobId;
        _pagesPrintedInJob = 0;
        _odometerPagesAtJobStart = _odometer.GetPages();
    }
    const DWORD previousPagesPrinted = _pagesPrintedInJob;
    const auto copies = static_cast<DWORD>(devMode ? devMode->copies : 1);
    const bool deviceCounted = _advancedDriver && _driver->IsBidirectional();
    _pagesPrintedInJob = PagesInJob(pagesPrinted, copies, deviceCounted);
    DEBUG_ASSERT(_pagesPrintedInJob >= previousPagesPrinted);
    if (_pagesPrintedInJob <= previousPagesPrinted) return;

    const auto paperLength = static_cast<DWORD>(devMode ? devMode->paperLength : 0);
    _odometer.AddPages(_pagesPrintedInJob - previousPagesPrinted, paperLength);
    if (!deviceCounted) _driver->SetOdometer(_odometer);
}

/// By the device's count since the job began; where that fails, by the spooler's.
DWORD JobOdometer::PagesInJob(DWORD pagesPrinted, DWORD copies, bool deviceCounted)
{
    if (deviceCounted) {
        const DWORD odometerPages = _driver->GetOdometer().GetPages();
        DEBUG_ASSERT(odometerPages >= _odometerPagesAtJobStart);
        if (odometerPages >= _odometerPagesAtJobStart) return odometerPages - _odometerPagesAtJobStart;
    }
    return pagesPrinted * copies;
}
