// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>

/// What is left of a supply, in labels.
using Supply = DWORD;
constexpr Supply endlessSupply = 0xFFFFFFFF;
/// From here down a supply is low.
constexpr Supply lowSupply = 10;

constexpr DWORD onMains = 0xFFFFFFFF;
/// From here down a battery is low.
constexpr DWORD lowBatteryPercent = 20;

enum class Head { Closed, Open, Error };

/// What the device does with the rest of a job when something has gone wrong.
enum class OnError { Wait, Cancel };

/// How the port monitor takes a request.
struct MonitorMood {
    enum class Kind { Works, Slow, Fails } kind = Kind::Works;
    DWORD delayMs = 0; ///< of a slow one
};

/// What becomes of a query that is started.
struct QueryMood {
    enum class Kind { Answered, Slow, Pending, Failed, Lost } kind = Kind::Answered;
    DWORD delayMs = 0; ///< of a slow one
};

/// Everything about a label printer that can be set from outside. Lengths are in millimetres.
struct DeviceState {
    Supply media = endlessSupply;
    bool jam = false;
    Supply ribbon = endlessSupply;
    bool ribbonFault = false;
    Head head = Head::Closed;
    bool cutterFault = false;
    bool doorOpen = false;
    bool paused = false;

    bool peeler = false;       ///< waits after each label until it is taken
    bool labelPresent = false; ///< a label that was printed has not been taken

    DWORD batteryPercent = onMains;
    bool charging = false;

    DWORD labelLength = 50;
    DWORD speed = 100; ///< per second
    bool verifier = false;
    OnError onError = OnError::Wait;

    DWORD pages = 0;    ///< of the odometer
    DWORD distance = 0; ///< of the odometer

    // Between the device and the machine
    bool connected = true;
    bool bidirectional = true;
    bool monitored = true;
    MonitorMood monitor;
    QueryMood queries;
    std::wstring panel; ///< path of the panel file, or empty
};
