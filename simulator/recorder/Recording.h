// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <winspool.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// The two numbers of an entry's data.
using NotifyNumbers = std::array<DWORD, 2>;
/// The block that an entry's data points to; nothing: a null pointer.
using NotifyBlock = std::optional<std::vector<BYTE>>;

/// One entry of a batch: PRINTER_NOTIFY_INFO_DATA, with its data copied.
struct RecordedEntry {
    WORD type = JOB_NOTIFY_TYPE;
    WORD field = 0;
    DWORD reserved = 0;
    DWORD id = 0; ///< the job's number
    std::variant<NotifyNumbers, NotifyBlock> data;

    bool operator==(const RecordedEntry&) const = default;
};

/// PRINTER_NOTIFY_INFO, with its entries copied.
struct RecordedInfo {
    DWORD version = 2;
    DWORD flags = 0;
    std::vector<RecordedEntry> entries;

    bool operator==(const RecordedInfo&) const = default;
};

/// What one FindNextPrinterChangeNotification gave.
struct RecordedBatch {
    uint64_t microseconds = 0; ///< since the recording began
    bool refresh = false;      ///< the recorder had asked for all values, since changes had been lost
    DWORD change = 0;
    std::optional<RecordedInfo> info; ///< nothing: the batch came without an information block

    bool operator==(const RecordedBatch&) const = default;
};

/// What was recorded, where, and what was asked for.
struct RecordingHeader {
    std::wstring printer;
    std::wstring driver;
    std::wstring system;
    SYSTEMTIME begun = {}; ///< UTC; all zero: not told
    DWORD filter = 0;
    std::vector<WORD> printerFields;
    std::vector<WORD> jobFields;
};

/// A whole recording: its batches in the order of their times.
struct Recording {
    RecordingHeader header;
    std::vector<RecordedBatch> batches;
};

/// Copies what FindNextPrinterChangeNotification gave; `info` may be null. Reads nothing beyond the sizes that the
/// entries tell. An entry of an unknown field has numbers unless its Reserved tells of another kind.
RecordedBatch CopyBatch(DWORD change, const PRINTER_NOTIFY_INFO* info);
