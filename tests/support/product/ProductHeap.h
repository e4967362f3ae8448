// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

/// The memory that the product takes from its runtime library: counts the blocks, and refuses one when it is told to.
/// One at a time. Threads: any may be in the product meanwhile.
class ProductHeap {
public:
    explicit ProductHeap(const ProductModule& product);
    ProductHeap(const ProductHeap&) = delete;
    ProductHeap& operator=(const ProductHeap&) = delete;
    ~ProductHeap();

    /// Blocks that were taken since this object was made and not given back.
    size_t LiveBlocks() const;

    /// The sum of their sizes.
    size_t LiveBytes() const;

    /// Of the blocks that the calling thread takes from now on, the one of that index is refused.
    void Refuse(int index);

    /// Refuses no block any more.
    void Refill();

    /// A block was refused since the last `Refuse`.
    bool HasRefused() const;

private:
    ImportHook<void*(size_t)> _malloc;
    ImportHook<void*(size_t, size_t)> _calloc;
    ImportHook<void*(void*, size_t)> _realloc;
    ImportHook<void(void*)> _free;
};
