// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/JobRecord.h"

/// The jobs of one printer in the order in which they are to print. Positions count from 1.
class JobQueue {
public:
    std::vector<JobRecord>& Jobs() noexcept { return _jobs; }
    const std::vector<JobRecord>& Jobs() const noexcept { return _jobs; }

    /// Null if there is no such job. Good until the queue changes.
    JobRecord* Find(DWORD jobId) noexcept;
    const JobRecord* Find(DWORD jobId) const noexcept;

    /// 0 if there is no such job.
    DWORD PositionOf(DWORD jobId) const noexcept;

    void Append(JobRecord job);

    /// False if there is no such job.
    bool Remove(DWORD jobId);

    /// Puts the job at that position; one behind the end means the end.
    void MoveTo(DWORD jobId, DWORD position);

private:
    std::vector<JobRecord> _jobs;
};
