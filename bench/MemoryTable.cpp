// SPDX-License-Identifier: MIT
#include "bench/MemoryTable.h"

#include "bench/RawWatcher.h"
#include "bench/SimulatedWorld.h"
#include "bench/WatchedPrinters.h"
#include "bench/WatchedQueue.h"
#include "spooler/SpoolerControl.h"
#include "support/product/ProductHeap.h"

#include <psapi.h>

#include <cstdio>

namespace {

constexpr int printers = 100;
constexpr int jobs = 5000;

/// On Wine, what lies in memory and is nobody else's.
double PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage);
}

struct Bytes {
    double inProcess;
    double inHeap;
};

/// What was taken since this object was made.
class Growth {
public:
    explicit Growth(const ProductHeap& heap) : _heap(heap) { ::SpoolerClearLog(); }

    Bytes PerOne(int count) const
    {
        ::Sleep(3000); // after its first quiet second a thread has all that it takes
        ::SpoolerClearLog();
        return {(PrivateBytes() - _process) / count, (HeapBytes() - _inHeap) / count};
    }

private:
    /// A heap can also shrink.
    double HeapBytes() const { return static_cast<double>(_heap.LiveBytes()); }

    const ProductHeap& _heap;
    const double _inHeap = HeapBytes();
    const double _process = PrivateBytes();
};

Bytes OfBareLoop(const ProductHeap& heap)
{
    FillWorld(printers);
    const Growth growth(heap);
    const auto watchers = WatchBare(printers);
    return growth.PerOne(printers);
}

Bytes OfWatchedPrinter(const ProductModule& product, const ProductHeap& heap)
{
    FillWorld(printers);
    const Growth growth(heap);
    const WatchedPrinters watched(product, printers);
    return growth.PerOne(printers);
}

/// The jobs are in the spooler before; the printer that is watched for them is in the sum.
Bytes OfTrackedJob(const ProductModule& product, const ProductHeap& heap)
{
    FillWorld(1);
    const std::vector<DWORD> jobIds = AddJobs(PrinterName(1).c_str(), jobs);
    const Growth growth(heap);
    const WatchedQueue watched(product, PrinterName(1), 1, jobIds);
    return growth.PerOne(jobs);
}

void PrintRow(const char* name, const Bytes& bytes)
{
    std::printf("| %s | %.1f KiB | %.2f KiB |\n", name, bytes.inProcess / 1024, bytes.inHeap / 1024);
}

} // namespace

void PrintMemoryTable()
{
    const ProductModule product;
    const ProductHeap heap(product);
    OfWatchedPrinter(product, heap); // what stays for the life of the process
    std::printf("\n| Memory of one | private bytes of the process | heap of Vorlane.dll |\n|---|---|---|\n");
    PrintRow("bare loop", OfBareLoop(heap));
    PrintRow("watched printer", OfWatchedPrinter(product, heap));
    PrintRow("tracked job", OfTrackedJob(product, heap));
    std::fflush(stdout);
}
