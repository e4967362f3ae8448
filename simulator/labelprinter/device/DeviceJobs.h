// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/LabelPrinterControl.h"

#include <deque>
#include <string>

/// A job that the device has or has had.
struct DeviceJob {
    DWORD jobId = 0;
    std::wstring document;
    LabelPrinterVerdict verdict = LabelPrinterVerdict::Printing;
    DWORD labelsAsked = 0;
    DWORD labelsPrinted = 0;
};

/// What the device remembers of its jobs. A number that comes again stands for the newer job.
class DeviceJobs {
public:
    /// The oldest job goes when there are more.
    static constexpr size_t most = 1000;

    /// A fresh record under that number. References to other records don't hold any longer.
    DeviceJob& Begin(DWORD jobId, std::wstring document);

    /// Null if the device doesn't know it.
    DeviceJob* Find(DWORD jobId);

private:
    std::deque<DeviceJob> _jobs; ///< oldest first
};
