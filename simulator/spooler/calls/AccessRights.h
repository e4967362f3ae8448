// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Platform.h"

#include <array>

/// The rights that handles of one kind can have.
struct ObjectRights {
    std::array<DWORD, 4> generic; // what GENERIC_READ, GENERIC_WRITE, GENERIC_EXECUTE and GENERIC_ALL stand for
    DWORD usual;                  // what a caller gets who asks for nothing
};

inline constexpr ObjectRights serverRights{
    {SERVER_READ, SERVER_WRITE, SERVER_EXECUTE, SERVER_ALL_ACCESS},
    SERVER_ACCESS_ENUMERATE
};
inline constexpr ObjectRights printerRights{
    {PRINTER_READ, PRINTER_WRITE, PRINTER_EXECUTE, PRINTER_ALL_ACCESS},
    PRINTER_ACCESS_USE
};
inline constexpr ObjectRights jobRights{
    {JOB_READ, JOB_WRITE, JOB_EXECUTE, JOB_ALL_ACCESS},
    JOB_ACCESS_READ
};

/// What a handle may do whose opener asks for `desired` and may have `granted`. ERROR_ACCESS_DENIED.
DWORD AccessOfHandle(DWORD desired, DWORD granted, const ObjectRights& rights);
