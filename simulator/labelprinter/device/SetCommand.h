// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/CommandReader.h"
#include "labelprinter/device/DeviceState.h"

/// Obeys "SET property = value". False if it names no property of the device, or a value that it can't have.
bool ObeySet(const Command& command, DeviceState& state);

/// The reply to "?property": the property's name and value. Empty if it names none of the device's.
std::string AnswerProperty(const Command& command, const DeviceState& state);
