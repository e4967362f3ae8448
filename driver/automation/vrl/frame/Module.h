// SPDX-License-Identifier: MIT
#pragma once

/// What the module answers when it is asked whether it can be unloaded: the live automation objects and class
/// factories, and the locks that callers hold. Any thread; the counts are atomic.
class Module {
public:
    /// Called by each object at its construction and its destruction. The first one makes the module stay loaded until
    /// the process ends, whatever `IsIdle` says.
    static void AddObject() noexcept;
    static void RemoveObject() noexcept;

    /// Called by `IClassFactory::LockServer`.
    static void AddLock() noexcept;
    static void RemoveLock() noexcept;

    /// True when no object and no lock is alive.
    static bool IsIdle() noexcept;
};
