// SPDX-License-Identifier: MIT
#include "spooler/world/JobSchedule.h"

#include <algorithm>

namespace {

constexpr DWORD printsAfterSpooling = PRINTER_ATTRIBUTE_QUEUED;

/// Equal times are open all day; a window may go over midnight.
bool IsOpen(DWORD start, DWORD until, DWORD now)
{
    if (start == until) return true;
    return start < until ? now >= start && now < until : now >= start || now < until;
}

bool HasFreePort(const PrinterRecord& printer)
{
    const size_t ports = std::max<size_t>(SplitPorts(printer.portName.value_or(L"")).size(), 1);
    const auto active = std::ranges::count_if(printer.queue.Jobs(), [](const auto& job) { return job->IsActive(); });
    return static_cast<size_t>(active) < ports;
}

/// Its document is complete, or the printer prints while it is being spooled and there is something to print.
bool IsSpooledEnough(const World& world, const PrinterRecord& printer, const JobRecord& job)
{
    if (!job.IsSpooling()) return true;
    return !(printer.attributes & printsAfterSpooling) && !job.spooled.empty() &&
           world.IsBeingSpooled(printer.id, job.id);
}

} // namespace

const JobRecord* NextJob(const World& world, const PrinterRecord& printer)
{
    const DWORD now = world.MinuteOfDay();
    if (printer.IsPaused() || (printer.attributes & PRINTER_ATTRIBUTE_WORK_OFFLINE) || !HasFreePort(printer) ||
        !IsOpen(printer.startTime, printer.untilTime, now))
        return nullptr;

    const JobRecord* next = nullptr;
    for (const auto& job : printer.queue.Jobs()) {
        if (!job->MayStart() || !IsOpen(job->startTime, job->untilTime, now)) continue;
        if (!IsSpooledEnough(world, printer, *job)) continue;
        if (job->id == printer.linkedJobId) return job.get();
        if (!next || job->priority > next->priority) next = job.get();
    }
    return next;
}
