// SPDX-License-Identifier: MIT
#pragma once

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
};
