// SPDX-License-Identifier: MIT
#include "support/AllocationFailure.h"

#include <malloc.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int noFailure = -1;

thread_local int allowedAllocations = noFailure;
thread_local bool happened = false;
std::atomic<long> live{0};

bool MustFail() noexcept
{
    if (allowedAllocations == noFailure) return false;
    if (allowedAllocations-- > 0) return false;
    happened = true;
    return true;
}

void* Allocate(size_t size) noexcept
{
    void* const block = MustFail() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (block) ++live;
    return block;
}

/// Blocks stay a while after they were freed, filled with a pattern, so that whoever still uses one is seen.
void* Postpone(void* block) noexcept
{
    constexpr int freedPattern = 0xDD;
    static std::array<std::atomic<void*>, 4096> freed;
    static std::atomic<size_t> next{0};
    std::memset(block, freedPattern, ::_msize(block));
    return freed[next++ % freed.size()].exchange(block);
}

void Free(void* block) noexcept
{
    if (!block) return;
    --live;
    std::free(Postpone(block));
}

} // namespace

AllocationFailure::AllocationFailure(int allowed) noexcept
{
    happened = false;
    allowedAllocations = allowed;
}

AllocationFailure::~AllocationFailure()
{
    allowedAllocations = noFailure;
}

bool AllocationFailure::Happened() noexcept
{
    return happened;
}

long LiveAllocations() noexcept
{
    return live;
}

void* operator new(size_t size)
{
    if (void* const block = Allocate(size)) return block;
    throw std::bad_alloc();
}

void* operator new[](size_t size)
{
    return operator new(size);
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
    Free(block);
}

void operator delete[](void* block) noexcept
{
    Free(block);
}

void operator delete(void* block, size_t) noexcept
{
    Free(block);
}

void operator delete[](void* block, size_t) noexcept
{
    Free(block);
}
