// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OSynchronizer.h"
#include "foundation/Platform.h"

#include <memory>

/// The platform's critical section: recursive, so the owning thread may lock again and must unlock as often.
///
/// Ownership: the platform's structure lives in its own heap block, so it never moves.
/// Threading: any thread. No thread may hold it when it is destroyed.
class OCriticalSection : public OSynchronizer {
public:
    OCriticalSection();
    ~OCriticalSection() override;

    void Lock() override ACQUIRE();
    void Unlock() override RELEASE();

private:
    std::unique_ptr<CRITICAL_SECTION> _criticalSection;
};
