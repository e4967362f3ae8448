// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/// Time of one call in nanoseconds: the median over the repetitions of a batch.
struct Measurement {
    double median = 0;
    double lowest = 0;
};

/// Something to be timed: `run(n)` does it n times.
struct BenchCase {
    std::string name;
    std::function<void(int calls)> run;
    int calls = 2000; ///< in one batch
};

constexpr int repetitions = 41;

/// Times the cases in turn, batch by batch, so that each meets the same state of the machine.
std::vector<Measurement> MeasureTogether(const std::vector<BenchCase>& cases);
