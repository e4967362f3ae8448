// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

/// The waits of the product's notification threads: tells when each of them has done all that the spooler told it. Who
/// waits for the end of one looks again at once, not after 100 ms.
/// Make it before any printer is watched; one at a time. Threads: any.
class ProductWaits {
public:
    /// A thread that has waited for `quietSecondMs` milliseconds in vain takes that for a second.
    explicit ProductWaits(const ProductModule& product, DWORD quietSecondMs = INFINITE);
    ProductWaits(const ProductWaits&) = delete;
    ProductWaits& operator=(const ProductWaits&) = delete;
    ~ProductWaits();

    /// Waits until every watched printer's thread waits with nothing to fetch; false if that takes too long.
    bool WaitUntilIdle() const;

    /// With one watched printer: waits until a quiet second has been handled from its beginning; false if that takes
    /// too long.
    bool PassQuietSecond() const;

private:
    ImportHook<decltype(::WaitForMultipleObjects)> _waits;
    ImportHook<decltype(::Sleep)> _noSleep;
};
