// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// While it lives, the system under test runs on a platform of this version, with no metric set. One at a time.
class MadeUpOSVersion {
public:
    MadeUpOSVersion(DWORD major, DWORD minor, BYTE productType = VER_NT_WORKSTATION, WORD suiteMask = 0);
    MadeUpOSVersion(const MadeUpOSVersion&) = delete;
    MadeUpOSVersion& operator=(const MadeUpOSVersion&) = delete;
    ~MadeUpOSVersion();

    /// The record that the version call gives, for the fields that the constructor doesn't set.
    OSVERSIONINFOEXW& Record() noexcept;

    /// Gives one system metric a value.
    void SetMetric(int index, int value);

    /// Makes the version call fail.
    void Fail() noexcept;
};
