// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <cstddef>

/// A zeroed block for foreign code to write into. It ends where memory ends: writing past it is an access violation
/// and does no harm.
///
/// Ownership: the block. Errors: without memory there is no block.
class OGuardedBlock {
public:
    explicit OGuardedBlock(size_t size) noexcept;

    explicit operator bool() const noexcept { return static_cast<bool>(_pages); }

    /// The block, null without one. Its end is aligned; its beginning follows from the size.
    BYTE* Data() const noexcept { return _data; }

private:
    static void FreePages(void* pages) noexcept { ::VirtualFree(pages, 0, MEM_RELEASE); }

    OHandle<&OGuardedBlock::FreePages, void*> _pages;
    BYTE* _data = nullptr;
};
