// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/NotifyValue.h"

#include <cstdint>
#include <memory>

/// One entry of a batch.
struct BatchEntry {
    WORD type = JOB_NOTIFY_TYPE;
    WORD field = 0;
    DWORD id = 0;
    NotifyValue value;
};

/// What one FindNextPrinterChangeNotification gives.
struct Batch {
    DWORD change = 0;       // PRINTER_CHANGE_*
    bool withBlock = false; // there is a block of entries, which may have none
    DWORD version = 2;      // of the block
    DWORD flags = 0;        // of the block
    std::vector<BatchEntry> entries;

    // Of a recording that is played:
    uint64_t microseconds = 0;   // after its beginning
    bool answersRefresh = false; // given only to a client that asks for all values; before that it hears nothing
    std::vector<std::shared_ptr<const Batch>> recorded; // all that was told then; it becomes true when this is fetched
};
