// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/ChangeScope.h"

/// What printing through a port with a device does, beside the steps of every job.

/// The device is offered up to `limit` of the job's bytes, or asked how far it is when it has all of them; what it says
/// becomes the job's. False if nothing has changed: nobody is told anything then, and the device counts as stalled.
bool AskDevice(World& world, const PrinterRecord& printer, const JobRecord& job, DWORD limit);

/// The printer's status gets the bits that its devices have now. False if those are the same as before.
bool MirrorDevices(World& world, const PrinterRecord& printer);
