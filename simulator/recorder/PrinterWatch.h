// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/Recording.h"

#include "foundation/OHandle.h"

#include <chrono>
#include <optional>
#include <string>

/// Why a recording can't go on: what failed, and the system's error code and text.
struct WatchError {
    std::wstring action;
    DWORD code = ERROR_SUCCESS;

    /// The thread's last error, taken before anything else is done.
    static WatchError Last(const wchar_t* action);

    /// "the printer can't be opened: Access denied. (5)"
    std::wstring Text() const;
};

/// A printer whose notifications of every kind are asked for. Nothing but the system's own print functions is used.
///
/// Ownership: closes its notification and its handle.  Threading: one thread.  Errors: WatchError is thrown.
class PrinterWatch {
public:
    explicit PrinterWatch(const std::wstring& printerName);

    /// What is watched since when.
    const RecordingHeader& Header() const noexcept { return _header; }

    /// Waits for the next batch, until the event `stop`, which may be null, is set or the time is over; then gives
    /// nothing. INFINITE waits for ever.
    /// If changes were lost, the next batch is one that was asked for at once, with all values.
    std::optional<RecordedBatch> Next(HANDLE stop, DWORD timeoutMs);

private:
    void ReadDriver();
    void Subscribe();
    RecordedBatch Fetch(bool refresh);

    OHandle<::ClosePrinter> _printer;
    OHandle<::FindClosePrinterChangeNotification> _notification; // after _printer, to be closed before it
    RecordingHeader _header;
    std::chrono::steady_clock::time_point _begun;
    bool _lost = false; // the last batch told that changes were lost
};
