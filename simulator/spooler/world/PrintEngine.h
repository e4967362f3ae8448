// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// Moves jobs from the queue to the device and out of the queue, a step at a time.
class PrintEngine {
public:
    explicit PrintEngine(World& world) noexcept : _world(world) {}

    /// Does the printer's next step. A stalled device is asked again when there is no other. False if there is none to
    /// do, or the device goes on standing still.
    bool Step(const PrinterRecord& printer);
    /// Milliseconds that the next step takes in real time; nothing if there is no step to do, or a stalled device is
    /// all that there is to wait for.
    std::optional<DWORD> NextStepMs(const PrinterRecord& printer);

    /// Has a look at what the printer's devices are up to, which can change at any time: their status, and whether
    /// those that stalled go on. False if there is nothing new.
    bool LookAtDevices(const PrinterRecord& printer);

    /// Prints a job in one go, whatever its pace and whatever holds it back. ERROR_INVALID_PARAMETER for an unknown
    /// job.
    void PrintAtOnce(const PrinterRecord& printer, DWORD jobId);

    /// Does for the printers that changed what their pace wants to have done when a call ends.
    void Settle();

private:
    enum class Kind { Start, Send, Count, EndSending, Eject, BeginLeaving, Leave, AskDevice };

    struct NextStep {
        Kind kind;
        DWORD jobId;
    };

    std::optional<NextStep> Find(const PrinterRecord& printer) const;
    std::optional<NextStep> FindLeaving(const PrinterRecord& printer) const;
    std::optional<Kind> KindFor(const PrinterRecord& printer, const JobRecord& job, bool forced) const;
    static std::optional<Kind> KindAtDevice(const PrinterRecord& printer, const JobRecord& job, bool forced);
    bool AskStalledDevice(const PrinterRecord& printer);
    void Do(const PrinterRecord& printer, NextStep step);

    World& _world;
};
