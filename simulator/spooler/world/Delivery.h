// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/ChangeScope.h"

/// Brings documents from the queue to the device, which here is a folder.
class Delivery {
public:
    explicit Delivery(World& world) noexcept : _world(world) {}

    /// Delivers the job in one go: its pages count as printed, its bytes are kept and written, and it leaves the queue
    /// unless it is to be retained. A document that can't be written leaves the job in the queue with an error.
    void Deliver(const PrinterRecord& printer, DWORD jobId);

    /// Delivers what is ready on the printers that changed, if they deliver at once and aren't paused.
    void DeliverReady();

    /// Ends a job that has printed: out of the queue, or retained in it.
    static void Finish(ChangeScope& scope, JobRecord& job);

private:
    World& _world;
};
