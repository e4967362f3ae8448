// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/DriverRecord.h"
#include "spooler/levels/PackedWriter.h"

/// Packs the driver as a DRIVER_INFO structure of that level. ERROR_INVALID_LEVEL for an unknown level, and for one
/// above the driver's highest.
PackedWriter PackDriver(const DriverRecord& driver, DWORD level);
