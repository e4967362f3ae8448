// SPDX-License-Identifier: MIT
#pragma once

/// While one lives, memory from a non-throwing `new` (as the buffers of texts are) stands on pages of its own: touching
/// what is behind its end, or anything of it after it was freed, raises an access violation; what is written right
/// in front of it is found when it is freed. Larger blocks come from the ordinary heap.
/// One at a time, on one thread. Linking this replaces the program's `operator delete`.
class GuardedHeap {
public:
    GuardedHeap();
    ~GuardedHeap();
    GuardedHeap(const GuardedHeap&) = delete;
    GuardedHeap& operator=(const GuardedHeap&) = delete;

    /// Lets `count` further allocations succeed; the ones after them get no memory.
    void FailAfter(int count);

    /// Blocks handed out and not yet freed, of this guard and those before it.
    int Living() const;

    /// Blocks that had been written to in front of their beginning when they were freed.
    int Underruns() const;
};
