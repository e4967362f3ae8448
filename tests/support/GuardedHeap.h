// SPDX-License-Identifier: MIT
#pragma once

/// While one lives, each block from a non-throwing `new` (as the buffers of texts are) has pages of its own: touching
/// what is after its end, or any of it once it is freed, raises an access violation; what was written right before its
/// beginning is found when it is freed. Larger blocks come from the ordinary heap.
/// One at a time, on one thread. Linking this replaces the program's `operator delete`.
class GuardedHeap {
public:
    GuardedHeap();
    ~GuardedHeap();
    GuardedHeap(const GuardedHeap&) = delete;
    GuardedHeap& operator=(const GuardedHeap&) = delete;

    /// Lets `count` further allocations succeed; the ones after them get no memory.
    void FailAfter(int count);

    /// Blocks handed out and not yet freed, also by earlier objects of this class.
    int Living() const;

    /// Blocks that had been written to before their beginning when they were freed.
    int Underruns() const;
};
