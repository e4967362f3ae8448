// SPDX-License-Identifier: MIT
#include "vrl/core/XJob.h"

#include "foundation/Assert.h"
#include "foundation/OLockGuard.h"
#include "foundation/Trace.h"
#include "foundation/threads/TickCount.h"
#include "vrl/frame/VRException.h"
#include "vrl/spooler/OwnText.h"
#include "vrl/spooler/PrinterInfo.h"
#include "vrl/spooler/Spooler.h"

#include <utility>

namespace {

/// What the device's answer on a job holds, looked for in this order.
struct VerdictText {
    const char* text;
    DeviceVerdict verdict;
};

constexpr VerdictText verdictTexts[] = {
    {"status=\"completed\"", DeviceVerdict::Completed},
    {"status=\"verified\"",  DeviceVerdict::Verified },
    {"status=\"failed\"",    DeviceVerdict::Failed   },
};

/// A handle for one conversation with the spooler.
OPrinterHandle OpenPrinterOrThrow(const OString& printerName)
{
    OPrinterHandle printer(OpenPrinterWithMostAccess(printerName.wstring()));
    if (!printer) throw CouldNotOpenPrinter_E();
    return printer;
}

JobStatus OwnStatus(const JobStatus& status)
{
    JobStatus own = status;
    own.statusText = OwnText(status.statusText);
    return own;
}

} // namespace

XJob::XJob()
    : _lastReleaseTicks(TickCount()),
      _jobReferences(std::make_shared<ReferenceList>("PrintJob Added to job reference queue\n",
                                                     "PrintJob removed from job reference queue\n"))
{
}

XJob::~XJob()
{
    TRACE("Deleting job with jobID = %d\n", static_cast<int>(GetJobID()));
    [[maybe_unused]] const bool nJobReferences = HasJobReferences();
    DEBUG_ASSERT(!nJobReferences);
}

void XJob::Initialize(const OString& printerName, DWORD jobID)
{
    OLockGuard guard(_lock);
    _initialized = false;
    _printerName = OwnText(printerName);
    _jobID = jobID;
    Refresh();
}

void XJob::Refresh()
{
    const OPrinterHandle printer = OpenPrinterOrThrow(_printerName);
    const SpoolerBuffer info = ReadJob(printer.Get(), _jobID);
    if (!info) return;

    const auto& job = *info.As<JOB_INFO_2W>();
    _name = OString(job.pDocument);
    _pagesPrinted = job.PagesPrinted;
    _totalPages = job.TotalPages;
    _machineName = OString(job.pMachineName);
    _userName = OString(job.pUserName);
    _dataType = OString(job.pDatatype);
    _printProcessor = OString(job.pPrintProcessor);
    _notifyName = OString(job.pNotifyName);
    _submittedTime = job.Submitted;
    _priority = job.Priority;
    _startTime = job.StartTime;
    _untilTime = job.UntilTime;
    _size = job.Size;

    OTypedArray<int> untold; // what happened before the job was seen
    UpdateStatus(job.Status, untold);
    _initialized = true;
}

// The lock is not held while the device is asked.
void XJob::UpdateStatus(DWORD winStatus, OTypedArray<int>& events)
{
    JobStatus previous;
    JobNotice notice;
    {
        OLockGuard guard(_lock);
        previous = OwnStatus(_status);
        notice = {winStatus, _pagesPrinted, _totalPages};
    }
    TRACE("winStatus: %08x printed: %d total: %d\n", static_cast<unsigned>(winStatus),
          static_cast<int>(notice.pagesPrinted), static_cast<int>(notice.totalPages));
    JobStatus now = OwnStatus(UpdateJobStatus(previous, notice, *this, events));

    OLockGuard guard(_lock);
    std::swap(_status, now);
}

DeviceVerdict XJob::QueryDeviceJobStatus()
{
    DriverInterface* const driver = _driver;
    if (!driver) return DeviceVerdict::None;
    const OString answer = driver->GetJobStatusText(GetJobID());
    for (const VerdictText& row : verdictTexts) {
        if (answer.Find(row.text) >= 0) return row.verdict;
    }
    return DeviceVerdict::None;
}

bool XJob::IsBidirectionalPrinter()
{
    return (PrinterInfo(GetPrinterName()).GetAttributes() & PRINTER_ATTRIBUTE_ENABLE_BIDI) != 0;
}

void XJob::AddJobReference(SinkOwner& job)
{
    [[maybe_unused]] const bool bFound = !_jobReferences->Add(job);
    DEBUG_ASSERT(!bFound);
}

DWORD XJob::GetJobID() const
{
    OLockGuard guard(_lock);
    return _jobID;
}

OString XJob::GetPrinterName() const
{
    OLockGuard guard(_lock);
    return OwnText(_printerName);
}

void XJob::SetNotifyName(const OString& notifyName)
{
    CheckLoaded();
    const OPrinterHandle printer = OpenPrinterOrThrow(GetPrinterName());
    const DWORD jobID = GetJobID();
    const SpoolerBuffer job = ReadJob(printer.Get(), jobID);
    if (!job) return;

    job.As<JOB_INFO_2W>()->pNotifyName = const_cast<wchar_t*>(notifyName.wstring());
    if (!::SetJobW(printer.Get(), jobID, 2, job.Data(), 0)) throw SystemError_E();
    Write(&XJob::_notifyName, OwnText(notifyName));
}

OString XJob::GetStatusText() const
{
    CheckLoaded();
    OLockGuard guard(_lock);
    return OwnText(_status.statusText);
}

void XJob::Pause()
{
    if (DriverInterface* const driver = _driver) driver->PauseJob(GetJobID());
}

void XJob::Resume()
{
    if (DriverInterface* const driver = _driver) driver->ResumeJob(GetJobID());
}

void XJob::Cancel()
{
    if (DriverInterface* const driver = _driver) driver->DeleteJob(GetJobID());
}

void XJob::Restart()
{
    if (DriverInterface* const driver = _driver) driver->RestartJob(GetJobID());
}

void XJob::SetJobPriority(DWORD priority)
{
    if (DriverInterface* const driver = _driver) driver->SetJobPriority(GetJobID(), priority);
}

void XJob::SetJobStartTime(DWORD minutes)
{
    if (DriverInterface* const driver = _driver) driver->SetJobStartTime(GetJobID(), minutes);
}

void XJob::SetJobUntilTime(DWORD minutes)
{
    if (DriverInterface* const driver = _driver) driver->SetJobUntilTime(GetJobID(), minutes);
}

void XJob::CheckLoaded() const
{
    if (!_initialized) throw InvalidJob_E();
}

OString XJob::ReadText(OString XJob::*field) const
{
    CheckLoaded();
    OLockGuard guard(_lock);
    return OwnText(this->*field);
}

bool XJob::ReadFlag(bool JobStatus::*flag) const
{
    CheckLoaded();
    OLockGuard guard(_lock);
    return _status.*flag;
}
