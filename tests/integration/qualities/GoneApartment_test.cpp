// SPDX-License-Identifier: MIT
#include "support/com/ApartmentThread.h"
#include "support/com/EventSink.h"
#include "support/com/JobEvents.h"
#include "support/com/RecordingSink.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductWaits.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using testing::SizeIs;

/// A printer object of the apartment of many threads, whose queue a client in a single-threaded one listens to.
class GoneApartment : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        many.Run([&] {
            printer = BoundPrinter();
            EXPECT_EQ(printer->get_Queue(&queue), S_OK);
        });
    }

    void TearDown() override
    {
        many.Run([&] {
            queue.Reset();
            printer.Reset();
        });
        IntegrationTest::TearDown();
    }

    /// The queue as the client's apartment has it.
    void PassQueue(ComPtr<IPrintQueue>& passed)
    {
        ComPtr<IStream> stream;
        many.Run([&] {
            EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(__uuidof(IPrintQueue), queue.Get(), &stream), S_OK);
        });
        single->Run([&] {
            EXPECT_EQ(::CoGetInterfaceAndReleaseStream(stream.Detach(), __uuidof(IPrintQueue), Address(passed)), S_OK);
        });
    }

    const ProductWaits waits{Product()};
    ApartmentThread many{COINIT_MULTITHREADED};
    std::unique_ptr<ApartmentThread> single = std::make_unique<ApartmentThread>(COINIT_APARTMENTTHREADED);
    ComPtr<IPrinter> printer;
    ComPtr<IPrintQueue> queue;
};

TEST_F(GoneApartment, SinkOfAnApartmentThatHasGoneIsPassedOverAndTheOthersHearEverything)
{
    const auto gone = RecordingSink::Create(__uuidof(_IPrintQueueEvents));
    const auto stays = RecordingSink::Create(__uuidof(_IPrintQueueEvents));
    ComPtr<IPrintQueue> passed;
    PassQueue(passed);
    single->Run([&] { Connection(passed.Get(), __uuidof(_IPrintQueueEvents), gone.Get()).Forget(); });
    Connection connection;
    many.Run([&] { connection = Connection(queue.Get(), __uuidof(_IPrintQueueEvents), stays.Get()); });
    EXPECT_EQ(connection.Result(), S_OK);

    const DWORD jobId = AddJob({});
    EXPECT_TRUE(gone->WaitForCall());
    EXPECT_EQ(gone->Calls().front().threadId, single->Id());
    EXPECT_TRUE(waits.WaitUntilIdle());
    const size_t heard = gone->Calls().size();
    EXPECT_THAT(stays->Calls(), SizeIs(heard));

    single->Run([&] { passed.Reset(); });
    single.reset(); // without a word to the product
    ::SpoolerDeliverJob(printerName, jobId);
    EXPECT_TRUE(waits.WaitUntilIdle());
    EXPECT_THAT(gone->Calls(), SizeIs(heard));
    EXPECT_EQ(stays->Calls().back().id, onJobFinalized);
    many.Run([&] { connection.Close(); });
}

} // namespace
