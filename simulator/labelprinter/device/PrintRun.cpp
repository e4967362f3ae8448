// SPDX-License-Identifier: MIT
#include "labelprinter/device/PrintRun.h"

#include "labelprinter/device/DeviceConditions.h"
#include "labelprinter/device/SetCommand.h"

#include <algorithm>

namespace {

constexpr unsigned long mostCopies = 9999;
constexpr unsigned long longestLabel = 2000;
constexpr DWORD msPerSecond = 1000;

} // namespace

SpoolerDeviceProgress PrintRun::Write(DeviceState& state, DeviceJob& job, std::string_view bytes)
{
    size_t taken = 0;
    Step step = state.connected ? Step::GoOn : Step::Stalled;
    while (step == Step::GoOn) {
        step = PrintNext(state, job);
        if (step != Step::GoOn || taken == bytes.size()) break;
        if (const auto command = _reader.Take(bytes[taken++])) Obey(*command, state, job);
    }
    return Progress(state, job, step, taken);
}

SpoolerDeviceProgress PrintRun::End(DeviceState& state, DeviceJob& job)
{
    if (const auto command = _reader.End()) Obey(*command, state, job);
    if (_labelBegun) AskForLabels(1, job);
    const Step step = state.connected ? PrintNext(state, job) : Step::Stalled;
    if (step == Step::GoOn) {
        job.verdict = state.verifier ? LabelPrinterVerdict::Verified : LabelPrinterVerdict::Completed;
    }
    return Progress(state, job, step, 0);
}

void PrintRun::Obey(const Command& command, DeviceState& state, DeviceJob& job)
{
    if (command.word.starts_with('?')) return; // there is nobody to answer
    if (command.word == "SET" && ObeySet(command, state)) return;
    if (command.word == "LABEL" && ObeyLabel(command)) return;
    if (command.word == "PRINT" && ObeyPrint(command, job)) return;
    _labelBegun = true; // whatever else it is stands on the label
}

bool PrintRun::ObeyLabel(const Command& command)
{
    unsigned long width = 0;
    unsigned long length = 0;
    if (!ParsePair(command.arguments, 'x', width, length) || length == 0 || length > longestLabel) return false;
    _labelLength = length;
    _labelBegun = false;
    return true;
}

bool PrintRun::ObeyPrint(const Command& command, DeviceJob& job)
{
    unsigned long copies = 1;
    if (!command.arguments.empty() && !ParseCount(command.arguments, copies)) return false;
    if (copies > mostCopies) return false;
    AskForLabels(copies, job);
    return true;
}

void PrintRun::AskForLabels(DWORD count, DeviceJob& job)
{
    _labelsLeft += count;
    job.labelsAsked += count;
    _labelBegun = false;
}

/// `GoOn` if there is no label to print.
PrintRun::Step PrintRun::PrintNext(DeviceState& state, DeviceJob& job)
{
    if (_labelsLeft == 0) return Step::GoOn;
    const DeviceStatus status = StatusOf(state, true);
    if (status.fault && state.onError == OnError::Cancel) {
        job.verdict = LabelPrinterVerdict::Failed;
        return Step::ThrownAway;
    }
    if (status.stall) return Step::Stalled;

    --_labelsLeft;
    ++job.labelsPrinted;
    if (state.media != endlessSupply) --state.media;
    if (state.ribbon != endlessSupply) --state.ribbon;
    ++state.pages;
    state.distance += _labelLength ? _labelLength : state.labelLength;
    state.labelPresent = state.peeler;
    return Step::Printed;
}

SpoolerDeviceProgress PrintRun::Progress(const DeviceState& state, DeviceJob& job, Step step, size_t taken) const
{
    const DeviceStatus status = StatusOf(state, true);
    SpoolerDeviceProgress progress{};
    progress.taken = static_cast<DWORD>(taken);
    progress.pagesPrinted = job.labelsPrinted;
    progress.pagesKnown = job.labelsAsked;
    progress.verdict = static_cast<SpoolerDeviceVerdict>(job.verdict);
    if (step == Step::Printed) {
        progress.busyMs = (_labelLength ? _labelLength : state.labelLength) * msPerSecond / state.speed;
    }
    if (step == Step::Stalled) progress.busyMs = spoolerDeviceStalled;
    if (step == Step::Stalled || step == Step::ThrownAway) {
        progress.jobStatus = status.jobStatus;
        const std::string_view why = status.stall ? status.stall : "";
        std::ranges::copy(why, progress.statusText);
    }
    return progress;
}
