// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

namespace {

void Prepare(const BenchCase& one, int calls)
{
    if (one.prepare) one.prepare(calls);
}

void WarmUp(const BenchCase& one)
{
    const int calls = one.calls / 10 + 1;
    Prepare(one, calls);
    one.run(calls);
}

double NanosecondsPerCall(const BenchCase& one)
{
    Prepare(one, one.calls);
    const auto start = std::chrono::steady_clock::now();
    one.run(one.calls);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / one.calls;
}

} // namespace

std::vector<Samples> MeasureTogether(const std::vector<BenchCase>& cases)
{
    for (const BenchCase& one : cases) WarmUp(one);

    std::vector<Samples> samples(cases.size());
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (size_t i = 0; i < cases.size(); ++i) samples[i].push_back(NanosecondsPerCall(cases[i]));
    }
    return samples;
}

double Median(Samples samples)
{
    return Quantile(std::move(samples), 0.5);
}

double Quantile(Samples samples, double share)
{
    const auto index = std::min(samples.size() - 1, static_cast<size_t>(share * static_cast<double>(samples.size())));
    std::ranges::nth_element(samples, samples.begin() + static_cast<ptrdiff_t>(index));
    return samples[index];
}

double MedianDifference(const Samples& longer, const Samples& shorter)
{
    Samples differences(longer.size());
    std::ranges::transform(longer, shorter, differences.begin(), std::minus{});
    return Median(std::move(differences));
}
