// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/CommandReader.h"
#include "labelprinter/device/DeviceJobs.h"
#include "labelprinter/device/DeviceState.h"
#include "spooler/DeviceLink.h"

/// One job on its way through the device: its bytes become commands, and those become labels.
///
/// A label is printed as soon as the bytes that ask for it are there; none is read ahead of a label that can't be
/// printed.
class PrintRun {
public:
    explicit PrintRun(DWORD jobId) : _jobId(jobId) {}

    DWORD JobId() const { return _jobId; }

    /// Takes bytes up to the next label, and prints that if it can be printed.
    SpoolerDeviceProgress Write(DeviceState& state, DeviceJob& job, std::string_view bytes);

    /// All bytes are there: prints the next label of those that are left. The verdict is there when none is left.
    SpoolerDeviceProgress End(DeviceState& state, DeviceJob& job);

private:
    enum class Step { GoOn, Printed, Stalled, ThrownAway };

    void Obey(const Command& command, DeviceState& state, DeviceJob& job);
    bool ObeyPrint(const Command& command, DeviceJob& job);
    bool ObeyLabel(const Command& command);
    void AskForLabels(DWORD count, DeviceJob& job);
    Step PrintNext(DeviceState& state, DeviceJob& job);
    SpoolerDeviceProgress Progress(const DeviceState& state, DeviceJob& job, Step step, size_t taken) const;

    DWORD _jobId;
    CommandReader _reader;
    DWORD _labelLength = 0;   ///< 0: the device's own
    bool _labelBegun = false; ///< something stands on the label that nobody has asked to print yet
    DWORD _labelsLeft = 0;    ///< asked for and not printed
};
