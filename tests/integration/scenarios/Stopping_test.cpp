// SPDX-License-Identifier: MIT
// Clients that end while the spooler goes on talking. No memory is touched after it was freed, and every wait has a
// limit.

#include "integration/scenarios/ScenarioTest.h"
#include "integration/scenarios/TallySink.h"
#include "support/BackgroundCall.h"
#include "support/product/GuardedProductHeap.h"
#include "support/product/ProductDialogs.h"

#include <atomic>

namespace {

using testing::IsEmpty;

constexpr DWORD jobCount = 8;

class StoppingScenario : public ScenarioTest {
protected:
    /// The call log is too short for this many calls, and each round opens the printer once more.
    void TearDown() override
    {
        LetGo();
        EXPECT_THAT(dialogs.Texts(), IsEmpty()) << "a fault was contained";
        EXPECT_EQ(GuardedProductHeap::FreedTwice(), 0u);
        EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
        EXPECT_EQ(::SpoolerUnfreedNotifyBlocks(), 0u);
        SpoolerTest::TearDown();
    }

    /// Notices of jobs that come and go in one batch, so that none of them stays with a queue.
    static void QueueBatch()
    {
        std::vector<SpoolerNotifyEntry> entries;
        for (DWORD job = 1; job <= jobCount; ++job) {
            entries.push_back(Status(job, JOB_STATUS_RESTART | JOB_STATUS_PRINTING));
            entries.push_back(Number(job, JOB_NOTIFY_FIELD_POSITION, job + ::GetTickCount() % 2));
            entries.push_back(Status(job, JOB_STATUS_ERROR));
            entries.push_back(Status(job, JOB_STATUS_DELETED));
        }
        ::SpoolerQueueBatch(printerName, PRINTER_CHANGE_JOB, entries); // nobody may be watching just now
    }

    static SpoolerNotifyEntry Number(DWORD jobId, WORD field, DWORD number)
    {
        SpoolerNotifyEntry entry;
        entry.field = field;
        entry.id = jobId;
        entry.number = number;
        return entry;
    }

    /// A client with sinks at all levels.
    struct Client {
        ComPtr<IPrinter> printer;
        ComPtr<IPrintQueue> queue;
        std::vector<ComPtr<IPrintJob>> jobs;
        std::vector<Connection> connections;

        explicit Client(IUnknown* sink) : printer(BoundPrinter())
        {
            queue = QueueOf(*printer.Get());
            connections.push_back(Connect(*printer.Get(), sink));
            connections.push_back(Connect(*queue.Get(), sink));
            for (DWORD id = 1; id <= jobCount; ++id) {
                jobs.push_back(OpenJob(id));
                connections.push_back(Connect(*jobs.back().Get(), sink));
            }
        }
    };

    const GuardedProductHeap guarded{Product()};
    const ProductDialogs dialogs{Product()};
};

TEST_F(StoppingScenario, FortyClientsStartAndEndUnderStreamingNotices)
{
    queue.Reset();
    printer.Reset();
    std::atomic<bool> enough{false};
    const BackgroundCall stream([&] {
        for (; !enough; QueueBatch()) {
            waits.BeginQuietSecond();
            ::SpoolerWaitUntilFetched(printerName, 5);
        }
    });
    for (int round = 0; round < 40; ++round) {
        TallySink sink;
        auto client = std::make_unique<Client>(&sink);
        const DWORD heard = sink.Finalized();
        ASSERT_TRUE(Eventually([&] { return sink.Finalized() > heard + static_cast<DWORD>(round % 10); }));
        const BackgroundCall end([&] {
            if (round % 2 == 0) client->connections.clear(); // the others forget to disconnect
            for (Connection& connection : client->connections) connection.Forget();
            client.reset();
        });
        ASSERT_TRUE(end.Ends()) << "round " << round;
        ASSERT_TRUE(Eventually([] { return ::SpoolerOpenNotifications() == 0; })) << "round " << round;
    }
    enough = true;
    EXPECT_GT(GuardedProductHeap::Blocks(), 10000u);
}

} // namespace
