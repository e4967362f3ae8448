// SPDX-License-Identifier: MIT
#include "labelprinter/device/DeviceJobs.h"

#include <algorithm>

DeviceJob& DeviceJobs::Begin(DWORD jobId, std::wstring document)
{
    std::erase_if(_jobs, [=](const DeviceJob& job) { return job.jobId == jobId; });
    if (_jobs.size() == most) _jobs.pop_front();
    DeviceJob& job = _jobs.emplace_back();
    job.jobId = jobId;
    job.document = std::move(document);
    return job;
}

DeviceJob* DeviceJobs::Find(DWORD jobId)
{
    const auto job = std::ranges::find(_jobs, jobId, &DeviceJob::jobId);
    return job == _jobs.end() ? nullptr : &*job;
}
