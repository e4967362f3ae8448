// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/arrays/OPointerArray.h"
#include "foundation/Platform.h"

class SinkOwner;
class XJob;
class XPrinter;

/// The job records of one printer: one for each job number that anybody has asked for or the spooler has spoken of. A
/// record that nobody holds stays for a minute, so that the last state of a job can be read after its end.
///
/// Threading: any thread; one lock guards the table and the counts of all records, also while a job is loaded.
class XJobPool {
public:
    static constexpr DWORD retentionMs = 60000;

    XJobPool() = default;
    XJobPool(const XJobPool&) = delete;
    XJobPool& operator=(const XJobPool&) = delete;
    // Deliberate: the records that are still there stay in memory; only `Purge` destroys one.
    ~XJobPool() = default;

    /// The record of that number with one more holder, loaded if there is none; never null. A record that is there is
    /// given as it stands, also when the number now means another job. Throws `CouldNotOpenPrinter_E`; then nothing has
    /// changed.
    XJob* AcquireJob(const XPrinter& xPrinter, DWORD jobID);

    /// One holder less. If it was the last, `printJob`, which may be null, leaves the list of objects with sinks.
    void ReleaseJob(XJob* xJob, SinkOwner* printJob);

    /// Destroys the records that nobody has held for a minute.
    void Purge();

private:
    XJob* Find(DWORD jobID) REQUIRES(_lock);

    OCriticalSection _lock;
    OPointerArray<XJob> _jobs GUARDED_BY(_lock); // in order of creation
};
