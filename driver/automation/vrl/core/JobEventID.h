// SPDX-License-Identifier: MIT
#pragma once

/// The one numbering of all job events. The values are the dispatch identifiers of the event methods, on
/// `_IPrintJobEvents` and `_IPrintQueueEvents` alike; `OnJobNew` exists on the latter only.
enum JobEventID : int {
    JobEventID_OnJobStarted = 1,
    JobEventID_OnJobPaused = 2,
    JobEventID_OnJobResumed = 3,
    JobEventID_OnJobCancelled = 4,
    JobEventID_OnJobSent = 5,
    JobEventID_OnJobPrinted = 6,
    JobEventID_OnJobCompleted = 7,
    JobEventID_OnJobError = 8,
    JobEventID_OnJobFinalized = 9,
    JobEventID_OnJobStatusChanged = 10,
    JobEventID_OnJobTotalPagesChanged = 11,
    JobEventID_OnJobPagesPrintedChanged = 12,
    JobEventID_OnJobPriorityChanged = 13,
    JobEventID_OnJobPositionChanged = 14,
    JobEventID_OnJobNew = 15,
};
