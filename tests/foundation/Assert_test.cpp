// SPDX-License-Identifier: MIT
#include "foundation/Assert.h"

#include "support/AssertCatcher.h"
#include "support/ImportHook.h"
#include "support/TranslatorScope.h"

#include <gtest/gtest.h>

#include <string>

namespace AssertTest {

struct Breaker {
    void Break(int value) const { ASSERT(value > 0); }
    void BreakWithoutThrowing(int value) const noexcept { ASSERT(value > 0); }
    static int BreakNamed(int value)
    {
        ASSERT_IN("Settled::Name", value != 0);
        return value;
    }
    ~Breaker() { ASSERT(!breaksAtEnd); }
    bool breaksAtEnd = false;
};

struct Bystander {
    ~Bystander() { ++*destroyed; }
    int* destroyed;
};

TEST(Assert, TellsFunctionAndCondition)
{
    EXPECT_EQ(BrokenAssert([] { Breaker().Break(0); }), "AssertTest::Breaker::Break ASSERT(value > 0)");
}

TEST(Assert, TellsTheSettledName)
{
    EXPECT_EQ(BrokenAssert([] { Breaker::BreakNamed(0); }), "Settled::Name ASSERT(value != 0)");
}

TEST(Assert, LetsATrueConditionPass)
{
    EXPECT_EQ(BrokenAssert([] { Breaker().Break(1); }), "");
}

TEST(Assert, KeepsLineAndFileInTheRecord)
{
    const int line = __LINE__ + 1;
    BrokenAssert([] { ASSERT(false); });
    EXPECT_EQ(LastAssert().line, line);
    EXPECT_STREQ(LastAssert().file, "tests/foundation/Assert_test.cpp");
}

TEST(Assert, CutsTextsAt259Characters)
{
    const std::string longText(300, 'x');
    BrokenAssert([&] { AssertFailed(1, longText.c_str(), longText.c_str(), longText.c_str()); });
    EXPECT_EQ(LastAssert().function, std::string(259, 'x'));
    EXPECT_EQ(LastAssert().file, std::string(259, 'x'));
    EXPECT_EQ(LastAssert().condition, std::string(259, 'x'));
}

TEST(Assert, RaisesTheCodeNonContinuableWithTheRecordAsItsParameter)
{
    EXCEPTION_RECORD record{};
    const TranslatorScope scope([](unsigned, EXCEPTION_POINTERS* pointers) { throw *pointers->ExceptionRecord; });
    try {
        RunTranslated([] { Breaker().Break(0); });
    } catch (const EXCEPTION_RECORD& thrown) {
        record = thrown;
    }
    EXPECT_EQ(record.ExceptionCode, 1359u);
    EXPECT_EQ(record.ExceptionFlags, DWORD{EXCEPTION_NONCONTINUABLE});
    ASSERT_EQ(record.NumberParameters, 1u);
    EXPECT_EQ(record.ExceptionInformation[0], reinterpret_cast<ULONG_PTR>(&LastAssert()));
}

int stops;
std::string recordAtTheStop;

TEST(Assert, StopsAtADebuggerBeforeItFillsTheRecord)
{
    const ImportHook<BOOL()> debugger("IsDebuggerPresent", [] { return BOOL{TRUE}; });
    const ImportHook<void()> stop("DebugBreak", [] {
        ++stops;
        recordAtTheStop = LastAssert().condition;
    });
    stops = 0;
    BrokenAssert([] { AssertFailed(1, "f", "f.cpp", "before"); });
    EXPECT_EQ(stops, 1);
    BrokenAssert([] { AssertFailed(1, "f", "f.cpp", "now"); });
    EXPECT_EQ(stops, 2);
    EXPECT_EQ(recordAtTheStop, "before");
}

TEST(Assert, StopsNowhereWithoutADebugger)
{
    const ImportHook<BOOL()> debugger("IsDebuggerPresent", [] { return BOOL{FALSE}; });
    const ImportHook<void()> stop("DebugBreak", [] { ++stops; });
    stops = 0;
    BrokenAssert([] { Breaker().Break(0); });
    EXPECT_EQ(stops, 0);
}

TEST(Assert, RunsDestructorsInBetween)
{
    int destroyed = 0;
    BrokenAssert([&] {
        const Bystander bystander{&destroyed};
        Breaker().Break(0);
    });
    EXPECT_EQ(destroyed, 1);
}

TEST(Assert, LeavesAFunctionThatPromisesNotToThrow)
{
    EXPECT_EQ(BrokenAssert([] { Breaker().BreakWithoutThrowing(0); }),
              "AssertTest::Breaker::BreakWithoutThrowing ASSERT(value > 0)");
}

TEST(Assert, LeavesADestructor)
{
    EXPECT_EQ(BrokenAssert([] {
                  Breaker breaker;
                  breaker.breaksAtEnd = true;
              }),
              "AssertTest::Breaker::~Breaker ASSERT(!breaksAtEnd)");
}

} // namespace AssertTest
