// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/PackedWriter.h"
#include "spooler/PortRecord.h"

/// Packs the ports as an array of PORT_INFO structures of that level. ERROR_INVALID_LEVEL.
PackedWriter PackPorts(const std::vector<PortRecord>& ports, DWORD level);
