// SPDX-License-Identifier: MIT
#include "support/product/RegisteredProduct.h"

#include <gtest/gtest.h>

namespace {

/// The platform finds the product for the whole run of this program.
[[maybe_unused]] const auto* const registeredProduct = ::testing::AddGlobalTestEnvironment(new RegisteredProduct);

} // namespace
