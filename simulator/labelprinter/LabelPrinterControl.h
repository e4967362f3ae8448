// SPDX-License-Identifier: MIT
#pragma once

/// Control interface of the label printer simulator: what a test or a demonstration does to simulated label printers,
/// and what the simulated port monitor asks of them. The functions are exported by labelprinter.dll; link the CMake
/// target `labelprinter_simulator`.
///
/// The printers: one for each name, in whatever case; they live in the process from the first call until it ends, so
///               port monitor and interface module can come and go.
/// Threads:      any thread may call any function at any time; none blocks.
/// Ownership:    texts and bytes are copied in; results are copied out into the caller's memory.
/// Results:      ERROR_SUCCESS or a system error code: ERROR_INVALID_PRINTER_NAME for an unknown printer, and what the
///               function's comment names.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>
#include <string_view>

/// What the device says of a job.
enum class LabelPrinterVerdict : DWORD {
    Printing,  ///< it is still at it
    Completed, ///< all labels were printed
    Verified,  ///< all labels were printed and looked at
    Failed,    ///< some labels were thrown away
};

/// A job that the device has or has had.
struct LabelPrinterJobRecord {
    DWORD jobId;
    LabelPrinterVerdict verdict;
    DWORD labelsAsked; ///< as far as the job's bytes have been read
    DWORD labelsPrinted;
    wchar_t document[MAX_PATH];
};

/// How long a query may take, in milliseconds; 0 and below stand for 30 seconds.
struct LabelPrinterTimeouts {
    LONG send;            ///< until the device is there to take it
    LONG receiveStart;    ///< from then until it answers
    LONG receiveInterval; ///< between the pieces of an answer; it comes in one piece here
};

/// How a port monitor is to take a request.
struct LabelPrinterMonitorMood {
    bool fails;
    DWORD delayMs;
};

extern "C" {

// The printers.

/// Takes all printers away, and lets the clock run by itself.
void LabelPrinterReset() noexcept;
/// Adds a printer that is ready. Nothing happens if there is one of that name.
DWORD LabelPrinterAdd(const wchar_t* printerName) noexcept;
DWORD LabelPrinterRemove(const wchar_t* printerName) noexcept;

/// Sets one of the properties that docs/label-printer.md lists, as "media" to "12 labels".
/// ERROR_INVALID_PARAMETER for an unknown property or value; nothing has changed then.
DWORD LabelPrinterSet(const wchar_t* printerName, const wchar_t* property, const wchar_t* value) noexcept;
/// The value of a property, cut to `characters` with its terminator. ERROR_INVALID_PARAMETER for an unknown one.
DWORD LabelPrinterGet(const wchar_t* printerName, const wchar_t* property, wchar_t* value, DWORD characters) noexcept;

/// What the printer's panel would show, cut to `size` with its terminator.
DWORD LabelPrinterStatusText(const wchar_t* printerName, char* text, DWORD size) noexcept;
/// The extended status word and the severity.
DWORD LabelPrinterStatus(const wchar_t* printerName, DWORD* flags, LONG* severity) noexcept;

// The clock, by which queries are timed. It runs by itself until it is stopped.

void LabelPrinterStopClock() noexcept;
/// Lets a stopped clock go on by that much.
void LabelPrinterAdvance(DWORD ms) noexcept;

// Jobs. They come from the spooler, by DeviceLink.h.

/// Gives the device a job of the past, or another verdict for one that it has.
DWORD LabelPrinterSetJob(const wchar_t* printerName, DWORD jobId, LabelPrinterVerdict verdict) noexcept;
/// ERROR_NOT_FOUND for a job that the device doesn't know.
DWORD LabelPrinterJob(const wchar_t* printerName, DWORD jobId, LabelPrinterJobRecord* record) noexcept;

// Queries.

/// Commands to the device at once, without a port monitor; the reply as far as `size` goes, and its length.
DWORD LabelPrinterCommand(const wchar_t* printerName, const void* bytes, DWORD count, void* reply, DWORD size,
                          DWORD* length) noexcept;

/// Hands a query to the device, under a key that later calls name. A key in use begins again.
DWORD LabelPrinterStartQuery(const wchar_t* printerName, const char* key, const void* bytes, DWORD count,
                             const LabelPrinterTimeouts* timeouts) noexcept;
/// 0: waits for the device, or nobody knows the key; 1: waits for the answer; 2: answered; 3: failed; 4: timed out.
DWORD LabelPrinterQueryStatus(const wchar_t* printerName, const char* key, LONG* status) noexcept;
/// The answer as far as `size` goes, and its length; ERROR_NOT_READY before there is one.
DWORD LabelPrinterQueryResponse(const wchar_t* printerName, const char* key, void* response, DWORD size,
                                DWORD* length) noexcept;

// The port monitor.

/// Each request begins with this; it is counted.
DWORD LabelPrinterBeginRequest(const wchar_t* printerName, LabelPrinterMonitorMood* mood) noexcept;
/// Requests so far.
DWORD LabelPrinterRequests(const wchar_t* printerName) noexcept;

} // extern "C"

// Conveniences over the functions above.

inline std::wstring LabelPrinterGet(const wchar_t* printerName, const wchar_t* property)
{
    wchar_t value[MAX_PATH] = {};
    ::LabelPrinterGet(printerName, property, value, MAX_PATH);
    return value;
}

inline std::string LabelPrinterCommand(const wchar_t* printerName, std::string_view commands)
{
    std::string reply(4096, '\0');
    DWORD length = 0;
    ::LabelPrinterCommand(printerName, commands.data(), static_cast<DWORD>(commands.size()), reply.data(),
                          static_cast<DWORD>(reply.size()), &length);
    reply.resize(length);
    return reply;
}
