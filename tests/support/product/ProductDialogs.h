// SPDX-License-Identifier: MIT
#pragma once

#include "support/ImportHook.h"
#include "support/product/ProductModule.h"

#include <string>
#include <vector>

/// Stands in for the person before whom the product puts its message boxes: reads them and says no. One at a time.
class ProductDialogs {
public:
    explicit ProductDialogs(const ProductModule& product);

    /// Texts of the boxes so far.
    std::vector<std::string> Texts() const;

private:
    ImportHook<decltype(::MessageBoxA)> _hook;
};
