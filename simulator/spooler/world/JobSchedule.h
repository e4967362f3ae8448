// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// The job that the printer is to print next, now that the clock shows that many minutes after midnight GMT; null if
/// none may start. Every port of the printer takes one job at a time. Among jobs that may start the one comes first
/// that is linked to the last one, then the one of the highest priority, then the one that stands first.
const JobRecord* NextJob(const World& world, const PrinterRecord& printer);
