// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The seed of this run's random tests: VORLANE_SEED of the environment, or one from the clock. It is printed, so that
/// a run that failed can be had again.
std::uint64_t RandomSeed();

/// How many operations a test makes: `usual`, or `longRun` if the environment has VORLANE_LONG_RUNS. Only for tests of
/// suites whose name ends in "Property": by that the long runs find them.
int RandomOperations(int usual, int longRun);
