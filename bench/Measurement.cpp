// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

#include <algorithm>
#include <chrono>

namespace {

double NanosecondsPerCall(const BenchCase& one)
{
    const auto start = std::chrono::steady_clock::now();
    one.run(one.calls);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / one.calls;
}

} // namespace

std::vector<Measurement> MeasureTogether(const std::vector<BenchCase>& cases)
{
    for (const BenchCase& one : cases) one.run(one.calls / 10 + 1);

    std::vector<std::vector<double>> times(cases.size());
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (size_t i = 0; i < cases.size(); ++i) times[i].push_back(NanosecondsPerCall(cases[i]));
    }

    std::vector<Measurement> measurements;
    for (std::vector<double>& samples : times) {
        std::ranges::sort(samples);
        measurements.push_back({samples[samples.size() / 2], samples.front()});
    }
    return measurements;
}
