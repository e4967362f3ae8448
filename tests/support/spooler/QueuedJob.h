// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/SpoolerControl.h"

#include <vector>

/// A queued job in which every field has a value of its own.
inline SpoolerJob QueuedJob()
{
    SpoolerJob job;
    job.machineName = L"\\\\DESK";
    job.userName = L"Ida";
    job.document = L"Pallet 7";
    job.notifyName = L"Otto";
    job.datatype = L"RAW";
    job.printProcessor = L"winprint";
    job.priority = 9;
    job.startTime = 600;
    job.untilTime = 700;
    job.totalPages = 5;
    job.pagesPrinted = 2;
    job.submitted = {2024, 2, 4, 29, 23, 59, 58, 0};
    job.reportedSize = 4096;
    return job;
}

/// The job as it stands, without a trace in the log. Null if there is none.
inline const JOB_INFO_2W* PeekJob(std::vector<BYTE>& buffer, const wchar_t* printerName, DWORD jobId)
{
    DWORD needed = 0;
    ::SpoolerPeekJob(printerName, jobId, nullptr, 0, &needed);
    buffer.resize(needed);
    const DWORD result = ::SpoolerPeekJob(printerName, jobId, buffer.data(), needed, &needed);
    return result == ERROR_SUCCESS ? reinterpret_cast<const JOB_INFO_2W*>(buffer.data()) : nullptr;
}
