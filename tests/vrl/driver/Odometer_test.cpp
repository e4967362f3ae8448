// SPDX-License-Identifier: MIT
#include "vrl/driver/Odometer.h"

#include "support/BackgroundCall.h"
#include "support/ImportHook.h"
#include "support/spooler/HeldCall.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/spooler/Spooler.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(Odometer, StartsAtNothing)
{
    const Odometer odometer;
    EXPECT_EQ(odometer.GetPages(), 0u);
    EXPECT_EQ(odometer.GetDistance(), 0.0);
}

TEST(Odometer, AddPagesCountsPagesAndTheirLengthInMillimetres)
{
    Odometer odometer(10, 5.5);
    odometer.AddPages(3, 1000);
    EXPECT_EQ(odometer.GetPages(), 13u);
    EXPECT_EQ(odometer.GetDistance(), 305.5);
}

TEST(Odometer, AddPagesTakesLengthsAsUnsigned)
{
    Odometer odometer;
    odometer.AddPages(1, 0xFFFFFFFF);
    EXPECT_EQ(odometer.GetDistance(), 429496729.5);
}

TEST(Odometer, PagesWrapAt32Bits)
{
    Odometer odometer(0xFFFFFFFF, 0.0);
    odometer.AddPages(2, 0);
    EXPECT_EQ(odometer.GetPages(), 1u);
}

TEST(Odometer, SumAddsBothFields)
{
    Odometer odometer(1, 2.5);
    odometer += Odometer(10, 20.0);
    EXPECT_EQ(odometer, Odometer(11, 22.5));
}

TEST(Odometer, EqualityLooksAtBothFields)
{
    EXPECT_EQ(Odometer(1, 2.0), Odometer(1, 2.0));
    EXPECT_NE(Odometer(1, 2.0), Odometer(2, 2.0));
    EXPECT_NE(Odometer(1, 2.0), Odometer(1, 2.5));
}

TEST(Odometer, CanBeAssignedAndComparedWithItself)
{
    Odometer odometer(1, 2.0);
    const Odometer& same = odometer;
    odometer = same;
    EXPECT_EQ(odometer, same);
    EXPECT_EQ(odometer, Odometer(1, 2.0));
}

TEST(Odometer, CopyIsIndependent)
{
    Odometer original(1, 2.0);
    const Odometer copy = original;
    original.Clear();
    EXPECT_EQ(copy, Odometer(1, 2.0));
    EXPECT_EQ(original, Odometer());
}

// Threads

TEST(Odometer, ReadersOnManyThreadsNeverSeePagesWithoutTheirLength)
{
    constexpr unsigned long pages = 20000;
    Odometer odometer;
    std::atomic<int> torn = 0;
    std::atomic<int> reading = 0;
    {
        std::vector<std::jthread> readers;
        for (int i = 0; i < 8; ++i) {
            readers.emplace_back([&] {
                Odometer assigned;
                ++reading;
                unsigned long seen = 0;
                while (seen < pages) {
                    const Odometer copy = odometer;
                    assigned = odometer;
                    Odometer sum(0, 0.0);
                    sum += odometer;
                    for (const Odometer* const read : {&copy, &std::as_const(assigned), &std::as_const(sum)}) {
                        if (read->GetDistance() != 100.0 * static_cast<double>(read->GetPages())) ++torn;
                    }
                    if (sum.GetPages() < copy.GetPages()) ++torn;
                    seen = sum.GetPages();
                }
            });
        }
        while (reading < 8) ::SwitchToThread();
        for (unsigned long page = 0; page < pages / 2; ++page) odometer.AddPages(1, 1000);
        for (unsigned long page = 0; page < pages / 2; ++page) odometer += Odometer(1, 100.0);
    }
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(odometer, Odometer(pages, 100.0 * pages));
}

