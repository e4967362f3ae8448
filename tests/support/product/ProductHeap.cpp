// SPDX-License-Identifier: MIT
#include "support/product/ProductHeap.h"

#include <malloc.h>

#include <cstdlib>
#include <mutex>
#include <numeric>
#include <set>

namespace {

constexpr int none = -1;

std::mutex lock;
std::set<void*> blocks;
DWORD shortThread = 0;
int granted = none;
bool refused = false;

/// Counts one block of the thread that is to run short; true for the block that it is not to have.
bool IsRefused()
{
    if (granted == none || ::GetCurrentThreadId() != shortThread || granted-- > 0) return false;
    refused = true;
    return true;
}

template <typename Allocate>
void* Take(Allocate allocate)
{
    const std::lock_guard guard(lock);
    if (IsRefused()) return nullptr;
    void* const block = allocate();
    if (block) blocks.insert(block);
    return block;
}

void* TakeBlock(size_t size)
{
    return Take([=] { return std::malloc(size); });
}

void* TakeClearBlock(size_t count, size_t size)
{
    return Take([=] { return std::calloc(count, size); });
}

void* ResizeBlock(void* block, size_t size)
{
    return Take([=] {
        void* const moved = std::realloc(block, size);
        if (moved || size == 0) blocks.erase(block);
        return moved;
    });
}

void GiveBack(void* block)
{
    const std::lock_guard guard(lock);
    blocks.erase(block);
    std::free(block);
}

void Reset(DWORD thread, int count)
{
    shortThread = thread;
    granted = count;
    refused = false;
}

} // namespace

ProductHeap::ProductHeap(const ProductModule& product)
    : _malloc("malloc", TakeBlock, product.Handle()), _calloc("calloc", TakeClearBlock, product.Handle()),
      _realloc("realloc", ResizeBlock, product.Handle()), _free("free", GiveBack, product.Handle())
{
    const std::lock_guard guard(lock);
    Reset(0, none);
    blocks.clear();
}

ProductHeap::~ProductHeap()
{
    const std::lock_guard guard(lock);
    Reset(0, none);
}

size_t ProductHeap::LiveBlocks() const
{
    const std::lock_guard guard(lock);
    return blocks.size();
}

size_t ProductHeap::LiveBytes() const
{
    const std::lock_guard guard(lock);
    return std::accumulate(blocks.begin(), blocks.end(), size_t{0},
                           [](size_t sum, void* block) { return sum + _msize(block); });
}

void ProductHeap::Refuse(int index)
{
    const std::lock_guard guard(lock);
    Reset(::GetCurrentThreadId(), index);
}

void ProductHeap::Refill()
{
    const std::lock_guard guard(lock);
    granted = none;
}

bool ProductHeap::HasRefused() const
{
    const std::lock_guard guard(lock);
    return refused;
}
