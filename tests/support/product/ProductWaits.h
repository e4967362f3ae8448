// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

/// The waits of the product's notification threads: tells when each of them has done all that the spooler told it. A
/// quiet second passes only when the test says so. Who waits for the end of a thread looks again at once, not after
/// 100 ms.
/// Make it before any printer is watched; one at a time. Threads: any.
class ProductWaits {
public:
    explicit ProductWaits(const ProductModule& product);
    ProductWaits(const ProductWaits&) = delete;
    ProductWaits& operator=(const ProductWaits&) = delete;

    /// Waits until every watched printer's thread waits with nothing to fetch; false if that takes too long.
    bool WaitUntilIdle() const;

    /// The next thread that waits with nothing to fetch takes its wait for a second.
    void BeginQuietSecond() const;

    /// With one watched printer: lets a quiet second pass, and waits until it has been handled; false if that takes too
    /// long.
    bool PassQuietSecond() const;

private:
    ImportHook<decltype(::WaitForMultipleObjects)> _waits;
    ImportHook<decltype(::Sleep)> _noSleep;
};
