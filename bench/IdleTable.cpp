// SPDX-License-Identifier: MIT
#include "bench/IdleTable.h"

#include "bench/RawWatcher.h"
#include "bench/SimulatedWorld.h"
#include "bench/WatchedPrinters.h"
#include "spooler/SpoolerControl.h"

#include <cstdio>

namespace {

constexpr int printers = 100; ///< the system counts processor time in steps that are too large for one
constexpr DWORD minuteMs = 60000;

ULONGLONG Number(const FILETIME& time)
{
    return (ULONGLONG{time.dwHighDateTime} << 32) | time.dwLowDateTime;
}

/// Of this process so far, in milliseconds.
double ProcessorTime()
{
    FILETIME begun{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetProcessTimes(::GetCurrentProcess(), &begun, &ended, &kernel, &user);
    return static_cast<double>(Number(kernel) + Number(user)) / 10000;
}

/// Of one of the printers that are being watched, in milliseconds.
double OfOneIdleMinute()
{
    ::Sleep(1000); // what has just begun comes to rest
    const double before = ProcessorTime();
    ::Sleep(minuteMs);
    return (ProcessorTime() - before) / printers;
}

double OfBareLoops()
{
    FillWorld(printers);
    const auto watchers = WatchBare(printers);
    return OfOneIdleMinute();
}

double OfProduct()
{
    FillWorld(printers);
    const ProductModule product;
    const WatchedPrinters watched(product, printers);
    return OfOneIdleMinute();
}

} // namespace

void PrintIdleTable()
{
    const double bare = OfBareLoops();
    const double ofProduct = OfProduct();
    std::printf("\n| Idle for a minute, one of %d | bare loop | Vorlane |\n|---|---|---|\n", printers);
    std::printf("| processor time | %.1f ms | %.1f ms |\n", bare, ofProduct);
    std::fflush(stdout);
}
