// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigFile.h"

#include <utility>

/// The device mode of a printer whose section tells nothing of it.
DEVMODEW PlainDevMode(std::wstring_view deviceName);

/// True if the entry is one of a device mode's keys; the field and its bit are set then. Throws ConfigError.
bool SetDevModeField(DEVMODEW& devMode, const ConfigEntry& entry);

/// The keys and values that make that device mode from the plain one; nothing if they don't suffice.
std::optional<std::vector<std::pair<std::wstring, std::wstring>>> DevModeEntries(const Bytes& devMode,
                                                                                 std::wstring_view deviceName);
