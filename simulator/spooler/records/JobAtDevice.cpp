// SPDX-License-Identifier: MIT
#include "spooler/records/JobAtDevice.h"

JobAtDevice::~JobAtDevice()
{
    if (_handle) _device.cancelJob(_handle);
}

DWORD JobAtDevice::Begin(const SpoolerDeviceJob& job) noexcept
{
    const DWORD result = _device.beginJob(&job, &_handle);
    if (result != ERROR_SUCCESS) _handle = nullptr;
    return result;
}

DWORD JobAtDevice::Write(const void* bytes, DWORD count, SpoolerDeviceProgress& progress) noexcept
{
    return Note(_device.writeJob(_handle, bytes, count, &progress), progress);
}

DWORD JobAtDevice::End(SpoolerDeviceProgress& progress) noexcept
{
    return Note(_device.endJob(_handle, &progress), progress);
}

/// The handle dies with a verdict, and is of no use if the device doesn't know it.
DWORD JobAtDevice::Note(DWORD result, const SpoolerDeviceProgress& progress) noexcept
{
    if (result != ERROR_SUCCESS || progress.verdict != SpoolerDeviceVerdict::Pending) _handle = nullptr;
    return result;
}
