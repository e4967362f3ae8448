// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Batch.h"
#include "spooler/world/World.h"

/// From when the batches of a recording come to those who watch the printer: from now if its pace is real time; nothing
/// if they all come at once.
std::optional<PlayClock::time_point> PlayingBegins(const PrinterRecord& printer) noexcept;

/// Lets the recorded batches come whose time has come. Gives when the next one will; nothing if there is none.
std::optional<PlayClock::time_point> PlayUntil(World& world, PlayClock::time_point now);

/// Makes true of the printer and its queue what a recorded batch tells: jobs that are unknown come into the queue,
/// fields become as they are told, deleted jobs and a deleted printer go. A null printer has gone already.
void BringAbout(World& world, const PrinterRecord* printer, const Batch& batch);
