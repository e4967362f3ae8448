// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/product/JobClientTest.h"

#include <gmock/gmock.h>

// Job numbers that there are not, and notices that no spooler should send.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Job numbers

class UnknownJobNumber : public JobClientTest, public ::testing::WithParamInterface<DWORD> {};

TEST_P(UnknownJobNumber, IsBoundAndHasNoDetails)
{
    const auto job = OpenJob(GetParam());
    long number = 0;
    OwnedBstr text;
    EXPECT_EQ(AnswerOf(job->get_JobId(&number)), succeeded);
    EXPECT_EQ(static_cast<DWORD>(number), GetParam());
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_PrinterName), L"Label");
    EXPECT_EQ(AnswerOf(job->get_Name(text.Receive())), invalidJob);
    EXPECT_EQ(AnswerOf(job->get_TotalPages(&number)), invalidJob);
    EXPECT_EQ(AnswerOf(job->put_NotifyUser(NewBstr(L"Eva").Get())), invalidJob);
    EXPECT_EQ(AnswerOf(StatusOf(*job.Get())->get_Text(text.Receive())), invalidJob);
    EXPECT_EQ(AnswerOf(ScheduleOf(*job.Get())->get_Priority(&number)), invalidJob);
}

TEST_P(UnknownJobNumber, IsControlledInVain)
{
    const auto job = OpenJob(GetParam());
    EXPECT_EQ(AnswerOf(job->Cancel()), succeeded);
    EXPECT_EQ(AnswerOf(job->Pause()), succeeded);
    EXPECT_EQ(AnswerOf(job->Resume()), succeeded);
    EXPECT_EQ(AnswerOf(job->Restart()), succeeded);
    EXPECT_EQ(LastCall(SpoolerCall::SetJobW).jobId, GetParam());
    EXPECT_EQ(LastCall(SpoolerCall::SetJobW).result, static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST_P(UnknownJobNumber, HearsItsVerdictIfTheSpoolerTellsOne)
{
    const auto job = OpenJob(GetParam());
    const Connection sink = Watch(*job.Get(), "job");
    const Lines heard = Tell({Status(GetParam(), JOB_STATUS_DELETED)});
    ASSERT_EQ(heard.size(), 4u);
    EXPECT_THAT(heard.back(), ::testing::StartsWith("job: OnJobFinalized(job "));
}

INSTANTIATE_TEST_SUITE_P(Number, UnknownJobNumber, ::testing::Values(0, 2, 4711, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF));

// Notices

struct BadNotice {
    const char* name;
    SpoolerNotifyEntry entry;

    friend std::ostream& operator<<(std::ostream& stream, const BadNotice& row) { return stream << row.name; }
};

const BadNotice badNotices[] = {
    {"UnknownType",         {.type = 2, .id = 1, .number = JOB_STATUS_ERROR}                            },
    {"HighestType",         {.type = 0xFFFF, .field = 0xFFFF, .id = 1, .number = 0xFFFFFFFF}            },
    {"UnknownJobField",     {.field = 24, .id = 1, .number = 7}                                         },
    {"HighestJobField",     {.field = 0xFFFF, .id = 1, .number = 7}                                     },
    {"FieldNobodyAskedFor", {.field = JOB_NOTIFY_FIELD_DOCUMENT, .id = 1, .text = L"Pallet 8"}          },
    {"NullText",            {.field = JOB_NOTIFY_FIELD_DOCUMENT, .id = 1}                               },
    {"NullDevMode",         {.field = JOB_NOTIFY_FIELD_DEVMODE, .id = 1}                                },
    {"Job0Status",          {.field = JOB_NOTIFY_FIELD_STATUS, .id = 0, .number = JOB_STATUS_PRINTING}  },
    {"Job0Number",          {.field = JOB_NOTIFY_FIELD_PRIORITY, .id = 0, .number = 50}                 },
    {"HighestJobNumber",    {.field = JOB_NOTIFY_FIELD_TOTAL_PAGES, .id = 0xFFFFFFFF, .number = 50}     },
    {"UnknownPrinterField", {.type = PRINTER_NOTIFY_TYPE, .field = 0x1C, .number = 7}                   },
    {"NullPrinterName",     {.type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_PRINTER_NAME}   },
    {"NullPrinterText",     {.type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_LOCATION}       },
    {"PrinterEntryOfAJob",  {.type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_STATUS, .id = 1}},
};

class BadNotices : public JobClientTest, public ::testing::WithParamInterface<BadNotice> {};

TEST_P(BadNotices, CostThemselvesAndNothingElse)
{
    const auto job = OpenJob(jobId);
    const Connection sink = Watch(*job.Get(), "job");
    EXPECT_THAT(Tell({
                    GetParam().entry,
                    Status(jobId, JOB_STATUS_PAUSED),
                    GetParam().entry,
                    {.field = JOB_NOTIFY_FIELD_PRIORITY, .id = jobId, .number = 50},
                    GetParam().entry
    }),
                ElementsAre("job: OnJobPaused(job 1)", "job: OnJobStatusChanged(job 1, status 'Paused')",
                            "job: OnJobPriorityChanged(job 1, 9, 50)"));
    EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Pallet 7");
}

INSTANTIATE_TEST_SUITE_P(Each, BadNotices, ::testing::ValuesIn(badNotices), rowName);

class OddBatches : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        queue = QueueOf(*BoundPrinter().Get());
        sink = Watch(*queue.Get(), "queue");
    }

    void TearDown() override
    {
        EXPECT_THAT(Tell({Status(jobId, JOB_STATUS_DELETED)}), ::testing::Contains("queue: OnJobFinalized(job 1)"))
            << "the thread has stopped";
        sink.Close();
        queue.Reset();
        JobClientTest::TearDown();
    }

    ComPtr<IPrintQueue> queue;
    Connection sink;
};

