// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/JobRecord.h"

#include <memory>

/// The jobs of one printer in the order in which they are to print. Positions count from 1.
class JobQueue {
public:
    const std::vector<std::unique_ptr<JobRecord>>& Jobs() const noexcept { return _jobs; }
    DWORD Count() const noexcept { return static_cast<DWORD>(_jobs.size()); }

    /// Null if there is no such job. Stays where it is until it is removed.
    JobRecord* Find(DWORD jobId) noexcept;
    const JobRecord* Find(DWORD jobId) const noexcept;

    /// 0 if there is no such job.
    DWORD PositionOf(DWORD jobId) const noexcept;

    JobRecord& Append(JobRecord job);

    /// False if there is no such job.
    bool Remove(DWORD jobId);

    /// Puts the job at that position; one beyond the end means the end. JOB_POSITION_UNSPECIFIED moves nothing.
    void MoveTo(DWORD jobId, DWORD position);

private:
    /// The count if there is no such job.
    size_t IndexOf(DWORD jobId) const noexcept;

    std::vector<std::unique_ptr<JobRecord>> _jobs;
};
