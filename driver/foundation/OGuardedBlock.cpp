// SPDX-License-Identifier: MIT
#include "foundation/OGuardedBlock.h"

namespace {

constexpr size_t pageSize = 4096;

} // namespace

OGuardedBlock::OGuardedBlock(size_t size) noexcept
{
    const size_t usable = (size + pageSize - 1) / pageSize * pageSize;
    _pages.Reset(::VirtualAlloc(nullptr, usable + pageSize, MEM_RESERVE, PAGE_NOACCESS));
    if (!_pages) return;
    auto* const start = static_cast<BYTE*>(_pages.Get());
    if (usable > 0 && !::VirtualAlloc(start, usable, MEM_COMMIT, PAGE_READWRITE)) {
        _pages.Reset();
        return;
    }
    _data = start + (usable - size);
}
