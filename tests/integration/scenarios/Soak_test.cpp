// SPDX-License-Identifier: MIT
// Many jobs through one printer, one after the other: what goes in comes out, and nothing is left behind.

#include "integration/scenarios/ScenarioTest.h"
#include "integration/scenarios/TallySink.h"
#include "support/RandomSeed.h"
#include "support/product/ProductHeap.h"
#include "support/product/ProductTicks.h"

namespace {

constexpr DWORD jobsOfRound = 50;
constexpr DWORD retentionMs = 60000; // of the record of a job that nobody holds

class SoakProperty : public ScenarioTest {
protected:
    /// What the process and the spooler hold for the product.
    struct Holdings {
        size_t blocks;
        size_t handles;
        DWORD printerHandles;
        DWORD notifications;
        DWORD notifyBlocks;

        friend std::ostream& operator<<(std::ostream& stream, const Holdings& holdings)
        {
            return stream << holdings.blocks << " blocks, " << holdings.handles << " handles, "
                          << holdings.printerHandles << " printer handles, " << holdings.notifications
                          << " notifications, " << holdings.notifyBlocks << " notify blocks";
        }
    };

    /// How many handles the process has. Where they aren't counted, as under Wine, the place of the first that is free,
    /// which goes up with them.
    static size_t HandleCount()
    {
        DWORD counted = 0;
        ::GetProcessHandleCount(::GetCurrentProcess(), &counted);
        const OWaitHandle free(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
        return counted ? counted : reinterpret_cast<size_t>(free.Get()) / sizeof(DWORD);
    }

    Holdings Held() const
    {
        return {heap.LiveBlocks(), HandleCount(), ::SpoolerOpenHandles(nullptr), ::SpoolerOpenNotifications(),
                ::SpoolerUnfreedNotifyBlocks()};
    }

    /// A list of the product may have more room at one time than at another; what a job leaves behind adds up.
    static bool IsFlat(const Holdings& now, const Holdings& before)
    {
        constexpr size_t room = 8;
        return now.blocks <= before.blocks + room && now.handles <= before.handles + room &&
               now.printerHandles == before.printerHandles && now.notifications == before.notifications &&
               now.notifyBlocks == before.notifyBlocks;
    }

    /// The call log is too short for this many calls, so the one opening is known instead of counted.
    void TearDown() override
    {
        LetGo();
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), 1u);
        EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
        SpoolerTest::TearDown();
    }

    /// A number of labels goes from the spooler to the device, and a minute passes.
    void PrintRound()
    {
        SpoolerJob job;
        job.bytes = "TEXT";
        job.byteCount = 4;
        job.totalPages = 1;
        for (DWORD i = 0; i < jobsOfRound; ++i) AddJob(job);
        ::SpoolerStep(printerName, spoolerAllSteps, nullptr);
        Settle();
        ProductTicks::Advance(retentionMs);
        EXPECT_TRUE(waits.PassQuietSecond());
    }

    const ProductTicks ticks{Product()};
    const ProductHeap heap{Product()};
};

TEST_F(SoakProperty, EveryJobThatGoesInComesOutAndNothingOfItStays)
{
    const auto rounds = static_cast<DWORD>(RandomOperations(5'000, 100'000)) / jobsOfRound;
    TallySink tally;
    const Connection connection = Connect(*queue.Get(), &tally);
    PrintRound();
    PrintRound();
    const Holdings before = Held();
    tally.Take();
    for (DWORD round = 2; round < rounds; ++round) {
        PrintRound();
        ::SpoolerClearLog();
        ASSERT_TRUE(IsFlat(Held(), before)) << Held() << " after round " << round << ", before: " << before;
        ASSERT_EQ(tally.Take().size(), jobsOfRound) << "round " << round;
    }
    EXPECT_EQ(tally.Finalized(), rounds * jobsOfRound);
}

} // namespace