TEST_F(OddBatches, WithoutEntriesSayNothing)
{
    EXPECT_THAT(Tell({}, PRINTER_CHANGE_ADD_JOB), IsEmpty());
}

TEST_F(OddBatches, WithoutABlockSayNothing)
{
    SpoolerNotifyBatch bare;
    bare.change = 0xFFFFFFFF;
    bare.withBlock = false;
    EXPECT_EQ(::SpoolerQueueBatch(printerName, bare), 0u);
    EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(OddBatches, OfWhichSomethingWasDiscardedAreReadLikeOthers)
{
    const SpoolerNotifyEntry paused = Status(jobId, JOB_STATUS_PAUSED);
    SpoolerNotifyBatch batch;
    batch.flags = PRINTER_NOTIFY_INFO_DISCARDED;
    batch.entries = &paused;
    batch.count = 1;
    EXPECT_EQ(::SpoolerQueueBatch(printerName, batch), 0u);
    EXPECT_THAT(Heard(), ElementsAre("queue: OnJobPaused(job 1)", "queue: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(OddBatches, WithThousandsOfStatusesOfUnknownBitsAreReadToTheirEnd)
{
    std::vector<SpoolerNotifyEntry> entries(10000, Status(jobId, 0xFFFFE000));
    entries.push_back(Status(jobId, JOB_STATUS_PAUSED));
    EXPECT_THAT(Tell(entries),
                ElementsAre("queue: OnJobPaused(job 1)", "queue: OnJobStatusChanged(job 1, status 'Paused')"));
}

TEST_F(OddBatches, WithNewsOfTheSameJobTwiceTellOfOneNewJob)
{
    EXPECT_THAT(Tell({Status(jobId, 0), Status(jobId, 0)}, PRINTER_CHANGE_ADD_JOB),
                ElementsAre("queue: OnJobNew(job 1)"));
    EXPECT_THAT(Tell({Status(jobId, 0)}, PRINTER_CHANGE_ADD_JOB), IsEmpty());
}

} // namespace
