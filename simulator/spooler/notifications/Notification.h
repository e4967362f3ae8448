// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "spooler/notifications/Batch.h"
#include "spooler/notifications/NotifyRequest.h"

#include <chrono>
#include <deque>
#include <unordered_map>

/// Where a notification listens.
struct NotifyPlace {
    HANDLE printerHandle = nullptr; // on which it was opened
    DWORD printerId = 0;            // 0: the server; it hears of every printer, but of no fields
    std::wstring serverPrefix;      // "\\HOST" if names are to be told with it
};

using PlayClock = std::chrono::steady_clock;

/// One open change notification: what it waits for, and what waits in it.
///
/// Its handle is a manual-reset event that is set as long as something waits.
class Notification {
public:
    Notification(NotifyPlace place, NotifyRequest request);

    HANDLE Handle() const noexcept { return _event.Get(); }
    const NotifyPlace& Place() const noexcept { return _place; }
    const NotifyRequest& Request() const noexcept { return _request; }
    bool Hears(DWORD printerId) const noexcept;
    /// Something is to be fetched, now or when its time has come.
    bool IsWaiting() const noexcept { return _isSet || !_coming.empty(); }

    /// Adds what the request asks for. More than `limit` waiting entries are lost; 0: there is no limit.
    void Add(const Change& change, size_t limit);
    /// Drops the waiting entries and says so; what comes later is dropped too until the client asks for a refresh.
    void Lose();
    /// Puts a batch in line that is given out as it stands, before anything else.
    void Queue(Batch batch);
    /// Puts the batches of a recording in line: all at once, or each when its time has come, counted from `begin`. From
    /// then on nothing else is heard.
    void Play(std::vector<Batch> batches, std::optional<PlayClock::time_point> begin);
    /// When the next batch is to come; nothing if there is none.
    std::optional<PlayClock::time_point> NextComing() const noexcept;
    /// Lets that batch come; gives what becomes true with it.
    std::vector<std::shared_ptr<const Batch>> LetCome();

    /// What waits; nothing if nothing does.
    Batch Take();
    /// The waiting change word with the values of all fields asked for, instead of the waiting entries.
    Batch Refresh(const std::vector<RecordChange>& current);

    /// Takes it off its printer: it hears nothing more.
    void Disconnect() noexcept;
    bool IsConnected() const noexcept { return _place.printerHandle != nullptr; }

private:
    /// A recorded batch before its time.
    struct Coming {
        PlayClock::time_point due;
        Batch batch;
    };

    std::vector<BatchEntry> Wanted(const RecordChange& record) const;
    bool AddEntry(BatchEntry entry);
    void DropEntries() noexcept;
    bool WaitsForRefresh() const noexcept { return !_queued.empty() && _queued.front().answersRefresh; }
    void Signal();
    void SignalOrReset();
    void SetSignal(bool set);

    NotifyPlace _place;
    NotifyRequest _request;
    OWaitHandle _event;
    bool _isSet = false;
    DWORD _change = 0;
    std::vector<BatchEntry> _entries;
    std::unordered_map<ULONGLONG, size_t> _places; // of the waiting entry of a field, the last one if there are several
    std::deque<Batch> _queued;
    std::deque<Coming> _coming;
    bool _plays = false;  // recordings, and nothing else
    bool _lost = false;   // to be told
    bool _silent = false; // since something was lost
};
