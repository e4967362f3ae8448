// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

/// The waits of the product's notification threads: tells when each of them has done all that the spooler told it. Who
/// waits for the end of one looks again at once, not after 100 ms.
/// Make it before any printer is watched; one at a time. Threads: any.
class ProductWaits {
public:
    explicit ProductWaits(const ProductModule& product);
    ProductWaits(const ProductWaits&) = delete;
    ProductWaits& operator=(const ProductWaits&) = delete;
    ~ProductWaits();

    /// Waits until every watched printer's thread waits with nothing to fetch; false if that takes too long.
    bool WaitUntilIdle() const;

    /// From its next wait on, each thread takes so many milliseconds without a notice for a quiet second.
    void ShortenQuietSeconds(DWORD ms);

    /// With one watched printer: waits until a quiet second has been handled from its beginning; false if that takes
    /// too long.
    bool WaitForQuietSecond() const;

private:
    ImportHook<decltype(::WaitForMultipleObjects)> _waits;
    ImportHook<decltype(::Sleep)> _noSleep;
};
