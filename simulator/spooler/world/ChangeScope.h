// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/NotifyFields.h"
#include "spooler/world/World.h"

/// One change of a printer and its jobs: from the first record that is touched to the end of the call that changes it.
///
/// Only a scope gives out records to be changed. It keeps what they were, compares field by field at its end, gives the
/// printer a new "ChangeID", brings its values for the directory up to date, and tells the printer's notifications all
/// differences as one batch with one signal. A scope that touched nothing leaves no trace. A printer has one scope at a
/// time.
class ChangeScope {
public:
    ChangeScope(World& world, const PrinterRecord& printer);
    ~ChangeScope();
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;

    const PrinterRecord& Printer() const noexcept { return _printer; }

    PrinterRecord& EditPrinter();
    /// ERROR_INVALID_PARAMETER for an unknown job.
    JobRecord& EditJob(DWORD jobId);

    /// Puts a job in the queue, under the next number if it has none. ERROR_INVALID_PARAMETER for a number in use.
    JobRecord& AppendJob(JobRecord job);
    /// ERROR_INVALID_PARAMETER for an unknown job.
    void RemoveJob(DWORD jobId);
    /// As JobQueue::MoveTo.
    void MoveJob(DWORD jobId, DWORD position);

    /// Bits that the change word is to have, whatever the fields show.
    void Tell(DWORD bits);

    /// What is set from now on comes after what was set so far: a status that is set before and after is told twice.
    void Mark();

private:
    /// A job that was touched, as it was; nothing of one that arrived within this scope.
    struct TouchedJob {
        DWORD jobId;
        std::optional<JobFields> before;
        DWORD sizeBefore;
        DWORD positionBefore;
    };

    JobImage ImageOf(const JobRecord& job) const;
    JobImage ImageBefore(const TouchedJob& touched) const;
    void Keep(TouchedJob& touched) const;
    void KeepOrder();
    void AddJobChange(const TouchedJob& touched);
    void AddMoves();
    void AddAll();

    World& _world;
    PrinterRecord& _printer;
    const bool _heard; // somebody listens; otherwise nothing of jobs is kept
    bool _touched = false;
    Change _change;
    std::optional<PrinterFields> _printerBefore;
    std::vector<TouchedJob> _jobs;   // in the order in which they were touched
    std::vector<DWORD> _orderBefore; // numbers of the queue's jobs
    bool _orderKept = false;
};
