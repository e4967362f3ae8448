// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// Moves jobs from the queue to the device and out of the queue, a step at a time.
class PrintEngine {
public:
    explicit PrintEngine(World& world) noexcept : _world(world) {}

    /// Does the printer's next step. False if there is none to do.
    bool Step(const PrinterRecord& printer);
    /// Milliseconds that the next step takes in real time; nothing if there is no step to do.
    std::optional<DWORD> NextStepMs(const PrinterRecord& printer);

    /// Prints a job in one go, whatever its pace and whatever holds it back. ERROR_INVALID_PARAMETER for an unknown
    /// job.
    void PrintAtOnce(const PrinterRecord& printer, DWORD jobId);

    /// Does for the printers that changed what their pace wants to have done when a call ends.
    void Settle();

private:
    enum class Kind { Start, Send, Count, EndSending, Eject, BeginLeaving, Leave };

    struct NextStep {
        Kind kind;
        DWORD jobId;
    };

    std::optional<NextStep> Find(const PrinterRecord& printer) const;
    std::optional<NextStep> FindLeaving(const PrinterRecord& printer) const;
    std::optional<Kind> KindFor(const PrinterRecord& printer, const JobRecord& job, bool forced) const;
    void Do(const PrinterRecord& printer, NextStep step);

    World& _world;
};
