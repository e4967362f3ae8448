// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

#include <atomic>

/// The product's clock: runs as the platform's, and can be put forward. One at a time.
class ProductTicks {
public:
    explicit ProductTicks(const ProductModule& product) : _hook("GetTickCount", Now, product.Handle()) {}
    ~ProductTicks() { ahead = 0; }
    ProductTicks(const ProductTicks&) = delete;
    ProductTicks& operator=(const ProductTicks&) = delete;

    /// Lets `ms` milliseconds pass at once.
    static void Advance(DWORD ms) { ahead += ms; }

private:
    static DWORD WINAPI Now() { return ::GetTickCount() + ahead; }

    static inline std::atomic<DWORD> ahead{0};
    ImportHook<decltype(::GetTickCount)> _hook;
};
