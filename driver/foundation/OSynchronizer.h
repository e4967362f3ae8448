// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/ThreadAnnotations.h"

/// A lock: one thread at a time holds it. `OLockGuard` holds it for a scope.
class CAPABILITY("lock") OSynchronizer {
public:
    OSynchronizer() = default;
    OSynchronizer(const OSynchronizer&) = delete;
    OSynchronizer& operator=(const OSynchronizer&) = delete;
    virtual ~OSynchronizer() = default;

    /// Waits without limit until the calling thread holds it.
    virtual void Lock() ACQUIRE() = 0;

    /// Releases it once; the calling thread must hold it.
    virtual void Unlock() RELEASE() = 0;
};