TEST(Odometer, ComparisonNeverSeesHalfAnAssignment)
{
    const Odometer one(1, 100.0);
    const Odometer two(2, 200.0);
    Odometer odometer = one;
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    {
        std::vector<std::jthread> readers;
        for (int i = 0; i < 4; ++i) {
            readers.emplace_back([&] {
                const Odometer half(1, 200.0);
                const Odometer otherHalf(2, 100.0);
                while (!done) torn += (odometer == half) + (odometer == otherHalf);
            });
        }
        for (int i = 0; i < 50000; ++i) odometer = i % 2 ? one : two;
        done = true;
    }
    EXPECT_EQ(torn, 0);
}

/// What a thread does with critical sections, as text: "+" and the letter of the record whose lock it takes, "-" where
/// it leaves it.
class LockTrail {
public:
    LockTrail(const Odometer& a, const Odometer& b)
    {
        recording = true;
        trail.clear();
        a.GetPages();
        b.GetPages();
        lockA = trail.at(0).section;
        lockB = trail.at(2).section;
        trail.clear();
    }
    ~LockTrail() { recording = false; }

    static std::string Text()
    {
        recording = false;
        std::string text;
        for (const Step& step : trail) {
            if (step.section == lockA || step.section == lockB)
                text += std::string(1, step.sign) + (step.section == lockA ? 'a' : 'b');
        }
        return text;
    }

private:
    struct Step {
        char sign;
        CRITICAL_SECTION* section;
    };

    static void Note(char sign, CRITICAL_SECTION* section)
    {
        if (recording && ::GetCurrentThreadId() == thread) trail.push_back({sign, section});
    }

    static inline std::vector<Step> trail;
    static inline CRITICAL_SECTION* lockA = nullptr;
    static inline CRITICAL_SECTION* lockB = nullptr;
    static inline std::atomic<bool> recording = false;
    static inline const DWORD thread = ::GetCurrentThreadId();
    using Function = void(WINAPI*)(CRITICAL_SECTION* section);

    /// The function itself: a call by its name would come back to the hook.
    static Function Platform(const char* name)
    {
        return reinterpret_cast<Function>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name)));
    }

    static inline const Function enterPlatform = Platform("EnterCriticalSection");
    static inline const Function leavePlatform = Platform("LeaveCriticalSection");

    const ImportHook<decltype(::EnterCriticalSection)> _enter{"EnterCriticalSection", [](CRITICAL_SECTION* section) {
                                                                  enterPlatform(section);
                                                                  Note('+', section);
                                                              }};
    const ImportHook<decltype(::LeaveCriticalSection)> _leave{"LeaveCriticalSection", [](CRITICAL_SECTION* section) {
                                                                  Note('-', section);
                                                                  leavePlatform(section);
                                                              }};
};

struct LockRow {
    const char* name;
    void (*work)(Odometer& a, const Odometer& b);
    const char* trail;
};

class OdometerLock : public ::testing::TestWithParam<LockRow> {};

TEST_P(OdometerLock, IsTakenFirstAndTheOthersUnderIt)
{
    Odometer a(1, 2.0);
    const Odometer b(3, 4.0);
    const LockTrail trail(a, b);
    GetParam().work(a, b);
    EXPECT_EQ(LockTrail::Text(), GetParam().trail);
}

constexpr LockRow lockRows[] = {
    {"Assignment", [](Odometer& a, const Odometer& b) { a = b; },                  "+a+b-b-a"},
    {"Sum",        [](Odometer& a, const Odometer& b) { a += b; },                 "+a+b-b-a"},
    {"Equality",   [](Odometer& a, const Odometer& b) { (void)(a == b); },         "+a+b-b-a"},
    {"Inequality", [](Odometer& a, const Odometer& b) { (void)(a != b); },         "+a+b-b-a"},
    {"Copy",       [](Odometer&,   const Odometer& b) { const Odometer copy(b); }, "+b-b"    },
    {"AddPages",   [](Odometer& a, const Odometer&) { a.AddPages(1, 1); },         "+a-a"    },
    {"Clear",      [](Odometer& a, const Odometer&) { a.Clear(); },                "+a-a"    },
    {"Distance",   [](Odometer& a, const Odometer&) { (void)a.GetDistance(); },    "+a-a"    },
};

