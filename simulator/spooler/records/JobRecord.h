// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// What the print functions and notifications tell of a job, apart from what its document and its place in the queue
/// tell.
struct JobFields {
    DWORD id = 0;
    OptionalText machineName;
    OptionalText userName;
    OptionalText document;
    OptionalText notifyName;
    OptionalText datatype;
    OptionalText printProcessor;
    OptionalText parameters = L"";
    OptionalText statusText;
    OptionalText portName; // null: the printer's
    Bytes devMode;
    DWORD status = 0;
    DWORD priority = DEF_PRIORITY;
    DWORD startTime = 0;
    DWORD untilTime = 0;
    DWORD totalPages = 0;
    DWORD pagesPrinted = 0;
    DWORD bytesPrinted = 0; // went to the port
    SYSTEMTIME submitted = {};
    DWORD time = 0; // milliseconds since printing began
};

/// A job of a print queue with its spooled document. Its position is its place in the queue.
struct JobRecord : JobFields {
    DWORD nextJobId = 0;     // linked by level 3
    bool retain = false;     // stays in the queue when it has printed
    OptionalText outputFile; // of DOC_INFO_1
    Bytes spooled;
    DWORD reportedSize = 0; // 0: what was spooled

    DWORD Size() const noexcept { return reportedSize ? reportedSize : static_cast<DWORD>(spooled.size()); }

    /// Nothing holds it back from being printed now.
    bool IsReady() const noexcept;
};
