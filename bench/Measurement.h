// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

/// Something to be timed: `run(n)` does it n times, after `prepare(n)`, which isn't timed and may be empty.
struct BenchCase {
    std::function<void(int calls)> run;
    int calls = 2000; ///< in one batch
    std::function<void(int calls)> prepare = {};
};

/// Nanoseconds of one call of a case, batch by batch.
using Samples = std::vector<double>;

constexpr int repetitions = 41;

/// Times a batch of each case in turn, and that `repetitions` times, so that the cases meet the same state of the
/// machine.
std::vector<Samples> MeasureTogether(const std::vector<BenchCase>& cases);

double Median(Samples samples);

/// The sample that `share` of all, from 0 to 1, don't exceed.
double Quantile(Samples samples, double share);

/// Median of what `longer` takes beyond `shorter`, each pair of batches from one turn.
double MedianDifference(const Samples& longer, const Samples& shorter);
