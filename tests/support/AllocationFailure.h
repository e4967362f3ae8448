// SPDX-License-Identifier: MIT
#pragma once

/// Lets one allocation of this thread fail: the one behind `allowed` more. A program that links this file has its
/// `operator new` replaced. In force for a scope.
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
