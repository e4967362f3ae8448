// SPDX-License-Identifier: MIT
#include "spooler/records/JobQueue.h"

#include <algorithm>

JobRecord* JobQueue::Find(DWORD jobId) noexcept
{
    const auto found = std::ranges::find(_jobs, jobId, &JobRecord::id);
    return found == _jobs.end() ? nullptr : &*found;
}

const JobRecord* JobQueue::Find(DWORD jobId) const noexcept
{
    const auto found = std::ranges::find(_jobs, jobId, &JobRecord::id);
    return found == _jobs.end() ? nullptr : &*found;
}

DWORD JobQueue::PositionOf(DWORD jobId) const noexcept
{
    const auto found = std::ranges::find(_jobs, jobId, &JobRecord::id);
    return found == _jobs.end() ? 0 : static_cast<DWORD>(found - _jobs.begin()) + 1;
}

void JobQueue::Append(JobRecord job)
{
    _jobs.push_back(std::move(job));
}

bool JobQueue::Remove(DWORD jobId)
{
    return std::erase_if(_jobs, [jobId](const JobRecord& job) { return job.id == jobId; }) > 0;
}

void JobQueue::MoveTo(DWORD jobId, DWORD position)
{
    const auto from = std::ranges::find(_jobs, jobId, &JobRecord::id);
    if (from == _jobs.end() || position == 0) return;
    const auto to = _jobs.begin() + (std::min<std::ptrdiff_t>(position, std::ssize(_jobs)) - 1);
    if (from < to)
        std::rotate(from, from + 1, to + 1);
    else
        std::rotate(to, from, from + 1);
}
