// SPDX-License-Identifier: MIT
#include "support/GuardedHeap.h"

#include "foundation/Platform.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <new>

namespace {

constexpr size_t pageSize = 4096;
constexpr size_t slotSize = 16 * pageSize; // its last page is never accessible
constexpr size_t slotCount = 1024;
constexpr size_t canarySize = 64;
constexpr size_t largestBlock = slotSize - pageSize - canarySize;
constexpr size_t alignment = 16;
constexpr unsigned char canary = 0xA5;

bool active = false;
int allowed = INT_MAX;
int living = 0;
int underruns = 0;
unsigned char* region = nullptr;
std::array<bool, slotCount> inUse;
size_t nextSlot = 0; // goes round, so that a freed slot stays closed for long

unsigned char* EndOf(size_t slot)
{
    return region + (slot + 1) * slotSize - pageSize;
}

/// The first page of a slot that is needed for `size` bytes at its end and the canary before them.
unsigned char* FirstPage(size_t slot, size_t size)
{
    return EndOf(slot) - (size + canarySize + pageSize - 1) / pageSize * pageSize;
}

bool IsGuarded(const void* block)
{
    const auto* const byte = static_cast<const unsigned char*>(block);
    return region && byte >= region && byte < region + slotSize * slotCount;
}

size_t FreeSlot()
{
    for (size_t tried = 0; tried < slotCount; ++tried) {
        const size_t slot = nextSlot;
        nextSlot = (nextSlot + 1) % slotCount;
        if (!inUse[slot]) return slot;
    }
    return slotCount;
}

void* GuardedAllocate(size_t size)
{
    const size_t slot = FreeSlot();
    if (slot == slotCount) return nullptr;
    unsigned char* const first = FirstPage(slot, size);
    const auto bytes = static_cast<size_t>(EndOf(slot) - first);
    if (!::VirtualAlloc(first, bytes, MEM_COMMIT, PAGE_READWRITE)) return nullptr;
    std::fill(first, EndOf(slot), canary);
    inUse[slot] = true;
    ++living;
    return EndOf(slot) - size;
}

void GuardedFree(void* block)
{
    auto* const begin = static_cast<unsigned char*>(block);
    const auto slot = static_cast<size_t>(begin - region) / slotSize;
    const auto size = static_cast<size_t>(EndOf(slot) - begin);
    underruns += std::any_of(begin - canarySize, begin, [](unsigned char byte) { return byte != canary; });
    unsigned char* const first = FirstPage(slot, size);
    ::VirtualFree(first, static_cast<size_t>(EndOf(slot) - first), MEM_DECOMMIT);
    inUse[slot] = false;
    --living;
}

void* Allocate(size_t size)
{
    if (active && allowed-- <= 0) return nullptr;
    const size_t rounded = (size + alignment - 1) / alignment * alignment;
    if (!active || rounded > largestBlock) return std::malloc(size);
    return GuardedAllocate(rounded);
}

} // namespace

GuardedHeap::GuardedHeap()
{
    if (!region) {
        region = static_cast<unsigned char*>(::VirtualAlloc(nullptr, slotSize * slotCount, MEM_RESERVE, PAGE_NOACCESS));
    }
    allowed = INT_MAX;
    underruns = 0;
    active = region != nullptr;
}

GuardedHeap::~GuardedHeap()
{
    active = false;
}

void GuardedHeap::FailAfter(int count)
{
    allowed = count;
}

int GuardedHeap::Living() const
{
    return living;
}

int GuardedHeap::Underruns() const
{
    return underruns;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void* operator new[](size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* block) noexcept
{
    if (IsGuarded(block))
        GuardedFree(block);
    else
        std::free(block);
}

void operator delete(void* block, size_t) noexcept
{
    operator delete(block);
}

void operator delete[](void* block) noexcept
{
    operator delete(block);
}

void operator delete[](void* block, size_t) noexcept
{
    operator delete(block);
}
