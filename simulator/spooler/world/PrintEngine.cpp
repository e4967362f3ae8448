// SPDX-License-Identifier: MIT
#include "spooler/world/PrintEngine.h"

#include "spooler/TimeUnits.h"
#include "spooler/world/DeviceSteps.h"
#include "spooler/world/JobSchedule.h"
#include "spooler/world/PrintSteps.h"

#include <algorithm>
#include <array>

namespace {

constexpr DWORD stepMs = 20; // of a step in real time that is no sending
constexpr DWORD noLimit = 0xFFFFFFFF;

/// Bytes that go to the device in one step: in real time as many as it takes in the time of a step.
DWORD PieceLimit(const PrinterRecord& printer)
{
    if (printer.pace != SpoolerPace::RealTime || printer.bytesPerSecond == 0) return noLimit;
    return std::max<DWORD>(printer.bytesPerSecond / (msPerSecond / stepMs), 1);
}

void SendPiece(ChangeScope& scope, JobRecord& job)
{
    const DWORD limit = PieceLimit(scope.Printer());
    job.time += SendingMs(scope.Printer(), BytesToSend(job, limit));
    SendBytes(scope, job, limit);
}

/// What a job at a device waits for that isn't the device's own state.
bool IsHeldUp(const PrinterRecord& printer, const JobRecord& job)
{
    return job.IsHeld() || (job.stage == JobStage::Sending && printer.IsPaused());
}

/// The device can print on with what it has been given, or be given more.
bool HasMoreForDevice(const JobRecord& job)
{
    return !job.device->HasBegun() || job.BytesLeft() > 0 || (job.IsSpooling() && job.device->pagesLeft);
}

} // namespace

/// The step that the job, which has been started, waits for.
std::optional<PrintEngine::Kind> PrintEngine::KindFor(const PrinterRecord& printer, const JobRecord& job,
                                                      bool forced) const
{
    if (job.device) return KindAtDevice(printer, job, forced);
    switch (job.stage) {
    case JobStage::Waiting:
        return forced ? std::optional(Kind::Start) : std::nullopt;
    case JobStage::Sending:
        if (!forced && (job.IsHeld() || printer.IsPaused())) return std::nullopt;
        if (HasPrintedPage(job)) return Kind::Count;
        if (BytesToSend(job, noLimit) > 0) return Kind::Send;
        return job.IsSpooling() && !forced ? std::nullopt : std::optional(Kind::EndSending);
    case JobStage::Ejecting:
        // Whoever said that all was sent, though the port doesn't know, has to say when the last page is out.
        if (!forced && (job.IsHeld() || !printer.trueEndOfJob)) return std::nullopt;
        return Kind::Eject;
    case JobStage::Printed:
        return Kind::BeginLeaving;
    case JobStage::Kept:
        return std::nullopt;
    case JobStage::Leaving:
        return _world.IsBeingSpooled(printer.id, job.id) ? std::nullopt : std::optional(Kind::Leave);
    }
    return std::nullopt;
}

/// The same for a job whose port has a device.
std::optional<PrintEngine::Kind> PrintEngine::KindAtDevice(const PrinterRecord& printer, const JobRecord& job,
                                                           bool forced)
{
    if (job.device->stalled || (!forced && IsHeldUp(printer, job))) return std::nullopt;
    if (job.stage == JobStage::Ejecting || HasMoreForDevice(job)) return Kind::AskDevice;
    return job.IsSpooling() && !forced ? std::nullopt : std::optional(Kind::EndSending);
}

std::optional<PrintEngine::NextStep> PrintEngine::Find(const PrinterRecord& printer) const
{
    if (_world.IsStopped()) return std::nullopt;
    if (printer.recording) return FindLeaving(printer); // its jobs do what the recording tells
    for (const auto& job : printer.queue.Jobs()) {
        if (const std::optional<Kind> kind = KindFor(printer, *job, false)) return NextStep{*kind, job->id};
    }
    const JobRecord* const next = NextJob(_world, printer);
    return next ? std::optional(NextStep{Kind::Start, next->id}) : std::nullopt;
}

std::optional<PrintEngine::NextStep> PrintEngine::FindLeaving(const PrinterRecord& printer) const
{
    for (const auto& job : printer.queue.Jobs()) {
        if (job->stage != JobStage::Printed && job->stage != JobStage::Leaving) continue;
        if (const std::optional<Kind> kind = KindFor(printer, *job, false)) return NextStep{*kind, job->id};
    }
    return std::nullopt;
}

void PrintEngine::Do(const PrinterRecord& printer, NextStep step)
{
    if (step.kind == Kind::AskDevice) {
        AskDevice(_world, printer, World::JobOf(printer, step.jobId), PieceLimit(printer));
        return;
    }
    static constexpr std::array<void (*)(ChangeScope&, JobRecord&), 7> steps{
        StartPrinting, SendPiece, CountPage, EndSending, EjectLastPage, BeginLeaving, Leave,
    };
    ChangeScope scope(_world, printer);
    steps.at(static_cast<size_t>(step.kind))(scope, scope.EditJob(step.jobId));
}

bool PrintEngine::Step(const PrinterRecord& printer)
{
    if (_world.IsStopped()) return false;
    MirrorDevices(_world, printer);
    const std::optional<NextStep> next = Find(printer);
    if (next)
        Do(printer, *next);
    else if (!AskStalledDevice(printer))
        return false;
    MirrorDevices(_world, printer);
    return true;
}

/// Of the jobs whose devices have stalled the first one that can go on does. False if there is none.
bool PrintEngine::AskStalledDevice(const PrinterRecord& printer)
{
    return std::ranges::any_of(printer.queue.Jobs(), [&](const auto& job) {
        const bool isStalled = job->device && job->device->stalled;
        return isStalled && !IsHeldUp(printer, *job) && AskDevice(_world, printer, *job, PieceLimit(printer));
    });
}

bool PrintEngine::LookAtDevices(const PrinterRecord& printer)
{
    if (_world.IsStopped() || printer.attached.ports.empty()) return false;
    const bool goesOn = AskStalledDevice(printer);
    return MirrorDevices(_world, printer) || goesOn;
}

std::optional<DWORD> PrintEngine::NextStepMs(const PrinterRecord& printer)
{
    const std::optional<NextStep> next = Find(printer);
    if (!next) return std::nullopt;
    if (next->kind == Kind::AskDevice) return World::JobOf(printer, next->jobId).device->busyMs;
    if (next->kind != Kind::Send) return stepMs;
    return SendingMs(printer, BytesToSend(World::JobOf(printer, next->jobId), PieceLimit(printer)));
}

void PrintEngine::PrintAtOnce(const PrinterRecord& printer, DWORD jobId)
{
    const JobRecord* job = &World::JobOf(printer, jobId);
    while (job) {
        const std::optional<Kind> kind = KindFor(printer, *job, true);
        if (!kind) return;
        Do(printer, {*kind, jobId});
        job = printer.queue.Find(jobId);
        // A document that can't be put out would fail for ever.
        if (job && *kind == Kind::EndSending && job->stage == JobStage::Sending) return;
    }
}

void PrintEngine::Settle()
{
    if (_world.IsStopped()) return;
    while (const DWORD printerId = _world.TakeChangedPrinter()) {
        const PrinterRecord* const printer = _world.FindPrinter(printerId);
        if (!printer) continue;
        if (printer->pace == SpoolerPace::AtOnce) {
            while (Step(*printer)) continue;
        } else if (printer->pace == SpoolerPace::Resting) {
            while (const std::optional<NextStep> next = FindLeaving(*printer)) Do(*printer, *next);
        }
    }
}
