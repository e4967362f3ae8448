// SPDX-License-Identifier: MIT
#include "spooler/calls/JobControl.h"

#include "spooler/world/Delivery.h"
#include "spooler/records/NameRules.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

constexpr DWORD minutesOfDay = 24 * 60;
constexpr DWORD printedStates = JOB_STATUS_PRINTING | JOB_STATUS_PRINTED | JOB_STATUS_COMPLETE | JOB_STATUS_ERROR |
                                JOB_STATUS_PAPEROUT | JOB_STATUS_OFFLINE | JOB_STATUS_USER_INTERVENTION |
                                jobStatusRetained;

/// A job together with what its changes depend on.
struct Change {
    const World& world;
    PrinterRecord& printer;
    JobRecord& job;
};

/// A field that is null stays as it is.
void Replace(OptionalText& field, const wchar_t* text)
{
    if (text) field = text;
}

void CheckPosition(const Change& change, DWORD position)
{
    if (position == JOB_POSITION_UNSPECIFIED || position == change.printer.queue.PositionOf(change.job.id)) return;
    Require(change.printer.grantedAccess & administeringAccess, ERROR_ACCESS_DENIED);
}

void CheckPriority(DWORD priority)
{
    Require(priority >= MIN_PRIORITY && priority <= MAX_PRIORITY, ERROR_INVALID_PRIORITY);
}

void CheckDatatype(const JobRecord& job, const wchar_t* datatype)
{
    Require(!datatype || IsDatatype(datatype) || job.datatype == datatype, ERROR_INVALID_DATATYPE);
}

void ApplyInfo1(const Change& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_1W*>(data);
    JobRecord& job = change.job;
    CheckPriority(info.Priority);
    CheckDatatype(job, info.pDatatype);
    CheckPosition(change, info.Position);

    Replace(job.document, info.pDocument);
    Replace(job.datatype, info.pDatatype);
    job.statusText = CopyText(info.pStatus);
    job.status = info.Status;
    job.priority = info.Priority;
    job.pagesPrinted = info.PagesPrinted;
    change.printer.queue.MoveTo(job.id, info.Position); // last: it moves the record
}

void CheckInfo2(const Change& change, const JOB_INFO_2W& info)
{
    CheckPriority(info.Priority);
    Require(info.StartTime < minutesOfDay && info.UntilTime < minutesOfDay, ERROR_INVALID_TIME);
    CheckDatatype(change.job, info.pDatatype);
    const OptionalText& processor = change.job.printProcessor;
    Require(!info.pPrintProcessor || SameName(info.pPrintProcessor, L"winprint") || processor == info.pPrintProcessor,
            ERROR_UNKNOWN_PRINTPROCESSOR);
    CheckPosition(change, info.Position);
}

void ApplyInfo2(const Change& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_2W*>(data);
    CheckInfo2(change, info);

    JobRecord& job = change.job;
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
    change.printer.queue.MoveTo(job.id, info.Position); // last: it moves the record
}

void ApplyInfo3(const Change& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const JOB_INFO_3*>(data);
    Require(info.JobId == change.job.id && info.Reserved == 0, ERROR_INVALID_PARAMETER);
    if (info.NextJobId) {
        const JobRecord& next = World::JobOf(change.printer, info.NextJobId);
        Require(change.world.MayAdministerJob(change.printer, next), ERROR_ACCESS_DENIED);
        Require(next.datatype == change.job.datatype, ERROR_INVALID_DATATYPE);
    }
    change.job.nextJobId = info.NextJobId;
}

struct JobLevel {
    DWORD level;
    void (*apply)(const Change& change, const BYTE* data);
};

constexpr std::array jobLevels{
    JobLevel{1, ApplyInfo1},
    JobLevel{2, ApplyInfo2},
    JobLevel{3, ApplyInfo3},
};

using JobCommand = void (*)(World& world, PrinterRecord& printer, JobRecord& job);

void Pause(World&, PrinterRecord&, JobRecord& job)
{
    job.status |= JOB_STATUS_PAUSED;
}

void Resume(World& world, PrinterRecord& printer, JobRecord& job)
{
    job.status &= ~static_cast<DWORD>(JOB_STATUS_PAUSED);
    Delivery(world).DeliverReady(printer);
}

void Delete(World&, PrinterRecord& printer, JobRecord& job)
{
    printer.queue.Remove(job.id);
}

void Restart(World& world, PrinterRecord& printer, JobRecord& job)
{
    Require(job.status & printedStates, ERROR_INVALID_PARAMETER);
    job.status = (job.status & ~printedStates) | JOB_STATUS_RESTART;
    job.pagesPrinted = 0;
    Delivery(world).DeliverReady(printer);
}

void SentToPrinter(World&, PrinterRecord&, JobRecord& job)
{
    job.status = (job.status & ~static_cast<DWORD>(JOB_STATUS_PRINTING)) | JOB_STATUS_COMPLETE;
}

void LastPageEjected(World& world, PrinterRecord& printer, JobRecord& job)
{
    Delivery(world).Finish(printer, job);
}

void Retain(World&, PrinterRecord&, JobRecord& job)
{
    job.retain = true;
}

void Release(World&, PrinterRecord& printer, JobRecord& job)
{
    job.retain = false;
    if (job.status & jobStatusRetained) printer.queue.Remove(job.id);
}

struct CommandRow {
    DWORD command;
    JobCommand obey;
};

constexpr std::array jobCommands{
    CommandRow{JOB_CONTROL_PAUSE,             Pause          },
    CommandRow{JOB_CONTROL_RESUME,            Resume         },
    CommandRow{JOB_CONTROL_CANCEL,            Delete         },
    CommandRow{JOB_CONTROL_RESTART,           Restart        },
    CommandRow{JOB_CONTROL_DELETE,            Delete         },
    CommandRow{JOB_CONTROL_SENT_TO_PRINTER,   SentToPrinter  },
    CommandRow{JOB_CONTROL_LAST_PAGE_EJECTED, LastPageEjected},
    CommandRow{jobControlRetain,              Retain         },
    CommandRow{jobControlRelease,             Release        },
};

} // namespace

void JobControl::Apply(const PrinterAccess& access, JobRecord& job, DWORD level, const BYTE* info) const
{
    const auto found = std::ranges::find(jobLevels, level, &JobLevel::level);
    Require(found != jobLevels.end(), ERROR_INVALID_LEVEL);
    Require(info, ERROR_INVALID_PARAMETER);
    found->apply({_world, access.printer, job}, info);
}

void JobControl::Change(HANDLE handle, DWORD jobId, DWORD level, const BYTE* info, DWORD command)
{
    const PrinterAccess access = _world.AccessOf(handle);
    JobRecord& job = World::JobOf(access.printer, jobId);
    Require(_world.MayAdministerJob(access.printer, job), ERROR_ACCESS_DENIED);
    const auto row = std::ranges::find(jobCommands, command, &CommandRow::command);
    Require(command == 0 ? level != 0 : row != jobCommands.end(), ERROR_INVALID_PARAMETER);

    if (level != 0) Apply(access, job, level, info);
    if (command != 0) row->obey(_world, access.printer, World::JobOf(access.printer, jobId));
    _world.Changed(access.printer);
}
