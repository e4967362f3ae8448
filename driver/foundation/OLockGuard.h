// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OSynchronizer.h"

/// Locks a synchroniser for a scope. It belongs to one scope on one thread and doesn't own the synchroniser.
class SCOPED_CAPABILITY OLockGuard {
public:
    /// Locks at once, unless `defer`: then `Lock` is called later, which clang's analysis can't see.
    explicit OLockGuard(OSynchronizer& synchronizer, bool defer = false) ACQUIRE(synchronizer)
        : _synchronizer(&synchronizer), _locked(false)
    {
        if (!defer) Lock();
    }

    OLockGuard(const OLockGuard&) = delete;
    OLockGuard& operator=(const OLockGuard&) = delete;
    ~OLockGuard() RELEASE() { Unlock(); }

    void Lock() ACQUIRE() NO_THREAD_SAFETY_ANALYSIS
    {
        _locked = true;
        _synchronizer->Lock();
    }

    /// Does nothing if it isn't locked.
    void Unlock() RELEASE() NO_THREAD_SAFETY_ANALYSIS
    {
        if (!_locked) return;
        _synchronizer->Unlock();
        _locked = false;
    }

private:
    OSynchronizer* _synchronizer;
    bool _locked;
};
