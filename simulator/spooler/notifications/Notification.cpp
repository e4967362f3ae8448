// SPDX-License-Identifier: MIT
#include "spooler/notifications/Notification.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <utility>

namespace {

ULONGLONG KeyOf(const BatchEntry& entry)
{
    return (ULONGLONG{entry.type} << 48) | (ULONGLONG{entry.field} << 32) | entry.id;
}

/// Several values of a job's status are told, in their order; of any other field the newest only.
bool KeepsEveryValue(const BatchEntry& entry)
{
    return entry.type == JOB_NOTIFY_TYPE && entry.field == JOB_NOTIFY_FIELD_STATUS;
}

bool IsPrinterName(const BatchEntry& entry)
{
    return entry.type == JOB_NOTIFY_TYPE ? entry.field == JOB_NOTIFY_FIELD_PRINTER_NAME
                                         : entry.field == PRINTER_NOTIFY_FIELD_PRINTER_NAME;
}

NotifyValue WithServer(const NotifyValue& name, const std::wstring& serverPrefix)
{
    return NotifyText(serverPrefix + L"\\" + reinterpret_cast<const wchar_t*>(name.bytes.data()));
}

} // namespace

Notification::Notification(NotifyPlace place, NotifyRequest request)
    : _place(std::move(place)), _request(std::move(request)), _event(::CreateEventW(nullptr, TRUE, FALSE, nullptr))
{
    Require(static_cast<bool>(_event), ERROR_NOT_ENOUGH_MEMORY);
}

bool Notification::Hears(DWORD printerId) const noexcept
{
    return IsConnected() && _request.CoversPrinters() && (_place.printerId == 0 || _place.printerId == printerId);
}

void Notification::Add(const Change& change, size_t limit)
{
    if (_silent || _plays) return;
    const DWORD bits = change.bits & _request.Filter();
    bool added = bits != 0;
    _change |= bits;
    for (const RecordChange& record : change.records) {
        for (BatchEntry& entry : Wanted(record)) added |= AddEntry(std::move(entry));
    }
    if (limit > 0 && _entries.size() > limit) return Lose();
    if (added) Signal();
}

void Notification::Lose()
{
    DropEntries();
    if (_silent || !_request.WantsFields()) return;
    _lost = true;
    _silent = true;
    Signal();
}

void Notification::Queue(Batch batch)
{
    _queued.push_back(std::move(batch));
    Signal();
}

void Notification::Play(std::vector<Batch> batches, std::optional<PlayClock::time_point> begin)
{
    _plays = true;
    for (Batch& batch : batches) {
        if (begin)
            _coming.push_back({*begin + std::chrono::microseconds(batch.microseconds), std::move(batch)});
        else
            _queued.push_back(std::move(batch));
    }
    SignalOrReset();
}

std::optional<PlayClock::time_point> Notification::NextComing() const noexcept
{
    return _coming.empty() ? std::nullopt : std::optional(_coming.front().due);
}

std::vector<std::shared_ptr<const Batch>> Notification::LetCome()
{
    Batch& batch = _queued.emplace_back(std::move(_coming.front().batch));
    _coming.pop_front();
    SignalOrReset();
    return std::exchange(batch.recorded, {});
}

Batch Notification::Take()
{
    Batch batch;
    if (WaitsForRefresh()) return batch;
    if (!_queued.empty()) {
        batch = std::move(_queued.front());
        _queued.pop_front();
    } else {
        const bool lost = std::exchange(_lost, false);
        batch.change = std::exchange(_change, 0);
        batch.withBlock = lost || !_entries.empty();
        batch.flags = lost ? PRINTER_NOTIFY_INFO_DISCARDED : 0;
        batch.entries = std::exchange(_entries, {});
        _places.clear();
    }
    SignalOrReset();
    return batch;
}

Batch Notification::Refresh(const std::vector<RecordChange>& current)
{
    Batch batch;
    if (WaitsForRefresh()) {
        batch = std::move(_queued.front());
        _queued.pop_front();
        SignalOrReset();
        return batch;
    }
    batch.change = std::exchange(_change, 0);
    batch.withBlock = _request.WantsFields();
    for (const RecordChange& record : current) {
        for (BatchEntry& entry : Wanted(record)) batch.entries.push_back(std::move(entry));
    }
    DropEntries();
    if (!_plays) _queued.clear();
    _lost = false;
    _silent = false;
    SignalOrReset();
    return batch;
}

void Notification::Disconnect() noexcept
{
    DropEntries();
    _queued.clear();
    _coming.clear();
    _change = 0;
    _lost = false;
    _place.printerHandle = nullptr;
    SignalOrReset();
}

/// The fields of the record that were asked for, in the order in which they were asked for.
std::vector<BatchEntry> Notification::Wanted(const RecordChange& record) const
{
    std::vector<BatchEntry> wanted;
    if (_place.printerId == 0) return wanted;
    for (const WORD field : _request.Fields(record.type)) {
        const auto found = std::ranges::find(record.fields, field, &FieldChange::field);
        if (found == record.fields.end()) continue;
        BatchEntry& entry = wanted.emplace_back(BatchEntry{record.type, field, record.id, found->value});
        if (IsPrinterName(entry) && !_place.serverPrefix.empty())
            entry.value = WithServer(entry.value, _place.serverPrefix);
    }
    return wanted;
}

/// False if it says what the waiting entry says already.
bool Notification::AddEntry(BatchEntry entry)
{
    const ULONGLONG key = KeyOf(entry);
    const auto place = _places.find(key);
    if (place != _places.end()) {
        BatchEntry& waiting = _entries[place->second];
        if (waiting.value == entry.value) return false;
        if (!KeepsEveryValue(entry)) {
            waiting.value = std::move(entry.value);
            return true;
        }
    }
    _places[key] = _entries.size();
    _entries.push_back(std::move(entry));
    return true;
}

void Notification::DropEntries() noexcept
{
    _entries.clear();
    _places.clear();
}

void Notification::Signal()
{
    SetSignal(true);
}

void Notification::SignalOrReset()
{
    SetSignal(!WaitsForRefresh() && (_change != 0 || !_entries.empty() || !_queued.empty() || _lost));
}

/// The event is touched only when it changes: that costs more than all the rest.
void Notification::SetSignal(bool set)
{
    if (_isSet == set) return;
    _isSet = set;
    if (set)
        ::SetEvent(_event.Get());
    else
        ::ResetEvent(_event.Get());
}
