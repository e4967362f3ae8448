// SPDX-License-Identifier: MIT
#include "labelprinter/device/DeviceQueries.h"

#include <algorithm>

namespace {

constexpr LONG defaultTimeoutMs = 30000;

bool IsOver(ULONGLONG since, ULONGLONG now, LONG timeoutMs)
{
    return now - since >= static_cast<ULONGLONG>(timeoutMs > 0 ? timeoutMs : defaultTimeoutMs);
}

} // namespace

void DeviceQueries::Start(std::string key, std::string payload, const LabelPrinterTimeouts& timeouts,
                          const QueryMood& mood, ULONGLONG now, bool connected)
{
    std::erase_if(_queries, [&](const Query& query) { return query.key == key; });
    if (mood.kind == QueryMood::Kind::Lost) return;
    if (_queries.size() == most) _queries.pop_front();
    _queries.push_back({std::move(key), std::move(payload), timeouts, mood, now});
    Send(_queries.back(), now, connected);
}

DeviceQueries::Status DeviceQueries::StatusAt(std::string_view key, ULONGLONG now, bool connected,
                                              const Execute& execute)
{
    const auto query = std::ranges::find(_queries, key, &Query::key);
    if (query == _queries.end()) return Status::Waiting;
    if (query->status == Status::Waiting) Send(*query, now, connected);
    if (query->status == Status::Sent) Receive(*query, now, execute);
    return query->status;
}

const std::string* DeviceQueries::Response(std::string_view key) const
{
    const auto query = std::ranges::find(_queries, key, &Query::key);
    return query == _queries.end() || query->status != Status::Answered ? nullptr : &query->response;
}

void DeviceQueries::Send(Query& query, ULONGLONG now, bool connected)
{
    if (connected) {
        query.status = Status::Sent;
        query.sentAt = now;
    } else if (IsOver(query.startedAt, now, query.timeouts.send)) {
        query.status = Status::TimedOut;
    }
}

void DeviceQueries::Receive(Query& query, ULONGLONG now, const Execute& execute)
{
    using Kind = QueryMood::Kind;
    if (query.mood.kind == Kind::Failed) {
        query.status = Status::Failed;
    } else if (query.mood.kind != Kind::Pending && now - query.sentAt >= query.mood.delayMs) {
        query.response = execute(query.payload);
        query.status = Status::Answered;
    } else if (IsOver(query.sentAt, now, query.timeouts.receiveStart)) {
        query.status = Status::TimedOut;
    }
}
