// SPDX-License-Identifier: MIT
#include "spooler/world/RecordedChanges.h"

#include "spooler/notifications/NotifyFields.h"
#include "spooler/world/ChangeScope.h"

namespace {

/// What a recording doesn't tell of a job that came before it began.
JobRecord NewJob(const World& world, const PrinterRecord& printer, DWORD jobId)
{
    JobRecord job;
    job.id = jobId;
    job.machineName = L"\\\\" + world.MachineName();
    job.userName = world.UserName();
    job.notifyName = world.UserName();
    job.document = L"";
    job.datatype = printer.datatype;
    job.printProcessor = printer.printProcessor;
    job.devMode = printer.devMode;
    ::GetSystemTime(&job.submitted);
    return job;
}

void Apply(const World& world, ChangeScope& scope, const BatchEntry& entry)
{
    if (entry.type == PRINTER_NOTIFY_TYPE) StoreField(scope.EditPrinter(), entry.field, entry.value);
    if (entry.type != JOB_NOTIFY_TYPE || entry.id == 0) return;
    if (!scope.Printer().queue.Find(entry.id)) scope.AppendJob(NewJob(world, scope.Printer(), entry.id));
    JobRecord& job = scope.EditJob(entry.id);
    StoreField(job, entry.field, entry.value);
    if (entry.field == JOB_NOTIFY_FIELD_TOTAL_BYTES) job.reportedSize = entry.value.number;
    if (entry.field == JOB_NOTIFY_FIELD_POSITION) scope.MoveJob(entry.id, entry.value.number);
}

void RemoveDeletedJobs(ChangeScope& scope)
{
    std::vector<DWORD> deleted;
    for (const auto& job : scope.Printer().queue.Jobs()) {
        if (job->status & JOB_STATUS_DELETED) deleted.push_back(job->id);
    }
    for (const DWORD jobId : deleted) scope.RemoveJob(jobId);
}

} // namespace

void BringAbout(World& world, const PrinterRecord* printer, const Batch& batch)
{
    if (!printer) return;
    {
        ChangeScope scope(world, *printer);
        for (const BatchEntry& entry : batch.entries) Apply(world, scope, entry);
        if (batch.change & PRINTER_CHANGE_DELETE_JOB) RemoveDeletedJobs(scope);
    }
    if (batch.change & PRINTER_CHANGE_DELETE_PRINTER) world.RemovePrinter(*printer);
}

std::optional<PlayClock::time_point> PlayingBegins(const PrinterRecord& printer) noexcept
{
    return printer.pace == SpoolerPace::RealTime ? std::optional(PlayClock::now()) : std::nullopt;
}

std::optional<PlayClock::time_point> PlayUntil(World& world, PlayClock::time_point now)
{
    for (;;) {
        Notification* const next = world.Notifications().NextToCome();
        if (!next) return std::nullopt;
        if (const auto due = next->NextComing(); *due > now) return due;
        const DWORD printerId = next->Place().printerId;
        for (const auto& recorded : next->LetCome()) BringAbout(world, world.FindPrinter(printerId), *recorded);
    }
}
