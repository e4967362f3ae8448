// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Notification.h"
#include "spooler/notifications/NotifyBlocks.h"
#include "spooler/notifications/RecordedBatches.h"

/// The change notifications that are open, and the blocks of information that were given out and not freed.
///
/// Failures: give up with the error that the spooler's functions report.
class ChangeNotifications {
public:
    /// The handle, which can be waited for.
    HANDLE Open(NotifyPlace place, NotifyRequest request);
    /// ERROR_INVALID_HANDLE for one that isn't open or whose printer handle was closed.
    Notification& Of(HANDLE notification);
    /// ERROR_INVALID_HANDLE.
    void Close(HANDLE notification);
    /// A printer handle was closed: what was opened on it hears nothing more and can only be closed.
    void ClosePlace(HANDLE printerHandle) noexcept;

    /// Somebody listens to the printer.
    bool Hears(DWORD printerId) const noexcept;
    /// Something of the printer waits to be fetched.
    bool IsWaiting(DWORD printerId) const noexcept;
    void Tell(DWORD printerId, const Change& change);
    void Lose(DWORD printerId) noexcept;
    /// False if nobody listens to the printer.
    bool Queue(DWORD printerId, const Batch& batch);
    /// Plays a recording to everybody who listens to the printer itself; as Notification::Play.
    void Play(DWORD printerId, const Recording& recording, std::optional<PlayClock::time_point> begin);
    /// Whose recorded batch is the next to come; null if none is.
    Notification* NextToCome() noexcept;
    /// 0: there is none.
    void SetLimit(size_t limit) noexcept { _limit = limit; }

    /// The block of a batch, for the caller to give back; null if it has none.
    PRINTER_NOTIFY_INFO* GiveOut(const Batch& batch);
    /// ERROR_INVALID_PARAMETER for what is no block.
    void Free(const void* block);

    DWORD OpenCount() const noexcept;
    DWORD UnfreedBlocks() const noexcept { return _blocks.Count(); }
    void Clear();

private:
    std::map<HANDLE, std::unique_ptr<Notification>> _open;
    NotifyBlocks _blocks;
    size_t _limit = 0; // of entries that may wait in one notification
};
