// SPDX-License-Identifier: MIT
#include "support/product/GuardedProductHeap.h"

#include "foundation/OGuardedBlock.h"
#include "support/ImportHook.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>

namespace {

constexpr size_t alignment = 16;
/// Freed blocks that stay closed. Some systems give a process 65,530 ranges of memory, and each block takes two.
constexpr size_t mostClosed = 8000;

struct GuardedMemory {
    struct Block {
        OGuardedBlock pages;
        size_t size;
    };

    std::mutex lock;
    std::map<void*, Block> living;
    std::map<void*, OGuardedBlock> closed;
    std::deque<void*> oldestClosed;
    size_t blocks = 0;
    size_t freedTwice = 0;
};

/// Never destroyed: the product frees memory while the process ends.
GuardedMemory& Memory()
{
    static GuardedMemory& memory = *new GuardedMemory;
    return memory;
}

void* Take(size_t size)
{
    OGuardedBlock pages((std::max<size_t>(size, 1) + alignment - 1) / alignment * alignment);
    void* const data = pages.Data();
    if (!data) return nullptr;
    GuardedMemory& memory = Memory();
    const std::lock_guard guard(memory.lock);
    ++memory.blocks;
    memory.living.insert_or_assign(data, GuardedMemory::Block{std::move(pages), size});
    return data;
}

void Close(void* block)
{
    MEMORY_BASIC_INFORMATION region{};
    ::VirtualQuery(block, &region, sizeof region);
    ::VirtualFree(region.AllocationBase, 0, MEM_DECOMMIT);
}

/// False for a block that is not of here.
bool GiveBack(void* block)
{
    GuardedMemory& memory = Memory();
    const std::lock_guard guard(memory.lock);
    if (memory.closed.contains(block)) {
        ++memory.freedTwice;
        return true;
    }
    auto found = memory.living.extract(block);
    if (!found) return false;
    Close(block);
    memory.closed.insert_or_assign(block, std::move(found.mapped().pages));
    memory.oldestClosed.push_back(block);
    if (memory.oldestClosed.size() > mostClosed) {
        memory.closed.erase(memory.oldestClosed.front());
        memory.oldestClosed.pop_front();
    }
    return true;
}

size_t SizeOf(void* block)
{
    GuardedMemory& memory = Memory();
    const std::lock_guard guard(memory.lock);
    const auto found = memory.living.find(block);
    return found == memory.living.end() ? ::_msize(block) : found->second.size;
}

void Free(void* block)
{
    if (block && !GiveBack(block)) std::free(block);
}

void* TakeClear(size_t count, size_t size)
{
    return Take(count * size); // pages begin clear
}

void* Resize(void* block, size_t size)
{
    void* const moved = Take(size);
    if (moved && block) {
        std::memcpy(moved, block, std::min(size, SizeOf(block)));
        Free(block);
    }
    return moved;
}

/// The hooks that stay.
struct GuardedHooks {
    explicit GuardedHooks(const ProductModule& product)
        : take("malloc", Take, product.Handle()), takeClear("calloc", TakeClear, product.Handle()),
          resize("realloc", Resize, product.Handle()), free("free", Free, product.Handle())
    {
    }

    ImportHook<void*(size_t)> take;
    ImportHook<void*(size_t, size_t)> takeClear;
    ImportHook<void*(void*, size_t)> resize;
    ImportHook<void(void*)> free;
};

} // namespace

GuardedProductHeap::GuardedProductHeap(const ProductModule& product)
{
    [[maybe_unused]] static const auto* const hooks = new GuardedHooks(product);
}

size_t GuardedProductHeap::Blocks()
{
    const std::lock_guard guard(Memory().lock);
    return Memory().blocks;
}

size_t GuardedProductHeap::FreedTwice()
{
    const std::lock_guard guard(Memory().lock);
    return Memory().freedTwice;
}
