// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/levels/PackedWriter.h"
#include "spooler/world/World.h"

/// The calls that read jobs: GetJobW and EnumJobsW.
class JobReading {
public:
    explicit JobReading(World& world) noexcept : _world(world) {}

    /// ERROR_INVALID_PARAMETER for an unknown job.
    void ReadJob(HANDLE handle, DWORD jobId, DWORD level, const SizedBuffer& target);

    /// Up to `count` jobs from the one at the position `first`, which counts from 0.
    void ListJobs(HANDLE handle, DWORD first, DWORD count, DWORD level, const SizedBuffer& target);

private:
    World& _world;
};
