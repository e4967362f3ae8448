// SPDX-License-Identifier: MIT
#include "bench/WatchedQueue.h"

#include "bench/BoundPrinter.h"
#include "bench/SimulatedWorld.h"
#include "spooler/SpoolerControl.h"

#include <stdexcept>
#include <utility>

using Microsoft::WRL::ComPtr;

namespace {

constexpr DISPID onJobFinalized = 9;

} // namespace

WatchedQueue::WatchedQueue(const ProductModule& product, std::wstring printerName, int sinks, std::vector<DWORD> jobIds)
    : _printerName(std::move(printerName)), _jobIds(std::move(jobIds))
{
    Connect(product, sinks);
    FollowJobs();
}

WatchedQueue::~WatchedQueue()
{
    EndJobs();
}

void WatchedQueue::Connect(const ProductModule& product, int sinks)
{
    ComPtr<IPrintQueue> queue;
    BoundPrinter(product, _printerName)->get_Queue(&queue);
    for (int i = 0; i < sinks; ++i) {
        const auto& sink = _sinks.emplace_back(CountingSink::Create());
        const auto& connection =
            _connections.emplace_back(Connection(queue.Get(), __uuidof(_IPrintQueueEvents), sink.Get()));
        if (FAILED(connection.Result())) throw std::runtime_error("a sink was refused");
    }
}

void WatchedQueue::FollowJobs() const
{
    for (const DWORD jobId : _jobIds) {
        Expect(1);
        QueueNotices(_printerName.c_str(), jobId, 1);
        Wait();
        ::SpoolerClearLog();
    }
}

void WatchedQueue::EndJobs() const
{
    for (const DWORD jobId : _jobIds) {
        for (const auto& sink : _sinks) sink->Expect(1, onJobFinalized);
        QueueLastNotice(_printerName.c_str(), jobId);
        Wait();
        ::SpoolerClearLog();
    }
}

void WatchedQueue::Expect(long events) const
{
    for (const auto& sink : _sinks) sink->Expect(events);
}

void WatchedQueue::Wait() const
{
    for (const auto& sink : _sinks) sink->Wait();
}
