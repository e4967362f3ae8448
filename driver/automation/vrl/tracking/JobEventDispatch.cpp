// SPDX-License-Identifier: MIT
#include "vrl/tracking/JobEventDispatch.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"
#include "vrl/core/JobEventID.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinter.h"
#include "vrl/spooler/OwnText.h"
#include "vrl/tracking/EventObjects.h"

#include <utility>

using Microsoft::WRL::ComPtr;

namespace {

constexpr size_t bucketsFromTheStart = 50;

/// The child `Status` of a `Printer` or a `PrintJob`; null if there is none to be had.
template <class Status, class Object>
ComPtr<Status> StatusOf(const ComPtr<Object>& object)
{
    ComPtr<Status> status;
    [[maybe_unused]] const HRESULT hr = object ? object->get_Status(&status) : E_POINTER;
    DEBUG_ASSERT(((HRESULT)(hr) >= 0));
    return status;
}

} // namespace

JobEventDispatch::JobEventDispatch(XPrinter& printer, const OString& printerName)
    : _printer(printer), _printerName(OwnText(printerName)), _printJobs(bucketsFromTheStart)
{
}

void JobEventDispatch::HandlePrintJobEvents(ParsedJobEvents& events)
{
    for (ParsedJobEvent& event : events) HandlePrintJobEvent(event);
}

void JobEventDispatch::HandlePrintJobEvent(ParsedJobEvent& event)
{
    const XJobRef job = XJobRef::Acquire(_printer, event.jobID);
    if (!job->HasJobReferences()) return;
    auto jobReferences = job->LockJobReferences();
    const int jobID = static_cast<int>(event.jobID);
    switch (event.eventID) {
    case JobEventID_OnJobError: {
        const ComPtr<IPrinter> printer = MakeEventPrinter(_printerName);
        const auto status = StatusOf<IPrinterStatus>(printer);
        event.arguments.InsertAtFront(status.Get());
        TRACE("HandlePrintJobEvents \tjobID = %d \tFiring JobEventID_OnJobError\n", jobID);
        FireJobEvent(jobReferences, event);
        break;
    }
    case JobEventID_OnJobStatusChanged:
        TRACE("HandlePrintJobEvents \tjobID = %d \tFiring JobEventID_OnJobStatusChanged\n", jobID);
        FireJobStatusChanged(jobReferences);
        break;
    case JobEventID_OnJobNew: // of queues only
        break;
    default:
        TRACE("HandlePrintJobEvents \tjobID = %d \tFiring EventID:%d\n", jobID, event.eventID);
        FireJobEvent(jobReferences, event);
    }
}

void JobEventDispatch::FireJobEvent(ReferenceList::Scope& jobReferences, const ParsedJobEvent& event)
{
    jobReferences.ForEach([&](SinkOwner& owner, IDispatch* job) {
        EventArguments arguments = event.arguments;
        arguments.AppendAtEnd(job);
        owner.Fire(event.eventID, arguments);
    });
}

/// Each object fires with its own status.
void JobEventDispatch::FireJobStatusChanged(ReferenceList::Scope& jobReferences)
{
    jobReferences.ForEach([&](SinkOwner& owner, IDispatch* identity) {
        ComPtr<IPrintJob> job;
        ComPtr<IDispatch>(identity).As(&job);
        const auto status = StatusOf<IPrintJobStatus>(job);
        EventArguments arguments;
        arguments.AppendAtEnd(status.Get());
        arguments.AppendAtEnd(identity);
        owner.Fire(JobEventID_OnJobStatusChanged, arguments);
    });
}

void JobEventDispatch::HandlePrintQueueEvents(ParsedJobEvents& events)
{
    if (!_printer.HasQueueReferences()) return;
    for (ParsedJobEvent& event : events) HandlePrintQueueEvent(event);
}

void JobEventDispatch::HandlePrintQueueEvent(ParsedJobEvent& event)
{
    const int jobID = static_cast<int>(event.jobID);
    switch (event.eventID) {
    case JobEventID_OnJobError: {
        ComPtr<IPrinter> printer;
        if (event.arguments.GetCount() == 0) { // the job level has made no status
            printer = MakeEventPrinter(_printerName);
            event.arguments.InsertAtFront(StatusOf<IPrinterStatus>(printer).Get());
        }
        TRACE("HandlePrintQueueEvents \tjobID = %d \tFiring JobEventID_OnJobError\n", jobID);
        FireQueueEvent(event);
        break;
    }
    case JobEventID_OnJobStatusChanged: {
        // Deliberate: the status comes from a passing job of its own, not from the one that the event names.
        const ComPtr<IPrintJob> passing = MakeEventJob(_printerName, event.jobID);
        event.arguments.InsertAtFront(StatusOf<IPrintJobStatus>(passing).Get());
        TRACE("HandlePrintQueueEvents \tjobID = %d \tFiring JobEventID_OnJobStatusChanged\n", jobID);
        FireQueueEvent(event);
        break;
    }
    case JobEventID_OnJobFinalized: {
        TRACE("HandlePrintQueueEvents \tjobID = %d \tJobEventID_OnJobFinalized\n", jobID);
        FireQueueEvent(event);
        [[maybe_unused]] const auto pPair = _printJobs.extract(event.jobID);
        DEBUG_ASSERT(pPair);
        break;
    }
    default:
        TRACE("HandlePrintQueueEvents \tjobID = %d \tFiring EventID:%d\n", jobID, event.eventID);
        FireQueueEvent(event);
    }
}

void JobEventDispatch::FireQueueEvent(const ParsedJobEvent& event)
{
    const ComPtr<IPrintJob> job = JobForQueues(event);
    if (!job) return;
    auto queueReferences = _printer.LockQueueReferences();
    queueReferences.ForEach([&](SinkOwner& owner, IDispatch*) {
        EventArguments arguments = event.arguments;
        arguments.AppendAtEnd(job.Get());
        owner.Fire(event.eventID, arguments);
    });
}

/// The job object of an event at queue level, made at the first event of the job. A change of status makes none: it is
/// not told of a job that queues haven't heard of.
ComPtr<IPrintJob> JobEventDispatch::JobForQueues(const ParsedJobEvent& event)
{
    const auto known = _printJobs.find(event.jobID);
    if (known != _printJobs.end()) return known->second;
    if (event.eventID == JobEventID_OnJobStatusChanged) return nullptr;

    ComPtr<IPrintJob> made = MakeEventJob(_printerName, event.jobID);
    if (made) _printJobs.emplace(event.jobID, made);
    return made;
}
