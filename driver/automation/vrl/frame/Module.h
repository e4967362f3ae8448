// SPDX-License-Identifier: MIT
#pragma once

/// What keeps the module in memory: the live automation objects and class factories, and the locks that callers hold.
/// Any thread; the counts are atomic.
class Module {
public:
    /// Called by each object at its construction and its destruction.
    static void AddObject() noexcept;
    static void RemoveObject() noexcept;

    /// Called by `IClassFactory::LockServer`.
    static void AddLock() noexcept;
    static void RemoveLock() noexcept;

    /// True when no object and no lock is alive.
    static bool IsIdle() noexcept;
};
