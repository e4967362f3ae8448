// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

#include <string>

/// Reads along what the product writes to the debug trace. One at a time; the trace goes nowhere else meanwhile.
class ProductTrace {
public:
    explicit ProductTrace(const ProductModule& product);

    /// Lines so far that hold `text`.
    size_t Count(const std::string& text) const;

private:
    ImportHook<decltype(::OutputDebugStringA)> _hook;
};
