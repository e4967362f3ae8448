// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>

/// A change notification for a printer and its jobs, as a C program would open it: of the same fields as the product's.
class RawNotification {
public:
    /// Throws std::runtime_error if the spooler refuses it.
    explicit RawNotification(const std::wstring& printerName);
    RawNotification(const RawNotification&) = delete;
    RawNotification& operator=(const RawNotification&) = delete;
    ~RawNotification();

    /// Signalled while something waits.
    HANDLE Handle() const noexcept { return _notification; }

    /// Fetches what waits and frees it. Throws std::runtime_error if that fails.
    void Fetch() const;

private:
    HANDLE _printer = nullptr;
    HANDLE _notification = INVALID_HANDLE_VALUE;
};
