// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/driver/DriverInterface.h"

/// The driver interface that works for any printer: plain spooler calls, nothing cached.
///
/// Ownership: borrows the spooler handle. Threading: any thread; no lock and no changing state.
class BasicDriverInterface : public DriverInterface {
public:
    void Attach(const OString& printerName, HANDLE printer) override;

    /// The first queued job's status text, else the words of the printer's status.
    OString GetStatusText() override;
    OString GetJobStatusText(unsigned long jobId) override;
    bool TestStatusFlag(int condition) override;
    int GetStatusSeverity() override;

    /// The document is named `jobName`, or like the file if that is empty. False if the file cannot be read or the
    /// spooler refuses.
    bool SendFile(const OString& fileName, const OString& jobName) override;

    bool PauseJob(unsigned long jobId) override;
    bool ResumeJob(unsigned long jobId) override;
    bool DeleteJob(unsigned long jobId) override;
    bool RestartJob(unsigned long jobId) override;
    bool SetJobPriority(unsigned long jobId, unsigned long priority) override;
    bool SetJobStartTime(unsigned long jobId, unsigned long minutes) override;
    bool SetJobUntilTime(unsigned long jobId, unsigned long minutes) override;

    Odometer GetOdometer() override;
    void SetOdometer(const Odometer& odometer) override;

protected:
    HANDLE _hPrinter = nullptr; // borrowed
    OString _printerName;

private:
    OString FirstJobStatusText() const;

    /// `dwStatus` of level 6; 0, which reads as ready, if the printer can't be asked.
    unsigned long ReadPrinterStatusWord() const;
};
