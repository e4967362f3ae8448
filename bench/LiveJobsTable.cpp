// SPDX-License-Identifier: MIT
#include "bench/LiveJobsTable.h"

#include "bench/NoticeCases.h"
#include "bench/SimulatedWorld.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::array jobCounts{1, 10, 100, 1000, 10000};
constexpr int noticesInABatch = 200;

void PrintRow(int jobs)
{
    FillWorld(2);
    const std::wstring bare = PrinterName(2);
    const std::vector<DWORD> jobIds = AddJobs(PrinterName(1).c_str(), jobs);
    const DWORD bareJobId = AddJobs(bare.c_str(), 1).front();
    const ProductModule product;
    const WatchedQueue watched(product, PrinterName(1), 1, jobIds);
    const RawNotification notification(bare);

    const std::vector<Samples> samples = MeasureTogether({RawNotices(notification, bare, bareJobId, noticesInABatch),
                                                          ProductNotices(watched, jobIds.front(), noticesInABatch),
                                                          ProductNotices(watched, jobIds.back(), noticesInABatch)});
    std::printf("| %d |", jobs);
    for (const Samples& ofCase : samples) std::printf(" %.1f us |", Median(ofCase) / 1000);
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

void PrintLiveJobsTable()
{
    std::printf("\n| Live jobs | a notice, bare loop | a notice of the oldest job | a notice of the newest job "
                "|\n|---|---|---|---|\n");
    for (const int jobs : jobCounts) PrintRow(jobs);
}
