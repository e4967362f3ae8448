// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/ReferenceList.h"
#include "vrl/tracking/ParsedJobEvent.h"

#include <wrl/client.h>

#include <unordered_map>

class XPrinter;

/// Tells the events of a printer's jobs: first to the `PrintJob` objects that have sinks, then to the `PrintQueue`
/// objects.
///
/// Job level: each `PrintJob` fires with itself as the job. Queue level: each `PrintQueue` fires with a `PrintJob` made
/// here, the same one for all events of a job until it is final.
/// Threading: the printer's notification thread, which calls the sinks with the list of the objects that fire locked.
class JobEventDispatch {
public:
    /// `printer` must outlive this; `printerName` is the one under which event objects are bound.
    JobEventDispatch(XPrinter& printer, const OString& printerName);

    /// Queue sinks have heard of that job, and not yet of its end.
    bool KnowsJob(DWORD jobID) const { return _printJobs.contains(jobID); }

    /// Told in order. The status object of an error is left in the event's arguments for the queue level.
    void HandlePrintJobEvents(ParsedJobEvents& events);

    /// Does nothing at all without a queue that has sinks.
    void HandlePrintQueueEvents(ParsedJobEvents& events);

    /// Lets go of the jobs that never became final.
    void ReleaseJobs() { _printJobs.clear(); }

private:
    void HandlePrintJobEvent(ParsedJobEvent& event);
    void HandlePrintQueueEvent(ParsedJobEvent& event);
    void FireJobEvent(ReferenceList::Scope& jobReferences, const ParsedJobEvent& event);
    void FireJobStatusChanged(ReferenceList::Scope& jobReferences);
    void FireQueueEvent(const ParsedJobEvent& event);
    Microsoft::WRL::ComPtr<IPrintJob> JobForQueues(const ParsedJobEvent& event);

    XPrinter& _printer;
    const OString _printerName;
    std::unordered_map<DWORD, Microsoft::WRL::ComPtr<IPrintJob>> _printJobs;
};
