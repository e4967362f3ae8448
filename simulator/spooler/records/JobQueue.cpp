// SPDX-License-Identifier: MIT
#include "spooler/records/JobQueue.h"

#include <algorithm>

namespace {

constexpr auto idOf = [](const auto& job) { return job->id; };

} // namespace

size_t JobQueue::IndexOf(DWORD jobId) const noexcept
{
    return static_cast<size_t>(std::ranges::find(_jobs, jobId, idOf) - _jobs.begin());
}

JobRecord* JobQueue::Find(DWORD jobId) noexcept
{
    const size_t index = IndexOf(jobId);
    return index < _jobs.size() ? _jobs[index].get() : nullptr;
}

const JobRecord* JobQueue::Find(DWORD jobId) const noexcept
{
    const size_t index = IndexOf(jobId);
    return index < _jobs.size() ? _jobs[index].get() : nullptr;
}

DWORD JobQueue::PositionOf(DWORD jobId) const noexcept
{
    const size_t index = IndexOf(jobId);
    return index < _jobs.size() ? static_cast<DWORD>(index) + 1 : 0;
}

JobRecord& JobQueue::Append(JobRecord job)
{
    return *_jobs.emplace_back(std::make_unique<JobRecord>(std::move(job)));
}

bool JobQueue::Remove(DWORD jobId)
{
    return std::erase_if(_jobs, [jobId](const auto& job) { return job->id == jobId; }) > 0;
}

void JobQueue::MoveTo(DWORD jobId, DWORD position)
{
    const size_t index = IndexOf(jobId);
    if (index == _jobs.size() || position == JOB_POSITION_UNSPECIFIED) return;
    const auto from = _jobs.begin() + static_cast<std::ptrdiff_t>(index);
    const auto to = _jobs.begin() + (std::min<std::ptrdiff_t>(position, std::ssize(_jobs)) - 1);
    if (from < to)
        std::rotate(from, from + 1, to + 1);
    else
        std::rotate(to, from, from + 1);
}
