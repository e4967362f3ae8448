// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/driver/DriverModule.h"
#include "vrl/spooler/Spooler.h"

#include <array>

/// The path of an interface module; a terminator follows a value that fills all of it.
using InterfacePath = std::array<wchar_t, dataTextLength + 1>;

/// Reads what the data of a printer names as its driver's interface module; false if it names none.
bool ReadInterfacePath(HANDLE printer, InterfacePath& path);

/// The printer driver's interface module, which reads and writes the driver's settings. Each operation looks up its
/// export again.
///
/// Errors: an operation answers false or null if the export is missing. What happens inside the driver isn't known, but
///         for a crash: that comes out as it is.
class InterfaceModule {
public:
    explicit InterfaceModule(const wchar_t* path) noexcept : _module(path) {}

    /// False if it could not be loaded.
    explicit operator bool() const noexcept { return static_cast<bool>(_module); }

    /// Opens the driver for a spooler handle and gives the driver's own, to be closed with `Close`; null on failure.
    void* Open(HANDLE printer) const;
    void Close(void* driver) const;

    void Save(void* driver) const;

    /// Masks name groups of settings; a file's path goes out as it is, in a place of its own.
    bool Import(void* driver, const wchar_t* fileName, DWORD mask) const;
    bool Export(void* driver, const wchar_t* fileName, DWORD mask) const;
    bool Reset(void* driver, DWORD mask) const;

private:
    DriverModule _module;
};
