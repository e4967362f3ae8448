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

void PrintRow(int sinks)
{
    FillWorld(2);
    const std::wstring bare = PrinterName(2);
    const std::vector<DWORD> jobIds = AddJobs(PrinterName(1).c_str(), 1);
    const DWORD bareJobId = AddJobs(bare.c_str(), 1).front();
    const ProductModule product;
    const WatchedQueue watched(product, PrinterName(1), sinks, jobIds);
    const RawNotification notification(bare);

    const std::vector<Samples> samples = MeasureTogether({RawNotices(notification, bare, bareJobId, noticesInABatch),
                                                          ProductNotices(watched, jobIds.front(), noticesInABatch)});
    const double events = PerSecond(Median(samples[1]));
    std::printf("| %d | %.0f | %.0f | %.0f | %.0f ns |\n", sinks, PerSecond(Median(samples[0])), events, events * sinks,
                MedianDifference(samples[1], samples[0]));
    std::fflush(stdout);
}

} // namespace

void PrintEventRateTable()
{
    std::printf(
        "\n| Sinks | notices a second, bare loop | events a second | calls of sinks a second | the product adds to "
        "a notice |\n|---|---|---|---|---|\n");
    for (const int sinks : sinkCounts) PrintRow(sinks);
}
