// SPDX-License-Identifier: MIT
#include "bench/LatencyTable.h"

#include "bench/Measurement.h"
#include "bench/RawWatcher.h"
#include "bench/SimulatedWorld.h"
#include "bench/WatchedQueue.h"
#include "spooler/SpoolerControl.h"

#include <algorithm>
#include <cstdio>

namespace {

using Clock = CountingSink::Clock;

constexpr int signals = 10000;
constexpr DWORD pauseMs = 1; ///< both threads are waiting again by then

double Nanoseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::nano>(duration).count();
}

/// One signal that both hear, after another.
class Latencies {
public:
    void Measure()
    {
        for (int i = 0; i < signals; ++i) {
            const auto signalled = Signal();
            ofLoop.push_back(Nanoseconds(_loop.Fetched() - signalled));
            ofSink.push_back(Nanoseconds(_watched.Entered() - signalled));
            ::SpoolerClearLog();
            ::Sleep(pauseMs);
        }
    }

    Samples ofLoop;
    Samples ofSink;

private:
    /// When the spooler signalled.
    Clock::time_point Signal()
    {
        _watched.Expect(1);
        const auto signalled = Clock::now();
        QueueNotices(_name.c_str(), _jobIds.front(), 1);
        _watched.Wait();
        _loop.Wait();
        return signalled;
    }

    const std::wstring _name = PrinterName(1);
    const std::vector<DWORD> _jobIds = AddJobs(_name.c_str(), 1);
    const ProductModule _product;
    const WatchedQueue _watched{_product, _name, 1, _jobIds};
    const RawWatcher _loop{_name};
};

void PrintRow(const char* name, const Samples& samples)
{
    std::printf("| %s | %.1f us | %.1f us | %.1f us |\n", name, Median(samples) / 1000, Quantile(samples, 0.99) / 1000,
                *std::ranges::max_element(samples) / 1000);
}

} // namespace

void PrintLatencyTable()
{
    FillWorld(1);
    Latencies latencies;
    latencies.Measure();
    std::printf("\n| From the signal until | p50 | p99 | worst of %d |\n|---|---|---|---|\n", signals);
    PrintRow("a bare loop has the notice", latencies.ofLoop);
    PrintRow("a sink is entered", latencies.ofSink);
    std::fflush(stdout);
}
