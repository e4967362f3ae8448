// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/DeviceLink.h"
#include "spooler/Text.h"

struct SpoolerPort;

/// A port of the simulated machine.
struct PortRecord {
    PortRecord() = default;
    explicit PortRecord(const SpoolerPort& port);

    std::wstring name;
    OptionalText monitorName = L"Local Port";
    OptionalText description = L"Local Port";
    DWORD type = PORT_TYPE_READ | PORT_TYPE_WRITE;
    std::wstring devicePath;               // as it was given; empty: no device
    const SpoolerDevice* device = nullptr; // behind the port; null: none
};
