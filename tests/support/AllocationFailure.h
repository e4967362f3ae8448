// SPDX-License-Identifier: MIT
#pragma once

/// Makes one allocation of this thread fail, after `allowed` have succeeded, for a scope. A program that links this
/// file has its `operator new` replaced.
class AllocationFailure {
public:
    explicit AllocationFailure(int allowed) noexcept;
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /// Whether the allocation was reached and has failed.
    static bool Happened() noexcept;
};

/// Blocks that are allocated and not freed, in all threads.
long LiveAllocations() noexcept;
