// SPDX-License-Identifier: MIT
#include "spooler/world/PrintSteps.h"

#include "spooler/SpoolerConstants.h"
#include "spooler/TimeUnits.h"
#include "spooler/world/DocumentOutput.h"
#include "spooler/world/PrinterDevices.h"

#include <algorithm>
#include <utility>

namespace {

constexpr DWORD atDevice = JOB_STATUS_PRINTING | JOB_STATUS_COMPLETE;
constexpr DWORD endedBits = atDevice | JOB_STATUS_PRINTED | JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT |
                            JOB_STATUS_OFFLINE | JOB_STATUS_USER_INTERVENTION | jobStatusRetained;

bool IsKept(const PrinterRecord& printer, const JobRecord& job)
{
    return job.retain || (printer.attributes & PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
}

/// A port of the pool that no other job is at.
OptionalText FreePort(const PrinterRecord& printer)
{
    const std::vector<std::wstring> ports = SplitPorts(printer.portName.value_or(L""));
    if (ports.size() < 2) return std::nullopt;
    const auto isFree = [&](const std::wstring& port) {
        return std::ranges::none_of(printer.queue.Jobs(),
                                    [&](const auto& job) { return job->IsActive() && job->portName == port; });
    };
    const auto port = std::ranges::find_if(ports, isFree);
    return port == ports.end() ? OptionalText() : *port;
}

void MeetTrouble(const DeviceTrouble& trouble, JobRecord& job)
{
    job.status |= trouble.jobStatus;
    if (trouble.text) job.statusText = trouble.text;
}

/// The job has printed: it is told so, then that it isn't printing any more.
void EndPrinting(ChangeScope& scope, JobRecord& job)
{
    const bool kept = IsKept(scope.Printer(), job);
    job.status |= JOB_STATUS_PRINTED;
    scope.Mark();
    job.status &= ~atDevice;
    if (kept && !job.retain) job.status &= ~jobStatusRetained;
    if (kept && job.retain) job.status |= jobStatusRetained;
    job.stage = kept ? JobStage::Kept : JobStage::Printed;
    job.device.reset();
    if (scope.Printer().linkedJobId != job.nextJobId) scope.EditPrinter().linkedJobId = job.nextJobId;
}

} // namespace

void StartPrinting(ChangeScope& scope, JobRecord& job)
{
    job.portName = FreePort(scope.Printer());
    job.stage = JobStage::Sending;
    const SpoolerDevice* const device = DeviceFor(scope.Printer(), job);
    job.device = device ? std::make_unique<JobAtDevice>(*device) : nullptr;
    job.bytesPrinted = 0;
    job.pagesPrinted = 0;
    job.time = 0;
    job.status &= ~static_cast<DWORD>(JOB_STATUS_RESTART);
    job.status |= JOB_STATUS_PRINTING;
    if (!job.IsSpooling()) job.status |= jobStatusRetained; // from now on until it has finished it can't just go
    if (scope.Printer().trouble.jobStatus == 0) return;
    scope.Mark();
    MeetTrouble(scope.Printer().trouble, job);
}

DWORD SendingMs(const PrinterRecord& printer, DWORD bytes)
{
    if (printer.bytesPerSecond == 0) return 0;
    return static_cast<DWORD>(ULONGLONG{bytes} * msPerSecond / printer.bytesPerSecond);
}

DWORD BytesToSend(const JobRecord& job, DWORD limit) noexcept
{
    const auto spooled = static_cast<DWORD>(job.spooled.size());
    const DWORD end = std::min(spooled, job.PageEnd(job.pagesPrinted).value_or(spooled));
    return end > job.bytesPrinted ? std::min(limit, end - job.bytesPrinted) : 0;
}

void SendBytes(ChangeScope& scope, JobRecord& job, DWORD limit)
{
    job.bytesPrinted += BytesToSend(job, limit);
    scope.Tell(PRINTER_CHANGE_WRITE_JOB);
}

bool HasPrintedPage(const JobRecord& job) noexcept
{
    const std::optional<DWORD> end = job.PageEnd(job.pagesPrinted);
    return end && job.bytesPrinted >= *end;
}

void CountPage(ChangeScope&, JobRecord& job)
{
    ++job.pagesPrinted;
}

void EndSending(ChangeScope& scope, JobRecord& job)
{
    std::optional<DeliveryRecord> delivery = OutputDocument(scope.Printer(), job);
    if (!delivery) {
        job.status |= JOB_STATUS_ERROR;
        job.statusText = L"The document could not be written to its output file";
        return;
    }
    scope.EditPrinter().deliveries.push_back(std::move(*delivery));
    job.status &= ~static_cast<DWORD>(JOB_STATUS_SPOOLING);
    if (!scope.Printer().trueEndOfJob && !job.device) return EndPrinting(scope, job);
    job.status |= JOB_STATUS_COMPLETE;
    job.stage = JobStage::Ejecting;
}

void EjectLastPage(ChangeScope& scope, JobRecord& job)
{
    job.status &= ~atDevice;
    EndPrinting(scope, job);
}

void BeginLeaving(ChangeScope&, JobRecord& job)
{
    job.status |= JOB_STATUS_DELETING;
    job.stage = JobStage::Leaving;
    job.device.reset();
}

void Leave(ChangeScope& scope, JobRecord& job)
{
    job.status |= JOB_STATUS_DELETED;
    scope.RemoveJob(job.id);
}

bool MayRestart(const JobRecord& job) noexcept
{
    return job.stage != JobStage::Leaving && (job.status & endedBits) != 0;
}

void RestartJob(ChangeScope&, JobRecord& job)
{
    if (job.device && job.device->hasText) job.statusText.reset();
    job.device.reset();
    job.status = (job.status & ~endedBits) | JOB_STATUS_RESTART;
    job.stage = JobStage::Waiting;
    job.pagesPrinted = 0;
    job.bytesPrinted = 0;
    job.time = 0;
}

void SetTrouble(ChangeScope& scope, DeviceTrouble trouble)
{
    PrinterRecord& printer = scope.EditPrinter();
    const DeviceTrouble old = std::exchange(printer.trouble, std::move(trouble));
    printer.status = (printer.status & ~old.printerStatus) | printer.trouble.printerStatus;
    for (const auto& each : printer.queue.Jobs()) {
        if (!each->IsActive()) continue;
        JobRecord& job = scope.EditJob(each->id);
        job.status &= ~old.jobStatus;
        if (old.text) job.statusText.reset();
        MeetTrouble(printer.trouble, job);
    }
}
