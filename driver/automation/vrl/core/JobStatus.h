// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "foundation/arrays/OTypedArray.h"
#include "foundation/text/OString.h"

/// Where a job stands; the numbers are settled, 1 and 9 are not used.
enum JobState : int {
    JobStateNone = 0,         ///< the latest status said nothing
    JobStateStarted = 2,      ///< printing has begun, or begun once more
    JobStatePrinting = 3,     ///< printing goes on
    JobStatePaused = 4,       ///< held in the queue
    JobStateResumed = 5,      ///< printing after a pause
    JobStateFinished = 6,     ///< left the queue and counts as delivered
    JobStateCancelled = 7,    ///< left the queue and counts as cancelled
    JobStateSentToDevice = 8, ///< all of it has gone to the device
    JobStateError = 10,       ///< somebody has to look after it
    JobStateFinalized = 11,   ///< left the queue; only a restart brings it back
};

/// What is known of a job's progress, as clients read it.
struct JobStatus {
    JobState jobState = JobStateNone;
    OString statusText; ///< the words of the status, joined with ", "
    bool spooling = false;
    bool printing = false;
    bool paused = false;
    bool cancelled = false;
    bool sent = false;
    bool printed = false;
    bool completed = false;
    bool restarted = false; // Deliberate: nothing sets it, see `UpdateJobStatus`
    bool userInterventionRequired = false;
    bool sentToDevice = false; ///< the spooler has said so since the job last began; decides the verdict
};

/// The device's word on a job that has left the queue.
enum class DeviceVerdict {
    None,      ///< it did not answer
    Completed, ///< it took the job
    Verified,  ///< it took the job and saw that it was printed
    Failed,
};

/// Who can tell more about a job that has left the queue. Asked only when the answer matters, and once.
class JobWitness {
public:
    /// May take as long as the device does.
    virtual DeviceVerdict QueryDeviceJobStatus() = 0;
    /// The printer reports back to its driver.
    virtual bool IsBidirectionalPrinter() = 0;

protected:
    ~JobWitness() = default;
};

/// What the spooler says of a job at one moment.
struct JobNotice {
    DWORD winStatus = 0; ///< JOB_STATUS_* bits
    DWORD pagesPrinted = 0;
    DWORD totalPages = 0;
};

/// The status that follows `previous` when the spooler says `notice`. `events` becomes the list of what clients are to
/// be told (`JobEventID`), in order.
JobStatus UpdateJobStatus(const JobStatus& previous, const JobNotice& notice, JobWitness& witness,
                          OTypedArray<int>& events);
