// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/arrays/OTypedArray.h"
#include "foundation/Platform.h"
#include "vrl/driver/Odometer.h"

/// Severity of a printer's state; any other number is neither an error nor a warning.
enum StatusSeverity : int {
    StatusSeverityNormal = 1,
    StatusSeverityError = 2,
    StatusSeverityWarning = 3,
};

/// Everything that the system asks of a printer's driver or of the device behind it, with answers that do no harm.
///
/// No operation throws of its own accord: a failure is false, 0 or an empty text, and the caller decides what it means.
/// Ownership: one object for each open printer, owned by its `XPrinter`. Threading: any thread.
class DriverInterface {
public:
    virtual ~DriverInterface() = default;

    /// Tells the printer's name and its spooler handle, which stays the caller's. Once, before any other operation.
    virtual void Attach(const OString& printerName, HANDLE printer) = 0;

    virtual OString GetStatusText() { return OString(); }
    virtual OString GetJobStatusText(unsigned long /*jobId*/) { return OString(); }

    /// Whether the condition of that number holds: 100 to 121 and 201 to 211.
    virtual bool TestStatusFlag(int /*condition*/) { return false; }
    virtual int GetStatusSeverity() { return StatusSeverityNormal; }

    /// The extended status word of label printers.
    virtual unsigned long GetStatusFlags2() { return 0; }

    virtual bool ImportSettings(const OString& /*fileName*/, unsigned long /*mask*/) { return false; }
    virtual bool ExportSettings(const OString& /*fileName*/, unsigned long /*mask*/) { return false; }
    virtual bool ResetSettings(unsigned long /*mask*/) { return false; }

    /// Sends a file's bytes as they are, as one document.
    virtual bool SendFile(const OString& /*fileName*/, const OString& /*jobName*/) { return false; }

    virtual bool PauseJob(unsigned long /*jobId*/) { return false; }
    virtual bool ResumeJob(unsigned long /*jobId*/) { return false; }
    virtual bool DeleteJob(unsigned long /*jobId*/) { return false; }
    virtual bool RestartJob(unsigned long /*jobId*/) { return false; }
    virtual bool SetJobPriority(unsigned long /*jobId*/, unsigned long /*priority*/) { return false; }
    virtual bool SetJobStartTime(unsigned long /*jobId*/, unsigned long /*minutes*/) { return false; }
    virtual bool SetJobUntilTime(unsigned long /*jobId*/, unsigned long /*minutes*/) { return false; }

    /// Hands a query to the device; a time-out of 0 or below leaves the choice to the port monitor.
    virtual bool StartDeviceQuery(const OTypedArray<unsigned char>& /*payload*/, const OString& /*key*/,
                                  long /*sendTimeout*/, long /*receiveStartTimeout*/, long /*receiveIntervalTimeout*/)
    {
        return false;
    }
    virtual int GetDeviceQueryStatus(const OString& /*key*/) { return 0; }
    virtual bool GetDeviceQueryResponse(const OString& /*key*/, OTypedArray<unsigned char>& /*response*/)
    {
        return false;
    }

    virtual bool IsBidirectional() { return false; }

    /// The stored odometer, 0 pages and 0 millimetres if there is none.
    virtual Odometer GetOdometer() = 0;
    virtual void SetOdometer(const Odometer& odometer) = 0;
};
