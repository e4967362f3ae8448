// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Batch.h"
#include "spooler/world/World.h"

/// Makes true of the printer and its queue what a recorded batch tells: jobs that are unknown come into the queue,
/// fields become as they are told, deleted jobs and a deleted printer go. A null printer has gone already.
void BringAbout(World& world, const PrinterRecord* printer, const Batch& batch);
