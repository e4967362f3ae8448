// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/levels/PackedWriter.h"
#include "spooler/records/PortRecord.h"

/// Packs the ports as an array of PORT_INFO structures of that level. ERROR_INVALID_LEVEL.
PackedWriter PackPorts(const std::vector<PortRecord>& ports, DWORD level);
