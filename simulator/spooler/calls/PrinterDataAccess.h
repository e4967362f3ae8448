// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// GetPrinterDataExW, SetPrinterDataExW and their plain forms: typed values of a printer, and those of the server.
class PrinterDataAccess {
public:
    explicit PrinterDataAccess(World& world) noexcept : _world(world) {}

    /// `type` and, with a size of 0, `data` may be null. ERROR_INVALID_PARAMETER without key or value name,
    /// ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA.
    void Get(HANDLE handle, const wchar_t* key, const wchar_t* name, DWORD* type, void* data, DWORD size,
             DWORD* needed);

    /// ERROR_INVALID_PARAMETER without key or value name, and for what the directory's keys don't take;
    /// ERROR_ACCESS_DENIED; ERROR_NOT_SUPPORTED for the server.
    void Set(HANDLE handle, const wchar_t* key, const wchar_t* name, DWORD type, const void* data, DWORD size);

private:
    World& _world;
};
