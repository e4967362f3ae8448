// SPDX-License-Identifier: MIT
#pragma once

/// How the spooler feeds a device: a port may name a DLL that exports `SpoolerDeviceFunctions`, and the bytes of the
/// jobs printed through that port go to the functions that it gives.
///
/// The device has no clock: it tells how long it is busy, and the spooler asks again when that time has passed on its
/// own.
///
/// Threads:   any thread may call any function at any time; none blocks, none calls back.
/// Ownership: texts and bytes are copied. A job's handle dies with the first call for it that gives a verdict or an
///            error, with `cancelJob`, and with the device; the spooler may still cancel a job whose device is gone.
/// Results:   ERROR_SUCCESS or a system error code.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

/// The device takes nothing more until its state is changed: paper, ribbon, head, a pause.
constexpr DWORD spoolerDeviceStalled = 0xFFFFFFFF;

/// What became of a job at the device.
enum class SpoolerDeviceVerdict : DWORD {
    Pending,   ///< it is still there
    Completed, ///< all of it was printed
    Verified,  ///< all of it was printed, and the device has looked at what came out
    Failed,    ///< the device has thrown away some of it
};

/// A job that begins.
struct SpoolerDeviceJob {
    const wchar_t* printerName;
    const wchar_t* portName;
    DWORD jobId;
    const wchar_t* document;
};

/// How a job stands after a call.
struct SpoolerDeviceProgress {
    DWORD taken;                  ///< bytes taken by this call
    DWORD busyMs;                 ///< when to call again, 0 for at once; or `spoolerDeviceStalled`
    DWORD pagesPrinted;           ///< pages of the job that have come out
    DWORD pagesKnown;             ///< pages that the job has asked for as far as its bytes have been read
    DWORD jobStatus;              ///< JOB_STATUS_* bits that the device adds to the job's
    wchar_t statusText[MAX_PATH]; ///< why the device has stalled or thrown the job away; else empty
    SpoolerDeviceVerdict verdict; ///< anything but `Pending` ends the job
};

/// The functions of a device DLL.
struct SpoolerDevice {
    DWORD size; ///< of this structure in bytes: later ones are longer

    /// A printer stands before the port: from now on there is a device of its name. Nothing happens if there is.
    DWORD (*attach)(const wchar_t* printerName);
    /// The printer is gone, and its device with it.
    DWORD (*detach)(const wchar_t* printerName);
    /// One setting from a configuration, in the device's own words. ERROR_INVALID_PARAMETER for an unknown word or
    /// value.
    DWORD (*configure)(const wchar_t* printerName, const wchar_t* name, const wchar_t* value);
    /// The PRINTER_STATUS_* bits of the device. ERROR_NOT_CONNECTED if it can't be reached.
    DWORD (*status)(const wchar_t* printerName, DWORD* printerStatus);

    /// ERROR_NOT_CONNECTED if the device can't be reached: try later. One job at a time: ERROR_BUSY.
    DWORD (*beginJob)(const SpoolerDeviceJob* job, void** handle);
    /// Offers the bytes that remain; the device takes some or none. A verdict can come early, when it throws the job
    /// away.
    DWORD (*writeJob)(void* handle, const void* bytes, DWORD count, SpoolerDeviceProgress* progress);
    /// All bytes were taken: call it until it gives a verdict.
    DWORD (*endJob)(void* handle, SpoolerDeviceProgress* progress);
    /// The job was deleted: the device throws the rest away, and the job has failed.
    DWORD (*cancelJob)(void* handle);
};

/// The one export of a device DLL.
using SpoolerDeviceFunctionsCall = const SpoolerDevice*();
constexpr const char* spoolerDeviceFunctionsName = "SpoolerDeviceFunctions";
