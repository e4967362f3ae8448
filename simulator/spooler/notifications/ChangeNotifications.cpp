// SPDX-License-Identifier: MIT
#include "spooler/notifications/ChangeNotifications.h"

#include "spooler/SpoolerError.h"

#include <algorithm>

HANDLE ChangeNotifications::Open(NotifyPlace place, NotifyRequest request)
{
    auto notification = std::make_unique<Notification>(std::move(place), std::move(request));
    const HANDLE handle = notification->Handle();
    _open.emplace(handle, std::move(notification));
    return handle;
}

Notification& ChangeNotifications::Of(HANDLE notification)
{
    const auto found = _open.find(notification);
    Require(found != _open.end() && found->second->IsConnected(), ERROR_INVALID_HANDLE);
    return *found->second;
}

void ChangeNotifications::Close(HANDLE notification)
{
    Require(_open.erase(notification) > 0, ERROR_INVALID_HANDLE);
}

void ChangeNotifications::ClosePlace(HANDLE printerHandle) noexcept
{
    for (const auto& [handle, notification] : _open) {
        if (notification->Place().printerHandle == printerHandle) notification->Disconnect();
    }
}

bool ChangeNotifications::Hears(DWORD printerId) const noexcept
{
    return std::ranges::any_of(_open, [=](const auto& entry) { return entry.second->Hears(printerId); });
}

bool ChangeNotifications::IsWaiting(DWORD printerId) const noexcept
{
    return std::ranges::any_of(
        _open, [=](const auto& entry) { return entry.second->Hears(printerId) && entry.second->IsWaiting(); });
}

void ChangeNotifications::Tell(DWORD printerId, const Change& change)
{
    for (const auto& [handle, notification] : _open) {
        if (notification->Hears(printerId)) notification->Add(change, _limit);
    }
}

void ChangeNotifications::Lose(DWORD printerId) noexcept
{
    for (const auto& [handle, notification] : _open) {
        if (notification->Hears(printerId)) notification->Lose();
    }
}

bool ChangeNotifications::Queue(DWORD printerId, const Batch& batch)
{
    bool heard = false;
    for (const auto& [handle, notification] : _open) {
        if (!notification->Hears(printerId)) continue;
        notification->Queue(batch);
        heard = true;
    }
    return heard;
}

void ChangeNotifications::Play(DWORD printerId, const Recording& recording, std::optional<PlayClock::time_point> begin)
{
    for (const auto& [handle, notification] : _open) {
        if (notification->IsConnected() && notification->Place().printerId == printerId)
            notification->Play(BatchesFor(notification->Request(), recording), begin);
    }
}

Notification* ChangeNotifications::NextToCome() noexcept
{
    Notification* next = nullptr;
    for (const auto& [handle, notification] : _open) {
        const auto due = notification->NextComing();
        if (due && (!next || *due < *next->NextComing())) next = notification.get();
    }
    return next;
}

PRINTER_NOTIFY_INFO* ChangeNotifications::GiveOut(const Batch& batch)
{
    return batch.withBlock ? _blocks.GiveOut(batch) : nullptr;
}

void ChangeNotifications::Free(const void* block)
{
    Require(_blocks.Free(block), ERROR_INVALID_PARAMETER);
}

DWORD ChangeNotifications::OpenCount() const noexcept
{
    return static_cast<DWORD>(
        std::ranges::count_if(_open, [](const auto& entry) { return entry.second->IsConnected(); }));
}

void ChangeNotifications::Clear()
{
    for (const auto& [handle, notification] : _open) notification->Disconnect();
    _blocks.Forget();
    _limit = 0;
}
