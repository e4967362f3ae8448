// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Change.h"
#include "spooler/records/PrinterRecord.h"

/// What notifications can tell of a printer, at one moment.
struct PrinterImage {
    const PrinterFields& printer;
    DWORD jobCount;
};

/// What notifications can tell of a job, at one moment.
struct JobImage {
    const PrinterFields& printer;
    const JobFields& job;
    DWORD size;
    DWORD position;
};

/// Adds to `change` the fields that differ, and the bits that stand for such differences.
void AddDifferences(const PrinterImage& before, const PrinterImage& after, Change& change);
void AddDifferences(const JobImage& before, const JobImage& after, Change& change);

/// Adds to `change` that a job has come to another position.
void AddMove(DWORD jobId, DWORD position, Change& change);

/// Adds to `change` what is told of a job that enters the queue.
void AddArrival(const JobImage& job, Change& change);
/// Adds to `change` how a job that leaves the queue ended.
void AddDeparture(const JobImage& before, const JobImage& last, Change& change);

/// Every field that can be told, with its value.
RecordChange AllFields(const PrinterImage& image);
RecordChange AllFields(const JobImage& image);

/// Makes the value true of the printer or job, unless the field follows from something else or is never told.
void StoreField(PrinterFields& printer, WORD field, const NotifyValue& value);
void StoreField(JobFields& job, WORD field, const NotifyValue& value);
