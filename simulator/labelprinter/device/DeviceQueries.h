// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/LabelPrinterControl.h"
#include "labelprinter/device/DeviceState.h"

#include <deque>
#include <functional>
#include <string>

/// The queries of one device, each under its key, and how far they have come. Times are in milliseconds of the device's
/// clock.
class DeviceQueries {
public:
    /// The oldest query goes when there are more.
    static constexpr size_t most = 1000;

    /// Numbers as a port monitor reports them.
    enum class Status : LONG { Waiting, Sent, Answered, Failed, TimedOut };

    /// What the device replies to the bytes of a query.
    using Execute = std::function<std::string(std::string_view payload)>;

    void Start(std::string key, std::string payload, const LabelPrinterTimeouts& timeouts, const QueryMood& mood,
               ULONGLONG now, bool connected);

    /// Brings the query up to `now` and gives its status; `Waiting` for an unknown key.
    Status StatusAt(std::string_view key, ULONGLONG now, bool connected, const Execute& execute);

    /// The answer of a query that has been seen answered; null for any other.
    const std::string* Response(std::string_view key) const;

private:
    struct Query {
        std::string key;
        std::string payload;
        LabelPrinterTimeouts timeouts;
        QueryMood mood;
        ULONGLONG startedAt;
        ULONGLONG sentAt = 0;
        Status status = Status::Waiting;
        std::string response = {};
    };

    static void Send(Query& query, ULONGLONG now, bool connected);
    static void Receive(Query& query, ULONGLONG now, const Execute& execute);

    std::deque<Query> _queries; ///< oldest first
};
