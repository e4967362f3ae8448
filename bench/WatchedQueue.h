// SPDX-License-Identifier: MIT
#pragma once

#include "bench/CountingSink.h"
#include "support/com/Connection.h"
#include "support/product/ProductModule.h"

#include <string>
#include <vector>

/// A printer whose jobs the product follows for so many sinks of its queue.
class WatchedQueue {
public:
    /// Lets each job have its first event, from which on the product follows it. Throws std::runtime_error if a sink is
    /// refused or an event doesn't come.
    WatchedQueue(const ProductModule& product, std::wstring printerName, int sinks, std::vector<DWORD> jobIds);
    WatchedQueue(const WatchedQueue&) = delete;
    WatchedQueue& operator=(const WatchedQueue&) = delete;
    /// Ends the jobs: one that is being followed keeps its printer open.
    ~WatchedQueue();

    const std::wstring& PrinterName() const noexcept { return _printerName; }

    /// So many events are going to be waited for.
    void Expect(long events) const;

    /// Waits until every sink has had them. Throws std::runtime_error if they don't come within a minute.
    void Wait() const;

    /// When the last event entered the first sink.
    CountingSink::Clock::time_point Entered() const noexcept { return _sinks.front()->Entered(); }

private:
    void Connect(const ProductModule& product, int sinks);
    void FollowJobs() const;
    void EndJobs() const;

    const std::wstring _printerName;
    const std::vector<DWORD> _jobIds;
    std::vector<Microsoft::WRL::ComPtr<CountingSink>> _sinks;
    std::vector<Connection> _connections;
};
