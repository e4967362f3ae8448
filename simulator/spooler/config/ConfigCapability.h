// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigFile.h"
#include "spooler/records/PrinterRecord.h"

/// What DeviceCapabilitiesW is to answer for that capability: a number; for papers, their sizes and their names as many
/// elements as the entry lists, and the elements themselves as they are copied out. Throws ConfigError.
/// Any capability can also have a number, and after it "hex:" with the bytes that are copied out.
CapabilityAnswer ConfigCapability(const ConfigEntry& entry, WORD capability);

/// How `ConfigCapability` reads that answer.
std::wstring CapabilityForm(const CapabilityAnswer& answer, WORD capability);
