// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace {

double NanosecondsPerCall(const BenchCase& one)
{
    const auto start = std::chrono::steady_clock::now();
    one.run(one.calls);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / one.calls;
}

} // namespace

std::vector<Samples> MeasureTogether(const std::vector<BenchCase>& cases)
{
    for (const BenchCase& one : cases) one.run(one.calls / 10 + 1);

    std::vector<Samples> samples(cases.size());
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (size_t i = 0; i < cases.size(); ++i) samples[i].push_back(NanosecondsPerCall(cases[i]));
    }
    return samples;
}

double Median(Samples samples)
{
    std::ranges::nth_element(samples, samples.begin() + static_cast<ptrdiff_t>(samples.size() / 2));
    return samples[samples.size() / 2];
}

double MedianDifference(const Samples& longer, const Samples& shorter)
{
    Samples differences(longer.size());
    std::ranges::transform(longer, shorter, differences.begin(), std::minus{});
    return Median(std::move(differences));
}
