// SPDX-License-Identifier: MIT
#pragma once

#include "support/product/ProductModule.h"

/// From its making to the end of the process every block of memory that the product takes has pages of its own:
/// touching what is after its end, or any of it once it is freed, raises an access violation. For a program of its own:
/// a block that is still there at the end of a test must not come to another `free`. Threads: any may be in the
/// product.
class GuardedProductHeap {
public:
    explicit GuardedProductHeap(const ProductModule& product);

    /// Blocks that were guarded so far.
    static size_t Blocks();

    /// Blocks that were freed twice.
    static size_t FreedTwice();
};
