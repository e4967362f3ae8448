// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/ChangeScope.h"

/// SetJobW: what a job is, and what is to become of it.
class JobControl {
public:
    explicit JobControl(World& world) noexcept : _world(world) {}

    /// First takes over the structure, then obeys the command.
    /// ERROR_INVALID_PARAMETER for an unknown job or command, ERROR_INVALID_LEVEL, ERROR_ACCESS_DENIED, and what a
    /// wrong field brings: ERROR_INVALID_PRIORITY, ERROR_INVALID_TIME, ERROR_INVALID_DATATYPE,
    /// ERROR_UNKNOWN_PRINTPROCESSOR.
    void Change(HANDLE handle, DWORD jobId, DWORD level, const BYTE* info, DWORD command);

private:
    void Apply(ChangeScope& scope, const JobRecord& job, DWORD level, const BYTE* info) const;

    World& _world;
};
