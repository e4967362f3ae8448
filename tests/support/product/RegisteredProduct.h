// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "support/product/ProductModule.h"

/// Has the product registered while the tests of the process run, so that the platform finds its classes and its
/// marshalling code.
class RegisteredProduct : public ::testing::Environment {
public:
    void SetUp() override { ASSERT_EQ(_product.RegisterServer(), S_OK); }
    void TearDown() override { EXPECT_EQ(_product.UnregisterServer(), S_OK); }

private:
    ProductModule _product;
};
