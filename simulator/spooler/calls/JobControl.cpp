// SPDX-License-Identifier: MIT
#include "spooler/calls/JobControl.h"

#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"
#include "spooler/TimeUnits.h"
#include "spooler/records/NameRules.h"
#include "spooler/world/PrintSteps.h"

#include <algorithm>
#include <array>

namespace {

/// A job that is to change, and what its change depends on.
struct JobChange {
    const World& world;
    ChangeScope& scope;
    const JobRecord& job;

    const PrinterRecord& Printer() const { return scope.Printer(); }
    JobRecord& Edit() const { return scope.EditJob(job.id); }
};

/// A field that is null stays as it is.
void Replace(OptionalText& field, const wchar_t* text)
{
    if (text) field = text;
}

void CheckPosition(const JobChange& change, DWORD position)
{
    if (position == JOB_POSITION_UNSPECIFIED || position == change.Printer().queue.PositionOf(change.job.id)) return;
    Require(change.Printer().grantedAccess & administeringAccess, ERROR_ACCESS_DENIED);
}

void CheckPriority(DWORD priority)
{
    Require(priority >= MIN_PRIORITY && priority <= MAX_PRIORITY, ERROR_INVALID_PRIORITY);
}

void CheckDatatype(const JobRecord& job, const wchar_t* datatype)
{
    Require(!datatype || IsDatatype(datatype) || job.datatype == datatype, ERROR_INVALID_DATATYPE);
}

void ApplyInfo1(const JobChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_1W*>(data);
    CheckPriority(info.Priority);
    CheckDatatype(change.job, info.pDatatype);
    CheckPosition(change, info.Position);

    JobRecord& job = change.Edit();
    Replace(job.document, info.pDocument);
    Replace(job.datatype, info.pDatatype);
    job.statusText = CopyText(info.pStatus);
    job.status = info.Status;
    job.priority = info.Priority;
    job.pagesPrinted = info.PagesPrinted;
    change.scope.MoveJob(job.id, info.Position);
}

void CheckInfo2(const JobChange& change, const JOB_INFO_2W& info)
{
    CheckPriority(info.Priority);
    Require(info.StartTime < minutesOfDay && info.UntilTime < minutesOfDay, ERROR_INVALID_TIME);
    CheckDatatype(change.job, info.pDatatype);
    const OptionalText& processor = change.job.printProcessor;
    Require(!info.pPrintProcessor || SameName(info.pPrintProcessor, L"winprint") || processor == info.pPrintProcessor,
            ERROR_UNKNOWN_PRINTPROCESSOR);
    CheckPosition(change, info.Position);
}

void ApplyInfo2(const JobChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_2W*>(data);
    CheckInfo2(change, info);

    JobRecord& job = change.Edit();
    Replace(job.document, info.pDocument);
    Replace(job.notifyName, info.pNotifyName);
    Replace(job.datatype, info.pDatatype);
    Replace(job.printProcessor, info.pPrintProcessor);
    Replace(job.parameters, info.pParameters);
    if (info.pDevMode) job.devMode = CopyDevMode(info.pDevMode);
    job.statusText = CopyText(info.pStatus);
    job.status = info.Status;
    job.priority = info.Priority;
    job.startTime = info.StartTime;
    job.untilTime = info.UntilTime;
    job.pagesPrinted = info.PagesPrinted;
    change.scope.MoveJob(job.id, info.Position);
}

void ApplyInfo3(const JobChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_3*>(data);
    Require(info.JobId == change.job.id && info.Reserved == 0, ERROR_INVALID_PARAMETER);
    if (info.NextJobId) {
        const JobRecord& next = World::JobOf(change.Printer(), info.NextJobId);
        Require(change.world.MayAdministerJob(change.Printer(), next), ERROR_ACCESS_DENIED);
        Require(next.datatype == change.job.datatype, ERROR_INVALID_DATATYPE);
    }
    change.Edit().nextJobId = info.NextJobId;
}

struct JobLevel {
    DWORD level;
    void (*apply)(const JobChange& change, const BYTE* data);
};

constexpr std::array jobLevels{
    JobLevel{1, ApplyInfo1},
    JobLevel{2, ApplyInfo2},
    JobLevel{3, ApplyInfo3},
};

using JobCommand = void (*)(ChangeScope& scope, JobRecord& job);

void Pause(ChangeScope&, JobRecord& job)
{
    job.status |= JOB_STATUS_PAUSED;
}

void Resume(ChangeScope&, JobRecord& job)
{
    job.status &= ~static_cast<DWORD>(JOB_STATUS_PAUSED);
}

void Restart(ChangeScope& scope, JobRecord& job)
{
    Require(MayRestart(job), ERROR_INVALID_PARAMETER);
    RestartJob(scope, job);
}

void SentToPrinter(ChangeScope&, JobRecord& job)
{
    job.status |= JOB_STATUS_COMPLETE;
    if (!job.IsActive()) job.stage = JobStage::Ejecting;
}

void Retain(ChangeScope&, JobRecord& job)
{
    job.retain = true;
}

/// The job goes, printed or not; in the end it is told as printed.
void Release(ChangeScope& scope, JobRecord& job)
{
    BeginLeaving(scope, job);
    scope.Mark();
    job.status |= JOB_STATUS_PRINTED;
}

struct CommandRow {
    DWORD command;
    JobCommand obey;
};

constexpr std::array jobCommands{
    CommandRow{JOB_CONTROL_PAUSE,             Pause        },
    CommandRow{JOB_CONTROL_RESUME,            Resume       },
    CommandRow{JOB_CONTROL_CANCEL,            BeginLeaving },
    CommandRow{JOB_CONTROL_RESTART,           Restart      },
    CommandRow{JOB_CONTROL_DELETE,            BeginLeaving },
    CommandRow{JOB_CONTROL_SENT_TO_PRINTER,   SentToPrinter},
    CommandRow{JOB_CONTROL_LAST_PAGE_EJECTED, EjectLastPage},
    CommandRow{jobControlRetain,              Retain       },
    CommandRow{jobControlRelease,             Release      },
};

} // namespace

void JobControl::Apply(ChangeScope& scope, const JobRecord& job, DWORD level, const BYTE* info) const
{
    const auto found = std::ranges::find(jobLevels, level, &JobLevel::level);
    Require(found != jobLevels.end(), ERROR_INVALID_LEVEL);
    Require(info, ERROR_INVALID_PARAMETER);
    found->apply({_world, scope, job}, info);
}

void JobControl::Change(HANDLE handle, DWORD jobId, DWORD level, const BYTE* info, DWORD command)
{
    const PrinterAccess access = _world.AccessOf(handle);
    Require(_world.MayAdministerJob(access.printer, World::JobOf(access.printer, jobId)), ERROR_ACCESS_DENIED);
    const auto row = std::ranges::find(jobCommands, command, &CommandRow::command);
    Require(command == 0 ? level != 0 : row != jobCommands.end(), ERROR_INVALID_PARAMETER);

    ChangeScope scope(_world, access.printer);
    if (level != 0) Apply(scope, World::JobOf(access.printer, jobId), level, info);
    if (command != 0) row->obey(scope, scope.EditJob(jobId));
    scope.Tell(PRINTER_CHANGE_SET_JOB);
}