INSTANTIATE_TEST_SUITE_P(Of, OdometerLock, ::testing::ValuesIn(lockRows),
                         [](const auto& row) { return std::string(row.param.name); });

class StoredOdometerTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        _printer.Reset(OpenPrinterWithAccess(printerName, PRINTER_ALL_ACCESS));
        ASSERT_TRUE(_printer);
        ::SpoolerClearLog();
    }

    OPrinterHandle _printer;
};

TEST_F(StoredOdometerTest, WhatWasWrittenIsReadBack)
{
    EXPECT_TRUE(Odometer(42, 1234.5).WriteStored(_printer.Get()));
    Odometer read;
    EXPECT_TRUE(read.ReadStored(_printer.Get()));
    EXPECT_EQ(read, Odometer(42, 1234.5));
}

TEST_F(StoredOdometerTest, IsStoredInTwoTypedValues)
{
    ASSERT_TRUE(Odometer(42, 1234.5).WriteStored(_printer.Get()));
    DWORD type = 0;
    DWORD needed = 0;
    DWORD pages = 0;
    EXPECT_EQ(::SpoolerPeekData(printerName, L"Gantry", L"Odometer Pages", &type, &pages, sizeof pages, &needed), 0u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(pages, 42u);

    double distance = 0;
    EXPECT_EQ(
        ::SpoolerPeekData(printerName, L"Gantry", L"Odometer Distance", &type, &distance, sizeof distance, &needed),
        0u);
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(needed, 8u);
    EXPECT_EQ(distance, 1234.5);
}

TEST_F(StoredOdometerTest, MissingValueLeavesTheRecordAlone)
{
    SpoolerSetNumberData(printerName, L"Gantry", L"Odometer Pages", 42);
    Odometer odometer(1, 2.0);
    EXPECT_FALSE(odometer.ReadStored(_printer.Get()));
    EXPECT_EQ(odometer, Odometer(1, 2.0));
}

TEST_F(StoredOdometerTest, BothValuesAreReadWhateverTheFirstGives)
{
    Odometer odometer;
    EXPECT_FALSE(odometer.ReadStored(_printer.Get()));
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_STREQ(log[0].valueName, L"Odometer Pages");
    EXPECT_EQ(log[0].bytes, 4u);
    EXPECT_STREQ(log[1].valueName, L"Odometer Distance");
    EXPECT_EQ(log[1].bytes, 8u);
}

TEST_F(StoredOdometerTest, BothValuesAreWrittenWhateverTheFirstGives)
{
    FailNext(SpoolerCall::SetPrinterDataExW, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(Odometer(1, 2.0).WriteStored(_printer.Get()));
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataExW), 2u);
}

TEST_F(StoredOdometerTest, FailureOfTheSecondWriteIsTold)
{
    FailNext(SpoolerCall::SetPrinterDataExW, ERROR_ACCESS_DENIED, 2);
    EXPECT_FALSE(Odometer(1, 2.0).WriteStored(_printer.Get()));
}

TEST_F(StoredOdometerTest, SlowReadDelaysReadersOfTheRecord)
{
    Odometer odometer(1, 2.0);
    const HeldCall held(SpoolerCall::GetPrinterDataExW);
    const BackgroundCall read([&] { odometer.ReadStored(_printer.Get()); });
    ASSERT_TRUE(held.WaitUntilMade());
    const BackgroundCall reader([&] { odometer.GetPages(); });
    EXPECT_TRUE(reader.IsHeldUp());
    held.Release();
    EXPECT_TRUE(reader.Ends());
}

TEST_F(StoredOdometerTest, SlowWriteDelaysReadersOfTheRecord)
{
    const Odometer odometer(1, 2.0);
    const HeldCall held(SpoolerCall::SetPrinterDataExW);
    const BackgroundCall write([&] { odometer.WriteStored(_printer.Get()); });
    ASSERT_TRUE(held.WaitUntilMade());
    const BackgroundCall reader([&] { odometer.GetDistance(); });
    EXPECT_TRUE(reader.IsHeldUp());
    held.Release();
    EXPECT_TRUE(reader.Ends());
}

} // namespace
