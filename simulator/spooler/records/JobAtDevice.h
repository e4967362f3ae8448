// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/DeviceLink.h"

/// A job at a device: the device's handle, and what the device said last.
///
/// Ownership: a job that goes away before the device gave its verdict is cancelled there.
class JobAtDevice {
public:
    explicit JobAtDevice(const SpoolerDevice& device) noexcept : _device(device) {}
    ~JobAtDevice();
    JobAtDevice(const JobAtDevice&) = delete;
    JobAtDevice& operator=(const JobAtDevice&) = delete;

    /// The device has taken the job on, and has not yet given a verdict.
    bool HasBegun() const noexcept { return _handle != nullptr; }

    // The device's functions, with its results.
    DWORD Begin(const SpoolerDeviceJob& job) noexcept;
    DWORD Write(const void* bytes, DWORD count, SpoolerDeviceProgress& progress) noexcept;
    DWORD End(SpoolerDeviceProgress& progress) noexcept;

    DWORD busyMs = 0;       ///< the device wants to be asked again after this time
    bool stalled = false;   ///< it goes on when its state has changed, whenever that is
    bool pagesLeft = false; ///< pages that the bytes so far ask for have not come out
    DWORD status = 0;       ///< bits that the job bears because of the device
    bool hasText = false;   ///< the job's status text is the device's

private:
    DWORD Note(DWORD result, const SpoolerDeviceProgress& progress) noexcept;

    const SpoolerDevice& _device;
    void* _handle = nullptr;
};
