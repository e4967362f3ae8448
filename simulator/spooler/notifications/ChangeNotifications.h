// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Change.h"

/// The change notifications that are open, and the blocks of information that were given out and not freed.
///
/// The simulator gives none yet: `Open` refuses after it has checked its arguments, so that a caller meets what it
/// meets on a print system without notifications, and a handle or block of anyone's is unknown here.
/// Failures: give up with the error that the spooler's functions report.
class ChangeNotifications {
public:
    /// ERROR_INVALID_PARAMETER if neither filter nor options ask for anything, else ERROR_NOT_SUPPORTED.
    [[noreturn]] void Open(DWORD filter, const void* options) const;
    /// ERROR_INVALID_HANDLE.
    [[noreturn]] void Next(HANDLE notification) const;
    /// ERROR_INVALID_HANDLE.
    [[noreturn]] void Close(HANDLE notification) const;
    /// ERROR_INVALID_PARAMETER.
    [[noreturn]] void Free(const void* block) const;

    /// Somebody listens to the printer.
    bool Hears(DWORD) const noexcept { return false; }
    void Tell(DWORD, const Change&) const noexcept {}
    void Lose(DWORD) const noexcept {}

    DWORD OpenCount() const noexcept { return 0; }
    DWORD UnfreedBlocks() const noexcept { return 0; }
    void Clear() noexcept {}
};
