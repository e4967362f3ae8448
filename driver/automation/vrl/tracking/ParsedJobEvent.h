// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "vrl/frame/EventArguments.h"

#include <deque>

/// One event of one job, found in a notice of the spooler and not told yet.
struct ParsedJobEvent {
    ParsedJobEvent(DWORD job, int event) noexcept : jobID(job), eventID(event) {}

    /// An event that tells a number before and after its change.
    ParsedJobEvent(DWORD job, int event, DWORD oldValue, DWORD newValue) : ParsedJobEvent(job, event)
    {
        arguments.InsertAtFront(static_cast<long>(oldValue));
        arguments.InsertAtFront(static_cast<long>(newValue));
    }

    DWORD jobID;
    int eventID;              ///< a JobEventID
    EventArguments arguments; ///< those beyond the job itself
};

/// In the order in which they are told.
using ParsedJobEvents = std::deque<ParsedJobEvent>;
