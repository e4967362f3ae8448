// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

/// Sees the seconds pass in which a notification thread of the product waits for a notice in vain, and lets them pass
/// ten times faster. For one such thread at a time; make this before the thread starts.
class QuietSeconds {
public:
    explicit QuietSeconds(const ProductModule& product);

    /// Waits until the thread has done what it does in a quiet second, begun after this call; false if that takes too
    /// long.
    bool PassOne() const;

private:
    ImportHook<decltype(::WaitForMultipleObjects)> _hook;
};
