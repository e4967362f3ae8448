// SPDX-License-Identifier: MIT
#include "support/product/RegisteredProduct.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

/// The platform finds the product for the whole run of this program.
class RegisteredEnvironment final : public ::testing::Environment {
public:
    void SetUp() override { _product.emplace(); }
    void TearDown() override { _product.reset(); }

private:
    std::optional<RegisteredProduct> _product;
};

[[maybe_unused]] const auto* const environment = ::testing::AddGlobalTestEnvironment(new RegisteredEnvironment);

} // namespace
