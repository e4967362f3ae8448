// SPDX-License-Identifier: MIT
#pragma once

#include "support/product/ProductModule.h"

#include <gtest/gtest.h>

/// The product in the registry of the machine for a scope, so that the platform finds its classes and its marshalling
/// code.
class RegisteredProduct {
public:
    RegisteredProduct() { EXPECT_EQ(_product.RegisterServer(), S_OK); }
    ~RegisteredProduct() { EXPECT_EQ(_product.UnregisterServer(), S_OK); }
    RegisteredProduct(const RegisteredProduct&) = delete;
    RegisteredProduct& operator=(const RegisteredProduct&) = delete;

private:
    ProductModule _product;
};
