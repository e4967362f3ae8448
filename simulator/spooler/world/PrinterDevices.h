// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/PrinterRecord.h"

/// The devices that printers stand before. They never block and never call back, so they are called under the world's
/// lock.

/// Sees to it that the printer stands before the devices of its ports, and before no other; one that is new to it gets
/// the printer's settings. Jobs that a device has which goes away are lost to it.
void AttachDevices(PrinterRecord& printer, const std::vector<PortRecord>& ports);

/// The printer is to go: it stands before no device any longer.
void DetachDevices(PrinterRecord& printer);

/// The device behind the port that the job is printed through; null if it has none.
const SpoolerDevice* DeviceFor(const PrinterRecord& printer, const JobRecord& job);

/// PRINTER_STATUS_* bits of all the printer's devices.
DWORD DeviceStatusOf(const PrinterRecord& printer);
