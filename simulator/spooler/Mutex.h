// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/ThreadAnnotations.h"

#include <mutex>

/// std::mutex as clang's thread safety analysis sees it.
class CAPABILITY("mutex") Mutex {
public:
    void lock() ACQUIRE() { _mutex.lock(); }
    void unlock() RELEASE() { _mutex.unlock(); }

private:
    std::mutex _mutex;
};

/// Holds a mutex for a scope.
class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : _mutex(mutex) { _mutex.lock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;
    ~MutexLock() RELEASE() { _mutex.unlock(); }

private:
    Mutex& _mutex;
};
