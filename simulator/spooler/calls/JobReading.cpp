// SPDX-License-Identifier: MIT
#include "spooler/calls/JobReading.h"

#include "spooler/levels/JobLevels.h"

#include <algorithm>

void JobReading::ReadJob(HANDLE handle, DWORD jobId, DWORD level, const SizedBuffer& target)
{
    const PrinterAccess access = _world.AccessOf(handle);
    const JobRecord& job = World::JobOf(access.printer, jobId);
    PackJobs({access.printer, access.handle.serverPrefix}, {&job}, level).CopyTo(target);
}

void JobReading::ListJobs(HANDLE handle, DWORD first, DWORD count, DWORD level, const SizedBuffer& target)
{
    const PrinterAccess access = _world.AccessOf(handle);
    const auto& jobs = access.printer.queue.Jobs();
    const size_t begin = std::min<size_t>(first, jobs.size());
    const size_t end = begin + std::min<size_t>(count, jobs.size() - begin);
    std::vector<const JobRecord*> wanted;
    for (size_t index = begin; index < end; ++index) wanted.push_back(jobs[index].get());
    PackJobs({access.printer, access.handle.serverPrefix}, wanted, level).CopyTo(target);
}
