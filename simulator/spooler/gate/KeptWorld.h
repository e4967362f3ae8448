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

    /// Writes the file if it isn't what the world is. After an error, which it gives, nothing is kept any more.
    DWORD Update(World& world) noexcept;

private:
    std::wstring _path;
    std::string _text; // of the file
    bool _keeping = false;
};
