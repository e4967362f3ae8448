// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

#include <string>

/// Keeps the world in a configuration file that follows each change at once. The end of the process then has nothing
/// left to do, however it ends: neither a detaching DLL nor a killed process could still write a file.
///
/// Threading: none of its own; the spooler's lock is held around every use.
class KeptWorld {
public:
    /// An empty path: nowhere.
    void KeepIn(std::wstring path);

    const std::wstring& Path() const noexcept { return _path; }

    /// Writes the file if it isn't what the world is. After an error it is tried again at the next update; only the
    /// first of several errors is given.
    DWORD Update(World& world) noexcept;

private:
    std::wstring _path;
    std::string _text;    // of the file
    bool _failed = false; // when it was last written
};
