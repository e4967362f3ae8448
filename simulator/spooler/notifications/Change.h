// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/NotifyValue.h"

/// A field that changed, with its new value.
struct FieldChange {
    WORD field = 0;
    NotifyValue value;
};

/// The fields of one printer or job that changed.
struct RecordChange {
    WORD type = JOB_NOTIFY_TYPE;
    DWORD id = 0; // of the job; 0 for a printer
    std::vector<FieldChange> fields;
};

/// All that one call changed about a printer and its jobs, in the order in which it came about.
struct Change {
    DWORD bits = 0; // PRINTER_CHANGE_*
    std::vector<RecordChange> records;
};
