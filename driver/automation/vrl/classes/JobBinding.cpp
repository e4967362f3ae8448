// SPDX-License-Identifier: MIT
#include "vrl/classes/JobBinding.h"

#include "vrl/frame/Bstr.h"
#include "vrl/frame/VRException.h"

namespace {

/// A count on the printer of that name. A bound object of another printer lets go of it before this one is opened.
XPrinterRef TakePrinter(Bound<JobBinding>& bound, const OString& printerName)
{
    {
        const auto old = bound.Get();
        // Held by `old`, it is only counted once more.
        if (old && old->xPrinter->GetPrinterName().CompareNoCase(printerName) == 0) {
            return XPrinterRef::Acquire(printerName);
        }
    }
    bound.Clear();
    return XPrinterRef::Acquire(printerName);
}

} // namespace

void BindToJob(Bound<JobBinding>& bound, const OString& printerName, DWORD jobID, SinkOwner* owner)
{
    XPrinterRef printer = TakePrinter(bound, printerName);
    XJobRef job;
    try {
        job = XJobRef::Acquire(*printer, jobID);
    } catch (...) {
        bound.Set(JobBinding(std::move(printer)));
        throw;
    }
    bound.Set(JobBinding(std::move(printer), std::move(job), owner));
}

HRESULT RebindToJob(Bound<JobBinding>& bound, IPrintJob* job)
{
    if (!job) throw InvalidArgument_E();
    OBstr printerName;
    long jobID = 0;
    HRESULT result = job->get_PrinterName(printerName.Receive());
    if (SUCCEEDED(result)) result = job->get_JobId(&jobID);
    if (FAILED(result)) {
        LetGoOfJob(bound);
        return result;
    }
    BindToJob(bound, FromBstr(printerName.Get()), static_cast<DWORD>(jobID), nullptr);
    return S_OK;
}

void LetGoOfJob(Bound<JobBinding>& bound)
{
    const auto old = bound.Get();
    if (old && old->xJob) bound.Set(JobBinding(XPrinterRef::Acquire(old->xPrinter->GetPrinterName())));
}
