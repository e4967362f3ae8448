// SPDX-License-Identifier: MIT
#include "support/RandomSeed.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string_view>

std::uint64_t RandomSeed()
{
    const char* const given = std::getenv("VORLANE_SEED");
    const std::uint64_t seed =
        given ? std::strtoull(given, nullptr, 10)
              : static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    std::cout << "VORLANE_SEED=" << seed << std::endl;
    return seed;
}

int RandomOperations(int usual, int longRun)
{
    const auto* const suite = ::testing::UnitTest::GetInstance()->current_test_suite();
    EXPECT_TRUE(suite && std::string_view(suite->name()).ends_with("Property")) << "not found by the long runs";
    return std::getenv("VORLANE_LONG_RUNS") ? longRun : usual;
}
