// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/classes/PrinterBinding.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"

/// One count on a printer and, unless binding got no further, one on a job of it.
struct JobBinding {
    explicit JobBinding(XPrinterRef countedPrinter, XJobRef countedJob = {}, SinkOwner* jobObject = nullptr) noexcept
        : xPrinter(std::move(countedPrinter)), xJob(std::move(countedJob)), owner(jobObject)
    {
    }
    JobBinding(JobBinding&&) noexcept = default;
    JobBinding& operator=(JobBinding&&) = delete;
    ~JobBinding() { xJob.Release(owner); }

    explicit operator bool() const noexcept { return static_cast<bool>(xJob); }
    XJob& operator*() const noexcept { return *xJob; }
    XJob* operator->() const noexcept { return xJob.Get(); }

    XPrinterRef xPrinter;
    XJobRef xJob;     ///< after the printer, which outlives it
    SinkOwner* owner; ///< leaves the job's list of objects with sinks if this was the job's last count; may be null
};

inline const XPrinterRef& PrinterOf(const JobBinding& binding) noexcept
{
    return binding.xPrinter;
}

/// Binds to job `jobID` of the printer `printerName`. As long as the name is the same but for the case of the letters a
/// to z, the object is never unbound in between. Throws `CouldNotOpenPrinter_E`; then the object is bound to no job,
/// and to the printer only if that could be opened.
void BindToJob(Bound<JobBinding>& bound, const OString& printerName, DWORD jobID, SinkOwner* owner);

/// How the parts of a job are bound to the job that `job` names. The result is that of reading its printer's name or
/// its number, if that fails; the object then keeps its printer only. Throws `InvalidArgument_E` for null, and what
/// `BindToJob` throws.
HRESULT RebindToJob(Bound<JobBinding>& bound, IPrintJob* job);

/// Keeps the printer and lets go of the job.
void LetGoOfJob(Bound<JobBinding>& bound);
