// SPDX-License-Identifier: MIT
#include "support/AssertCatcher.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/Assert.h"

namespace {

[[gnu::noinline]] void Check(int value)
{
    ASSERT_IN("Check", value != 13);
}

TEST(AssertCatcher, TellsFunctionAndConditionOfTheBrokenAssert)
{
    EXPECT_EQ(BrokenAssert([] { Check(13); }), "Check ASSERT(value != 13)");
}

TEST(AssertCatcher, TellsNothingWhenNoneBreaks)
{
    EXPECT_EQ(BrokenAssert([] { Check(12); }), "");
}

TEST(AssertCatcher, DestructorsOnTheWayRun)
{
    struct Flag {
        ~Flag() { raised = true; }
        bool& raised;
    };
    bool destroyed = false;
    BrokenAssert([&] {
        const Flag flag{destroyed};
        Check(13);
    });
    EXPECT_TRUE(destroyed);
}

TEST(AssertCatcher, OtherExceptionsPassThrough)
{
    EXPECT_THROW(BrokenAssert([] { throw std::runtime_error("own"); }), std::runtime_error);
}

} // namespace
