// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/DeviceConditions.h"
#include "labelprinter/device/DeviceJobs.h"
#include "labelprinter/device/DeviceQueries.h"
#include "labelprinter/device/PanelFile.h"
#include "labelprinter/device/PrintRun.h"

#include <optional>

/// One label printer: its state, the job that it prints, the jobs that it has printed, the queries that it was asked.
/// Threading: under the lock of `LabelPrinters`.
class LabelPrinter {
public:
    /// The state, after a look at the panel.
    DeviceState& State();
    DeviceStatus Status() { return StatusOf(State(), _run.has_value()); }

    /// ERROR_NOT_CONNECTED, ERROR_BUSY.
    DWORD BeginJob(DWORD jobId, std::wstring document);
    bool IsPrinting() const { return _run.has_value(); }

    // While it is printing
    SpoolerDeviceProgress WriteJob(std::string_view bytes);
    SpoolerDeviceProgress EndJob();
    void CancelJob();

    DeviceJobs& Jobs() { return _jobs; }

    /// The device's reply to a query: a line for each command.
    std::string Reply(std::string_view payload);

    DeviceQueries& Queries() { return _queries; }

    DWORD requests = 0; ///< of the port monitor

private:
    DeviceJob& CurrentJob();
    SpoolerDeviceProgress Finish(const SpoolerDeviceProgress& progress);
    std::string ReplyTo(const Command& command);
    std::string ReplyToJob(const std::string& number);

    DeviceState _state;
    PanelFile _panel;
    DeviceJobs _jobs;
    std::optional<PrintRun> _run;
    DeviceQueries _queries;
};
