// SPDX-License-Identifier: MIT
#include "bench/EventRateTable.h"

#include "bench/NoticeCases.h"
#include "bench/SimulatedWorld.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::array sinkCounts{1, 10};
constexpr int noticesInABatch = 500;

double PerSecond(double nanoseconds)
{
    return 1e9 / nanoseconds;
}

/// As many lines as the product traces for one notice with one event.
BenchCase TraceLines()
{
    return {[](int calls) {
                for (int i = 0; i < 3 * calls; ++i) ::OutputDebugStringA("XJobStatusThread.cpp(1): a line of trace\n");
            },
            noticesInABatch};
}

void PrintRow(int sinks)
{
    FillWorld(2);
    const std::wstring bare = PrinterName(2);
    const std::vector<DWORD> jobIds = AddJobs(PrinterName(1).c_str(), 1);
    const DWORD bareJobId = AddJobs(bare.c_str(), 1).front();
    const ProductModule product;
    const WatchedQueue watched(product, PrinterName(1), sinks, jobIds);
    const RawNotification notification(bare);

    const std::vector<Samples> samples =
        MeasureTogether({RawNotices(notification, bare, bareJobId, noticesInABatch),
                         ProductNotices(watched, jobIds.front(), noticesInABatch), TraceLines()});
    const double events = PerSecond(Median(samples[1]));
    std::printf("| %d | %.0f | %.0f | %.0f | %.0f ns | %.0f ns |\n", sinks, PerSecond(Median(samples[0])), events,
                events * sinks, MedianDifference(samples[1], samples[0]), Median(samples[2]));
    std::fflush(stdout);
}

} // namespace

void PrintEventRateTable()
{
    std::printf(
        "\n| Sinks | notices a second, bare loop | events a second | calls of sinks a second | the product adds to "
        "a notice | three lines of trace alone |\n|---|---|---|---|---|---|\n");
    for (const int sinks : sinkCounts) PrintRow(sinks);
}
