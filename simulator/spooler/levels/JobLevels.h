// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/levels/PackedWriter.h"
#include "spooler/levels/PrinterLevels.h"

/// Packs jobs of the printer as an array of JOB_INFO structures of that level. ERROR_INVALID_LEVEL.
PackedWriter PackJobs(const PrinterView& printer, const std::vector<const JobRecord*>& jobs, DWORD level);
