// SPDX-License-Identifier: MIT
#include "vrl/core/XJobPool.h"

#include "foundation/OLockGuard.h"
#include "foundation/Trace.h"
#include "foundation/threads/TickCount.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XPrinter.h"

#include <memory>

XJob* XJobPool::AcquireJob(const XPrinter& xPrinter, DWORD jobID)
{
    OLockGuard guard(_lock);
    if (XJob* const known = Find(jobID)) {
        ++known->_refCount;
        return known;
    }
    auto made = std::make_unique<XJob>();
    made->Initialize(xPrinter.GetPrinterName(), jobID);
    made->_refCount = 1;
    _jobs.Add(made.get());
    return made.release();
}

XJob* XJobPool::Find(DWORD jobID)
{
    for (int i = 0; i < _jobs.GetSize(); ++i) {
        if (_jobs.GetAt(i)->GetJobID() == jobID) return _jobs.GetAt(i);
    }
    return nullptr;
}

void XJobPool::ReleaseJob(XJob* xJob, SinkOwner* printJob)
{
    OLockGuard guard(_lock);
    xJob->_lastReleaseTicks = TickCount();
    --xJob->_refCount;
    if (xJob->_refCount <= 0 && printJob) xJob->RemoveJobReference(*printJob);
}

void XJobPool::Purge()
{
    OLockGuard guard(_lock);
    const DWORD now = TickCount();
    for (int i = _jobs.GetSize() - 1; i >= 0; --i) {
        XJob* const job = _jobs.GetAt(i);
        if (job->_refCount > 0 || now - job->_lastReleaseTicks < retentionMs) continue;
        TRACE("PrintJob with JobID = %d is getting purged at location %d\n", static_cast<int>(job->GetJobID()), i);
        const std::unique_ptr<XJob> gone(job);
        _jobs.RemoveAt(i, 1);
    }
}
