// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// FindFirstPrinterChangeNotification and the calls that go on with it.
class ChangeWatching {
public:
    explicit ChangeWatching(World& world) noexcept : _world(world) {}

    /// A notification for the printer or the server behind the handle; `options` may be null. ERROR_INVALID_HANDLE,
    /// ERROR_PRINTER_DELETED, and ERROR_INVALID_PARAMETER as NotifyRequest.
    HANDLE Open(HANDLE handle, DWORD filter, DWORD category, const PRINTER_NOTIFY_OPTIONS* options);

    /// What happened since the last call: the change word in `change`, the fields in `info`, which is then the caller's
    /// to free; null if there is nothing to tell. All three places may be null. ERROR_INVALID_HANDLE.
    void Next(HANDLE notification, const PRINTER_NOTIFY_OPTIONS* options, DWORD* change, void** info);

    /// ERROR_INVALID_HANDLE.
    void Close(HANDLE notification);
    /// ERROR_INVALID_PARAMETER.
    void Free(const void* block);

private:
    Batch Refreshed(Notification& notification) const;

    World& _world;
};
