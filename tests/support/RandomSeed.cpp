// SPDX-License-Identifier: MIT
#include "support/RandomSeed.h"

#include <chrono>
#include <cstdlib>
#include <iostream>

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
    return std::getenv("VORLANE_LONG_RUNS") ? longRun : usual;
}
