// SPDX-License-Identifier: MIT
#include "support/product/RegisteredProduct.h"

#include <gtest/gtest.h>

#include <objbase.h>

#include <optional>

namespace {

/// The platform finds the product for the whole run of this program, and there is a multi-threaded apartment all the
/// time. Wine ends that with the last client that needs it; a client in a single-threaded apartment who asks for an
/// object just then waits for ever.
class RegisteredEnvironment final : public ::testing::Environment {
public:
    void SetUp() override
    {
        ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        _product.emplace();
    }
    void TearDown() override
    {
        _product.reset();
        ::CoUninitialize();
    }

private:
    std::optional<RegisteredProduct> _product;
};

[[maybe_unused]] const auto* const environment = ::testing::AddGlobalTestEnvironment(new RegisteredEnvironment);

} // namespace
