// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// DeviceCapabilitiesW: what was set for the printer, and what follows from a device mode.
/// Gives up with ERROR_INVALID_PRINTER_NAME for an unknown device, with ERROR_NOT_SUPPORTED for an unknown capability.
int AnswerCapability(const World& world, const wchar_t* device, WORD capability, void* output, const DEVMODEW* devMode);
