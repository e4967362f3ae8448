// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "foundation/Platform.h"

/// A device mode of one's own, followed by the driver's private bytes, or none.
///
/// Ownership: a value; copies are deep. Threading: none.
class DevModeCopy {
public:
    DevModeCopy() noexcept = default;

    /// Copies `dmSize` plus `dmDriverExtra` bytes; null gives none.
    explicit DevModeCopy(const DEVMODEW* source);

    /// Null if there is none; good until the next assignment. An old driver's may be shorter than a DEVMODEW.
    const DEVMODEW* Get() const noexcept;

    explicit operator bool() const noexcept { return !_bytes.empty(); }

    /// Private bytes included.
    DWORD Size() const noexcept { return static_cast<DWORD>(_bytes.size()); }

private:
    std::vector<BYTE> _bytes;
};
