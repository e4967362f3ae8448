// SPDX-License-Identifier: MIT
// Many printers and many jobs at once.

#include "integration/scenarios/TallySink.h"
#include "support/com/EventSink.h"
#include "support/com/JobEvents.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductWaits.h"

#include <gmock/gmock.h>

#include <array>
#include <deque>
#include <thread>

namespace {

using testing::SizeIs;

constexpr size_t printerCount = 64;
constexpr DWORD jobsOfPrinter = 200;
constexpr size_t feederCount = 4;

/// What becomes of one label, but for its places in the queue.
const std::vector<DISPID> labelsLife{onJobStarted,  onJobStatusChanged, onJobPagesPrintedChanged,
                                     onJobSent,     onJobCompleted,     onJobStatusChanged,
                                     onJobFinalized};

std::vector<DISPID> WithoutPlaces(const TallySink::Events& events)
{
    std::vector<DISPID> ids;
    for (const TalliedEvent& event : events) {
        if (event.id != onJobPositionChanged) ids.push_back(event.id);
    }
    return ids;
}

/// Each place in the queue is told as the one after the last, from `place` on.
bool PlacesFollowEachOther(const TallySink::Events& events, long place)
{
    for (const TalliedEvent& event : events) {
        if (event.id != onJobPositionChanged) continue;
        if (event.oldValue != place || event.newValue == place) return false;
        place = event.newValue;
    }
    return place == 1; // before it left
}

/// A printer whose queue and whose every job have sinks.
struct WatchedPrinter {
    std::wstring name;
    Microsoft::WRL::ComPtr<IPrinter> printer;
    Microsoft::WRL::ComPtr<IPrintQueue> queue;
    TallySink queueTally;
    TallySink jobTally;
    std::vector<Microsoft::WRL::ComPtr<IPrintJob>> jobs;
    std::vector<Connection> connections;
};

class LoadScenario : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        for (size_t i = 0; i < printerCount; ++i) AddWatched(L"Printer " + std::to_wstring(i));
    }

    /// The call log is too short for this many calls, so the openings are known instead of counted.
    void TearDown() override
    {
        watched.clear();
        EXPECT_EQ(Product().CanUnloadNow(), S_OK);
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), printerCount);
        EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
        EXPECT_EQ(::SpoolerUnfreedNotifyBlocks(), 0u);
        SpoolerTest::TearDown();
    }

    void AddWatched(const std::wstring& name)
    {
        SpoolerPrinter simulated = LabelPrinter();
        simulated.printerName = name.c_str();
        simulated.shareName = L"";
        simulated.attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED;
        simulated.startTime = simulated.untilTime = 0;
        simulated.pace = SpoolerPace::Stepped;
        AddPrinter(simulated);
        WatchedPrinter& added = watched.emplace_back();
        added.name = name;
        added.printer = BoundPrinter(name);
        EXPECT_EQ(added.printer->get_Queue(&added.queue), S_OK);
        added.connections.emplace_back(added.queue.Get(), __uuidof(_IPrintQueueEvents), &added.queueTally);
    }

    /// Spools one job on each printer, in a batch of its own: of several that are new in one batch only the first is
    /// told as new.
    void SpoolJobs(DWORD jobId)
    {
        SpoolerJob job;
        job.jobId = jobId;
        job.bytes = "TEXT";
        job.byteCount = 4;
        job.totalPages = 1;
        for (const WatchedPrinter& printer : watched) {
            DWORD given = 0;
            EXPECT_EQ(::SpoolerAddJob(printer.name.c_str(), job, &given), 0u);
        }
        EXPECT_TRUE(waits.WaitUntilIdle());
    }

    static void WatchJobs(WatchedPrinter& printer)
    {
        for (DWORD id = 1; id <= jobsOfPrinter; ++id) {
            auto& job = printer.jobs.emplace_back(Create<IPrintJob>(__uuidof(PrintJob)));
            EXPECT_EQ(job->Initialize(NewBstr(printer.name).Get(), static_cast<long>(id)), S_OK);
            printer.connections.emplace_back(job.Get(), __uuidof(_IPrintJobEvents), &printer.jobTally);
        }
    }

    /// Does the same to all printers, on several threads.
    template <class Work>
    void WithAllPrinters(Work work)
    {
        std::vector<std::jthread> feeders;
        for (size_t feeder = 0; feeder < feederCount; ++feeder) {
            feeders.emplace_back([&, feeder] {
                for (size_t i = feeder; i < watched.size(); i += feederCount) work(watched[i]);
            });
        }
    }

    const ProductWaits waits{Product()};
    std::deque<WatchedPrinter> watched;
};

TEST_F(LoadScenario, EveryEventOfManyJobsOnManyPrintersIsToldOnceAndInOrder)
{
    for (DWORD id = 1; id <= jobsOfPrinter; ++id) SpoolJobs(id);
    for (WatchedPrinter& printer : watched) WatchJobs(printer);
    WithAllPrinters([](WatchedPrinter& printer) { ::SpoolerStep(printer.name.c_str(), spoolerAllSteps, nullptr); });
    ASSERT_TRUE(waits.WaitUntilIdle());

    std::vector<DISPID> queuesLife{onJobNew};
    queuesLife.insert(queuesLife.end(), labelsLife.begin(), labelsLife.end());
    for (WatchedPrinter& printer : watched) {
        const auto queueEvents = printer.queueTally.Take();
        const auto jobEvents = printer.jobTally.Take();
        ASSERT_THAT(queueEvents, SizeIs(jobsOfPrinter));
        ASSERT_THAT(jobEvents, SizeIs(jobsOfPrinter));
        for (const auto& [id, events] : queueEvents) {
            ASSERT_EQ(WithoutPlaces(events), queuesLife) << "job " << id;
            ASSERT_TRUE(PlacesFollowEachOther(events, 0)) << "job " << id;
        }
        for (const auto& [id, events] : jobEvents) {
            ASSERT_EQ(WithoutPlaces(events), labelsLife) << "job " << id;
            ASSERT_TRUE(PlacesFollowEachOther(events, id)) << "job " << id;
        }
    }
}

} // namespace
