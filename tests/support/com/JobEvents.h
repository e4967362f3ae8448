// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

/// Dispatch identifiers of the events of jobs, on both interfaces.
enum JobEvent : DISPID {
    onJobStarted = 1,
    onJobPaused = 2,
    onJobResumed = 3,
    onJobCancelled = 4,
    onJobSent = 5,
    onJobPrinted = 6,
    onJobCompleted = 7,
    onJobError = 8,
    onJobFinalized = 9,
    onJobStatusChanged = 10,
    onJobTotalPagesChanged = 11,
    onJobPagesPrintedChanged = 12,
    onJobPriorityChanged = 13,
    onJobPositionChanged = 14,
    onJobNew = 15,
};
