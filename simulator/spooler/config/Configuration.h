// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// How reading a configuration went.
struct ConfigOutcome {
    DWORD error = ERROR_SUCCESS; // ERROR_BAD_CONFIGURATION, or why the file could not be read
    std::wstring message;        // empty on success; else file, line and what is wrong
};

/// Adds to the world what the file describes; all of it, or nothing if the file can't be read or is malformed.
/// The format is told in docs/simulator.md.
ConfigOutcome LoadConfiguration(const std::wstring& path, World& world);

/// Writes a file from which `LoadConfiguration` makes the same world again: what docs/simulator.md says of it. The file
/// of that name is replaced as a whole, or not at all. Gives ERROR_SUCCESS or the error.
DWORD SaveConfiguration(const std::wstring& path, World& world);

/// Plays a recording to those who listen to the printer, now and from now on; nothing of it if the file can't be read
/// or is malformed.
ConfigOutcome PlayRecording(const std::wstring& path, const PrinterRecord& printer, World& world);
