// SPDX-License-Identifier: MIT
#include "spooler/world/ChangeScope.h"

#include "spooler/records/DirectoryMirror.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <new>

ChangeScope::ChangeScope(World& world, const PrinterRecord& printer)
    : _world(world), _printer(world.Editable(printer)), _heard(world.Notifications().Hears(printer.id))
{
}

ChangeScope::~ChangeScope()
{
    if (!_touched) return;
    try {
        if (_printerBefore) UpdateDirectoryKey(*_printerBefore, _printer);
        _world.NoteChange(_printer);
        if (!_heard) return;
        AddAll();
        _world.Notifications().Tell(_printer.id, _change);
    } catch (const std::bad_alloc&) {
        _world.Notifications().Lose(_printer.id);
    }
}

PrinterRecord& ChangeScope::EditPrinter()
{
    _touched = true;
    if (!_printerBefore) _printerBefore = _printer;
    return _printer;
}

JobRecord& ChangeScope::EditJob(DWORD jobId)
{
    JobRecord* const job = _printer.queue.Find(jobId);
    Require(job, ERROR_INVALID_PARAMETER);
    _touched = true;
    if (!_heard || std::ranges::find(_jobs, jobId, &TouchedJob::jobId) != _jobs.end()) return *job;
    Keep(_jobs.emplace_back(TouchedJob{jobId, std::nullopt, 0, 0}));
    return *job;
}

JobRecord& ChangeScope::AppendJob(JobRecord job)
{
    _world.NumberJob(_printer, job);
    _touched = true;
    KeepOrder();
    if (_heard) _jobs.push_back({job.id, std::nullopt, 0, 0});
    return _printer.queue.Append(std::move(job));
}

void ChangeScope::RemoveJob(DWORD jobId)
{
    const JobRecord& job = EditJob(jobId);
    KeepOrder();
    const auto touched = std::ranges::find(_jobs, jobId, &TouchedJob::jobId);
    if (touched != _jobs.end()) {
        if (!touched->before) AddArrival(ImageOf(job), _change);
        const JobImage last = ImageOf(job);
        AddDeparture(touched->before ? ImageBefore(*touched) : last, last, _change);
        _jobs.erase(touched);
    }
    _printer.queue.Remove(jobId);
}

void ChangeScope::MoveJob(DWORD jobId, DWORD position)
{
    EditJob(jobId);
    KeepOrder();
    _printer.queue.MoveTo(jobId, position);
}

void ChangeScope::Tell(DWORD bits)
{
    _touched = true;
    _change.bits |= bits;
}

void ChangeScope::Mark()
{
    if (!_heard) return;
    AddAll();
    if (_printerBefore) UpdateDirectoryKey(*_printerBefore, _printer);
    _orderKept = false;
    for (TouchedJob& touched : _jobs) Keep(touched);
    if (_printerBefore) _printerBefore = _printer;
}

JobImage ChangeScope::ImageOf(const JobRecord& job) const
{
    return {_printer, job, job.Size(), _printer.queue.PositionOf(job.id)};
}

JobImage ChangeScope::ImageBefore(const TouchedJob& touched) const
{
    return {_printer, *touched.before, touched.sizeBefore, touched.positionBefore};
}

void ChangeScope::Keep(TouchedJob& touched) const
{
    const JobRecord& job = *_printer.queue.Find(touched.jobId);
    touched.before = job;
    touched.sizeBefore = job.Size();
    touched.positionBefore = _printer.queue.PositionOf(job.id);
}

void ChangeScope::KeepOrder()
{
    if (!_heard || _orderKept) return;
    _orderBefore.clear();
    for (const auto& job : _printer.queue.Jobs()) _orderBefore.push_back(job->id);
    _orderKept = true;
}

void ChangeScope::AddJobChange(const TouchedJob& touched)
{
    const JobImage now = ImageOf(*_printer.queue.Find(touched.jobId));
    if (touched.before)
        AddDifferences(ImageBefore(touched), now, _change);
    else
        AddArrival(now, _change);
}

/// Jobs that weren't touched themselves, but have another position than before.
void ChangeScope::AddMoves()
{
    if (!_orderKept) return;
    const auto& jobs = _printer.queue.Jobs();
    for (size_t index = 0; index < jobs.size(); ++index) {
        const JobRecord& job = *jobs[index];
        if (index < _orderBefore.size() && _orderBefore[index] == job.id) continue;
        if (std::ranges::find(_jobs, job.id, &TouchedJob::jobId) != _jobs.end()) continue;
        AddMove(job.id, static_cast<DWORD>(index) + 1, _change);
    }
}

void ChangeScope::AddAll()
{
    for (const TouchedJob& touched : _jobs) AddJobChange(touched);
    AddMoves();
    if (!_printerBefore && !_orderKept) return;
    const DWORD jobsNow = _printer.queue.Count();
    const DWORD jobsBefore = _orderKept ? static_cast<DWORD>(_orderBefore.size()) : jobsNow;
    const PrinterFields& before = _printerBefore ? *_printerBefore : _printer;
    AddDifferences(PrinterImage{before, jobsBefore}, PrinterImage{_printer, jobsNow}, _change);
}
