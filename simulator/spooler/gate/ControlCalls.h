// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/gate/Spooler.h"
#include "spooler/SpoolerControl.h"
#include "spooler/world/ChangeScope.h"

/// The shapes of the control interface's functions.

/// Does something to the world.
template <typename Work>
DWORD Control(Work work) noexcept
{
    return Spooler::Instance().Control(work);
}

/// Does something to a printer.
template <typename Work>
DWORD WithPrinter(const wchar_t* printerName, Work work) noexcept
{
    return Control([&](World& world) {
        ChangeScope scope(world, world.PrinterOf(printerName));
        work(scope.EditPrinter());
    });
}

/// Does something to a job.
template <typename Work>
DWORD WithJob(const wchar_t* printerName, DWORD jobId, Work work) noexcept
{
    return Control([&](World& world) {
        ChangeScope scope(world, world.PrinterOf(printerName));
        work(scope.EditJob(jobId));
    });
}

/// Reads something of a printer without touching it; gives what `read` gives, or 0.
template <typename Read>
DWORD ReadPrinter(const wchar_t* printerName, Read read) noexcept
{
    DWORD result = 0;
    Control([&](World& world) { result = read(world.PrinterOf(printerName)); });
    return result;
}
