// SPDX-License-Identifier: MIT
#include "spooler/world/DeviceSteps.h"

#include "spooler/world/PrinterDevices.h"
#include "spooler/world/PrintSteps.h"

#include <algorithm>

namespace {

/// What came of asking the device.
struct Answer {
    DWORD error = ERROR_SUCCESS;
    bool begun = false;  // by this call
    bool broken = false; // by that error
    SpoolerDeviceProgress progress{};

    bool IsStalled() const { return progress.busyMs == spoolerDeviceStalled; }
    bool IsPending() const { return progress.verdict == SpoolerDeviceVerdict::Pending; }
};

DWORD Begin(const PrinterRecord& printer, const JobRecord& job)
{
    const std::wstring port = job.portName.value_or(printer.portName.value_or(L""));
    const std::wstring document = job.document.value_or(L"");
    return job.device->Begin({printer.name.c_str(), port.c_str(), job.id, document.c_str()});
}

DWORD Send(const JobRecord& job, DWORD limit, SpoolerDeviceProgress& progress)
{
    const DWORD count = std::min(limit, job.BytesLeft());
    const DWORD result = job.device->Write(job.spooled.data() + job.bytesPrinted, count, progress);
    progress.taken = std::min(progress.taken, count);
    return result;
}

/// A device that isn't there or has another job is waited for.
Answer Refusal(DWORD error)
{
    Answer answer{.error = error};
    answer.broken = error != ERROR_NOT_CONNECTED && error != ERROR_BUSY;
    answer.progress.busyMs = spoolerDeviceStalled;
    if (error != ERROR_NOT_CONNECTED) return answer;
    answer.progress.jobStatus = JOB_STATUS_OFFLINE;
    std::ranges::copy(std::wstring_view(L"Offline"), answer.progress.statusText);
    return answer;
}

Answer Ask(const PrinterRecord& printer, const JobRecord& job, DWORD limit)
{
    Answer answer;
    if (!job.device->HasBegun()) {
        const DWORD refused = Begin(printer, job);
        if (refused != ERROR_SUCCESS) return Refusal(refused);
        answer.begun = true;
    }
    SpoolerDeviceProgress& progress = answer.progress;
    answer.error = job.stage == JobStage::Sending ? Send(job, limit, progress) : job.device->End(progress);
    answer.broken = answer.error != ERROR_SUCCESS;
    progress.statusText[MAX_PATH - 1] = L'\0';
    return answer;
}

bool HasNews(const JobRecord& job, const Answer& answer)
{
    const SpoolerDeviceProgress& progress = answer.progress;
    const std::wstring_view oldText = job.device->hasText && job.statusText ? *job.statusText : std::wstring_view();
    return answer.begun || answer.broken || !answer.IsPending() || progress.taken > 0 ||
           progress.pagesPrinted > job.pagesPrinted || progress.pagesKnown > job.totalPages ||
           progress.jobStatus != job.device->status || progress.statusText != oldText;
}

void ShowState(JobRecord& job, const SpoolerDeviceProgress& progress)
{
    job.status = (job.status & ~job.device->status) | progress.jobStatus;
    job.device->status = progress.jobStatus;
    if (job.device->hasText) job.statusText.reset();
    job.device->hasText = progress.statusText[0] != L'\0';
    if (job.device->hasText) job.statusText = progress.statusText;
}

/// What the device took, printed and told.
void TakeOver(ChangeScope& scope, JobRecord& job, const Answer& answer)
{
    const SpoolerDeviceProgress& progress = answer.progress;
    if (progress.taken > 0) scope.Tell(PRINTER_CHANGE_WRITE_JOB);
    job.bytesPrinted += progress.taken;
    job.pagesPrinted = std::max(job.pagesPrinted, progress.pagesPrinted);
    job.totalPages = std::max(job.totalPages, progress.pagesKnown);
    job.device->pagesLeft = progress.pagesPrinted < progress.pagesKnown;
    job.device->stalled = answer.IsStalled();
    job.device->busyMs = SendingMs(scope.Printer(), progress.taken) + (answer.IsStalled() ? 0 : progress.busyMs);
    job.time += job.device->busyMs;
    ShowState(job, progress);
}

/// Only somebody who restarts or deletes the job can put that right. What was sent is lost.
void Break(JobRecord& job, DWORD error)
{
    ShowState(job, {});
    job.status = (job.status & ~DWORD{JOB_STATUS_COMPLETE}) | JOB_STATUS_ERROR;
    job.statusText = L"The device has refused or lost the job, error " + std::to_wstring(error);
    job.stage = JobStage::Sending;
    job.bytesPrinted = 0;
}

/// The device has thrown away what was left.
void ThrowAway(ChangeScope& scope, JobRecord& job)
{
    scope.Mark();
    BeginLeaving(scope, job);
}

void End(ChangeScope& scope, JobRecord& job)
{
    if (job.stage == JobStage::Sending) EndSending(scope, job);
    if (job.stage == JobStage::Ejecting) EjectLastPage(scope, job);
}

} // namespace

bool AskDevice(World& world, const PrinterRecord& printer, const JobRecord& job, DWORD limit)
{
    const Answer answer = Ask(printer, job, limit);
    if (!HasNews(job, answer)) {
        job.device->stalled = true;
        return false;
    }
    ChangeScope scope(world, printer);
    JobRecord& changed = scope.EditJob(job.id);
    if (answer.broken) {
        Break(changed, answer.error);
        return true;
    }
    TakeOver(scope, changed, answer);
    if (answer.progress.verdict == SpoolerDeviceVerdict::Failed)
        ThrowAway(scope, changed);
    else if (!answer.IsPending())
        End(scope, changed);
    return true;
}

bool MirrorDevices(World& world, const PrinterRecord& printer)
{
    const DWORD status = DeviceStatusOf(printer);
    if (status == printer.deviceStatus) return false;
    ChangeScope scope(world, printer);
    PrinterRecord& changed = scope.EditPrinter();
    changed.status = (changed.status & ~changed.deviceStatus) | status;
    changed.deviceStatus = status;
    return true;
}
