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
        DWORD handles;
        DWORD printerHandles;
        DWORD notifications;
        DWORD notifyBlocks;

        bool operator==(const Holdings&) const = default;
        friend std::ostream& operator<<(std::ostream& stream, const Holdings& holdings)
        {
            return stream << holdings.blocks << " blocks, " << holdings.handles << " handles, "
                          << holdings.printerHandles << " printer handles, " << holdings.notifications
                          << " notifications, " << holdings.notifyBlocks << " notify blocks";
        }
    };

    Holdings Held() const
    {
        DWORD handles = 0;
        ::GetProcessHandleCount(::GetCurrentProcess(), &handles);
        return {heap.LiveBlocks(), handles, ::SpoolerOpenHandles(nullptr), ::SpoolerOpenNotifications(),
                ::SpoolerUnfreedNotifyBlocks()};
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
        EXPECT_TRUE(waits.WaitForQuietSecond());
    }

    const ProductTicks ticks{Product()};
    const ProductHeap heap{Product()};
};

TEST_F(SoakProperty, EveryJobThatGoesInComesOutAndNothingOfItStays)
{
    const auto rounds = static_cast<DWORD>(RandomOperations(5'000, 100'000)) / jobsOfRound;
    waits.ShortenQuietSeconds(1);
    TallySink tally;
    const Connection connection = Connect(*queue.Get(), &tally);
    PrintRound();
    PrintRound();
    const Holdings before = Held();
    tally.Take();
    for (DWORD round = 2; round < rounds; ++round) {
        PrintRound();
        ::SpoolerClearLog();
        ASSERT_EQ(Held(), before) << "round " << round;
        ASSERT_EQ(tally.Take().size(), jobsOfRound) << "round " << round;
    }
    EXPECT_EQ(tally.Finalized(), rounds * jobsOfRound);
}

} // namespace
