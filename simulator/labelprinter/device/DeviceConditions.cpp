// SPDX-License-Identifier: MIT
#include "labelprinter/device/DeviceConditions.h"

#include <winspool.h>

#include <algorithm>
#include <array>

namespace {

constexpr int normal = 1;
constexpr int error = 2;
constexpr int warning = 3;

constexpr DWORD jobError = JOB_STATUS_ERROR | JOB_STATUS_USER_INTERVENTION;

bool IsLow(Supply supply)
{
    return supply > 0 && supply <= lowSupply;
}

/// One condition, and what follows from it.
struct Condition {
    bool (*holds)(const DeviceState& state);
    DWORD flag;
    const char* text;
    int severity;
    bool stalls;
    DWORD printerStatus;
    DWORD jobStatus;
};

using State = const DeviceState&;

// clang-format off
constexpr std::array conditions{
    Condition{[](State state) { return state.labelPresent; },
              0x001, "Label Present", normal, true, 0, 0},
    Condition{[](State state) { return state.paused; },
              0x002, "Paused", normal, true, 0, 0},
    Condition{[](State state) { return state.batteryPercent <= lowBatteryPercent; },
              0x004, "Battery Low", warning, false, 0, 0},
    Condition{[](State state) { return state.charging; },
              0x008, "Battery Charging", normal, false, 0, 0},
    Condition{[](State state) { return IsLow(state.ribbon); },
              0x010, "Ribbon Low", warning, false, PRINTER_STATUS_TONER_LOW, 0},
    Condition{[](State state) { return state.ribbon == 0; },
              0x020, "Ribbon Out", error, true, PRINTER_STATUS_NO_TONER, jobError},
    Condition{[](State state) { return state.ribbonFault; },
              0x040, "Ribbon Error", error, true, PRINTER_STATUS_USER_INTERVENTION, jobError},
    Condition{[](State state) { return IsLow(state.media); },
              0x080, "Paper Low", warning, false, 0, 0},
    Condition{[](State state) { return state.head == Head::Open; },
              0x100, "Head Open", error, true, PRINTER_STATUS_USER_INTERVENTION, jobError},
    Condition{[](State state) { return state.head == Head::Error; },
              0x200, "Head Error", error, true, PRINTER_STATUS_ERROR, jobError},
    Condition{[](State state) { return state.cutterFault; },
              0x400, "Cutter Error", error, true, PRINTER_STATUS_ERROR, jobError},
    Condition{[](State state) { return state.media == 0; },
              0, "Paper Out", error, true, PRINTER_STATUS_PAPER_OUT, JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT},
    Condition{[](State state) { return state.jam; },
              0, "Paper Jam", error, true, PRINTER_STATUS_PAPER_JAM, jobError},
    Condition{[](State state) { return state.doorOpen; },
              0, "Door Open", error, true, PRINTER_STATUS_DOOR_OPEN, jobError},
    Condition{[](State state) { return !state.connected; },
              0, "Offline", error, true, PRINTER_STATUS_OFFLINE, JOB_STATUS_OFFLINE},
};
// clang-format on

/// An error outranks a warning, and that the normal state.
int WorseOf(int left, int right)
{
    if (left == error || right == error) return error;
    return std::max(left, right);
}

void Add(DeviceStatus& status, const Condition& condition)
{
    status.flags |= condition.flag;
    if (!status.text.empty()) status.text += ", ";
    status.text += condition.text;
    status.severity = WorseOf(status.severity, condition.severity);
    status.printerStatus |= condition.printerStatus;
    status.jobStatus |= condition.jobStatus;
    if (condition.stalls && !status.stall) status.stall = condition.text;
    status.fault |= condition.stalls && condition.severity == error;
}

} // namespace

DeviceStatus StatusOf(const DeviceState& state, bool printing)
{
    DeviceStatus status;
    for (const Condition& condition : conditions) {
        if (condition.holds(state)) Add(status, condition);
    }
    if (status.text.empty()) status.text = printing ? "Printing" : "Ready";
    if (printing && !status.stall) status.printerStatus |= PRINTER_STATUS_PRINTING;
    return status;
}
