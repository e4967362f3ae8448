// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/NotifyValue.h"

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
    DWORD flags = 0;        // of the block
    std::vector<BatchEntry> entries;
};
