// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

/// Brings documents from the queue to the device, which here is a folder.
class Delivery {
public:
    explicit Delivery(World& world) noexcept : _world(world) {}

    /// Delivers the job in one go: its pages count as printed, its bytes are kept and written, and it leaves the queue
    /// unless it is to be retained. A document that can't be written leaves the job in the queue with an error.
    void Deliver(PrinterRecord& printer, DWORD jobId);

    /// Delivers, in the queue's order, what is ready; for printers that deliver at once and aren't paused.
    void DeliverReady(PrinterRecord& printer);

    /// Ends a job that has printed: out of the queue, or retained in it.
    void Finish(PrinterRecord& printer, JobRecord& job);

private:
    World& _world;
};
