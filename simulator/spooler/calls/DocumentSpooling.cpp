// SPDX-License-Identifier: MIT
#include "spooler/calls/DocumentSpooling.h"

#include "spooler/records/NameRules.h"
#include "spooler/world/ChangeScope.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t nameOnTheWay[] = L"Local Downlevel Document";

} // namespace

DocumentSpooling::Spooling DocumentSpooling::SpoolingOf(HANDLE handle)
{
    const PrinterAccess access = _world.AccessOf(handle);
    Require(access.handle.document.has_value(), ERROR_SPL_NO_STARTDOC);
    const JobRecord* const job = access.printer.queue.Find(access.handle.document->jobId);
    Require(job && job->stage != JobStage::Leaving, ERROR_PRINT_CANCELLED);
    return {access.printer, *access.handle.document};
}

JobRecord DocumentSpooling::MakeJob(const PrinterAccess& access, const DOC_INFO_1W& info) const
{
    const PrinterRecord& printer = access.printer;
    JobRecord job;
    job.machineName = L"\\\\" + _world.MachineName();
    job.userName = _world.UserName();
    job.notifyName = _world.UserName();
    job.document = TextOrEmpty(info.pDocName);
    job.outputFile = CopyText(info.pOutputFile);
    job.datatype = CopyText(info.pDatatype);
    if (!job.datatype) job.datatype = access.handle.datatype ? access.handle.datatype : printer.datatype;
    job.printProcessor = printer.printProcessor;
    job.parameters = printer.parameters;
    job.devMode = access.handle.devMode.empty() ? printer.devMode : access.handle.devMode;
    job.priority = std::max<DWORD>(printer.defaultPriority, MIN_PRIORITY);
    job.startTime = printer.startTime;
    job.untilTime = printer.untilTime;
    job.status = JOB_STATUS_SPOOLING;
    ::GetSystemTime(&job.submitted);
    return job;
}

DWORD DocumentSpooling::StartDoc(HANDLE handle, DWORD level, const BYTE* info)
{
    const PrinterAccess access = _world.AccessOf(handle);
    Require(level == 1, ERROR_INVALID_LEVEL);
    Require(info, ERROR_INVALID_PARAMETER);
    Require(!access.handle.document, ERROR_INVALID_HANDLE);

    JobRecord job = MakeJob(access, *reinterpret_cast<const DOC_INFO_1W*>(info));
    const std::wstring datatype = job.datatype.value_or(L"");
    Require(IsDatatype(datatype) || job.datatype == access.printer.datatype, ERROR_INVALID_DATATYPE);
    if (access.printer.attributes & PRINTER_ATTRIBUTE_RAW_ONLY)
        Require(SameName(datatype.substr(0, 3), L"RAW"), ERROR_INVALID_DATATYPE);

    if (access.printer.lateNames) job.lateName = std::exchange(job.document, nameOnTheWay);
    ChangeScope scope(_world, access.printer);
    const DWORD jobId = scope.AppendJob(std::move(job)).id;
    access.handle.document = OpenDocument{jobId, false};
    return jobId;
}

void DocumentSpooling::StartPage(HANDLE handle)
{
    const Spooling spooling = SpoolingOf(handle);
    spooling.document.inPage = true;
    ChangeScope scope(_world, spooling.printer);
    ++scope.EditJob(spooling.document.jobId).totalPages;
}

DWORD DocumentSpooling::Write(HANDLE handle, const void* bytes, DWORD size, DWORD limit)
{
    const Spooling spooling = SpoolingOf(handle);
    Require(bytes || size == 0, ERROR_INVALID_PARAMETER);
    const DWORD taken = std::min(size, limit);
    const auto* const first = static_cast<const BYTE*>(bytes);
    ChangeScope scope(_world, spooling.printer);
    JobRecord& job = scope.EditJob(spooling.document.jobId);
    if (taken > 0) job.spooled.insert(job.spooled.end(), first, first + taken);
    scope.Tell(PRINTER_CHANGE_WRITE_JOB);
    return taken;
}

void DocumentSpooling::EndPage(HANDLE handle)
{
    const Spooling spooling = SpoolingOf(handle);
    spooling.document.inPage = false;
    ChangeScope scope(_world, spooling.printer);
    JobRecord& job = scope.EditJob(spooling.document.jobId);
    if (job.pageEnds.size() < job.totalPages) job.pageEnds.push_back(static_cast<DWORD>(job.spooled.size()));
    scope.Tell(PRINTER_CHANGE_SET_JOB);
}

void DocumentSpooling::EndDoc(HANDLE handle)
{
    const PrinterAccess access = _world.AccessOf(handle);
    Require(access.handle.document.has_value(), ERROR_SPL_NO_STARTDOC);
    const DWORD jobId = access.handle.document->jobId;
    access.handle.document.reset();

    if (!access.printer.queue.Find(jobId)) return;
    ChangeScope scope(_world, access.printer);
    scope.Tell(PRINTER_CHANGE_SET_JOB);
    scope.EditJob(jobId).EndSpooling();
}
