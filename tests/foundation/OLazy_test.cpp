// SPDX-License-Identifier: MIT
#include "foundation/OLazy.h"

#include "support/RunTogether.h"

#include <gtest/gtest.h>

#include <array>

namespace {

/// Counts the objects that are alive.
struct Counted {
    explicit Counted(int& alive) : living(alive) { ++living; }
    ~Counted() { --living; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    int& living;
};

TEST(OLazy, IsEmptyAtFirst)
{
    const OLazy<int> lazy;
    EXPECT_EQ(lazy.Get(), nullptr);
}

TEST(OLazy, KeepsTheFirstObjectAndDestroysLaterOnes)
{
    int alive = 0;
    OLazy<Counted> lazy;
    Counted* const first = lazy.Keep(std::make_unique<Counted>(alive));
    EXPECT_EQ(lazy.Keep(std::make_unique<Counted>(alive)), first);
    EXPECT_EQ(lazy.Get(), first);
    EXPECT_EQ(alive, 1);
}

TEST(OLazy, DestroysWhatItKeeps)
{
    int alive = 0;
    {
        OLazy<Counted> lazy;
        lazy.Keep(std::make_unique<Counted>(alive));
        lazy.Clear();
        EXPECT_EQ(alive, 0);
        EXPECT_EQ(lazy.Get(), nullptr);
        lazy.Keep(std::make_unique<Counted>(alive));
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(OLazy, ThreadsThatComeTogetherGetTheSameObject)
{
    constexpr int threads = 4;
    for (int round = 0; round < 100; ++round) {
        OLazy<int> lazy;
        std::array<int*, threads> given{};
        RunTogether(threads, [&](int number) { given.at(number) = lazy.Keep(std::make_unique<int>(number)); });
        for (int* const one : given) ASSERT_EQ(one, lazy.Get());
    }
}

} // namespace
