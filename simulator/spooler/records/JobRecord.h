// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/JobAtDevice.h"
#include "spooler/Text.h"

#include <memory>

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

/// How far printing has come with a job. Its status tells the same to the outside, but anybody may set that.
enum class JobStage {
    Waiting,
    Sending,  ///< its bytes go to the device
    Ejecting, ///< all bytes are there, the device is still at work
    Printed,  ///< it is to leave the queue
    Kept,     ///< it has printed and stays in the queue
    Leaving,  ///< it is being deleted
};

/// A job of a print queue with its spooled document. Its position is its place in the queue.
struct JobRecord : JobFields {
    JobStage stage = JobStage::Waiting;
    DWORD nextJobId = 0;     // linked by level 3
    bool retain = false;     // stays in the queue when it has printed
    OptionalText outputFile; // of DOC_INFO_1
    OptionalText lateName;   // that the document gets when it has been spooled
    Bytes spooled;
    std::vector<DWORD> pageEnds;         // in the spooled bytes, of the pages that were ended
    DWORD reportedSize = 0;              // 0: what was spooled
    std::unique_ptr<JobAtDevice> device; // while it is printed through a port with a device

    DWORD Size() const noexcept { return reportedSize ? reportedSize : static_cast<DWORD>(spooled.size()); }

    /// Spooled bytes that have not been sent.
    DWORD BytesLeft() const noexcept { return static_cast<DWORD>(spooled.size()) - bytesPrinted; }

    /// Bytes that are to be sent before that page, counted from 0, has printed; nothing if it isn't known yet.
    /// Pages whose ends were never told share the bytes evenly.
    std::optional<DWORD> PageEnd(DWORD page) const noexcept;

    /// Something holds it back that somebody has to put right, apart from its device.
    bool IsHeld() const noexcept;
    /// It waits, and its status doesn't keep it from being printed.
    bool MayStart() const noexcept;
    /// The device has it.
    bool IsActive() const noexcept { return stage == JobStage::Sending || stage == JobStage::Ejecting; }
    bool IsSpooling() const noexcept { return (status & JOB_STATUS_SPOOLING) != 0; }

    /// The document is complete, as far as it goes. Nothing happens to a job that is being deleted.
    void EndSpooling();
};
