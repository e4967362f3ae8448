// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Batch.h"

#include <map>
#include <memory>

/// The blocks of notification information that clients have and are to give back.
class NotifyBlocks {
public:
    /// Makes a PRINTER_NOTIFY_INFO with everything that its entries point to in one block.
    PRINTER_NOTIFY_INFO* GiveOut(const Batch& batch);
    /// False for a block that was not given out.
    bool Free(const void* block);

    DWORD Count() const noexcept { return static_cast<DWORD>(_blocks.size()); }
    /// They can still be given back, but are counted no more.
    void Forget();

private:
    struct Block {
        std::unique_ptr<BYTE[]> memory;
        size_t size;
    };
    using Blocks = std::map<const void*, Block>;

    static bool FreeFrom(Blocks& blocks, const void* block);

    Blocks _blocks;
    Blocks _forgotten;
};
