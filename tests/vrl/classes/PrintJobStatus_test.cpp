// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobStatus.h"

#include "vrl/classes/JobTest.h"

namespace {

struct FlagRow {
    const char* name;
    HRESULT (IPrintJobStatus::*get)(VARIANT_BOOL*);
};

const FlagRow flagRows[] = {
    {"Spooling",                 &IPrintJobStatus::get_Spooling                },
    {"Printing",                 &IPrintJobStatus::get_Printing                },
    {"Paused",                   &IPrintJobStatus::get_Paused                  },
    {"Cancelled",                &IPrintJobStatus::get_Cancelled               },
    {"Sent",                     &IPrintJobStatus::get_Sent                    },
    {"Printed",                  &IPrintJobStatus::get_Printed                 },
    {"Completed",                &IPrintJobStatus::get_Completed               },
    {"UserInterventionRequired", &IPrintJobStatus::get_UserInterventionRequired},
    {"Restarted",                &IPrintJobStatus::get_Restarted               },
};

class PrintJobStatusTest : public JobTest {
protected:
    void SetUp() override
    {
        JobTest::SetUp();
        job = OpenJob(jobId);
        ASSERT_EQ(job->get_Status(&status), S_OK);
    }

    void TearDown() override
    {
        status.Reset();
        job.Reset();
        JobTest::TearDown();
    }

    std::string Flags()
    {
        std::string set;
        for (const FlagRow& row : flagRows) {
            VARIANT_BOOL value = 7;
            EXPECT_EQ((status.Get()->*row.get)(&value), S_OK) << row.name;
            EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE) << row.name;
            if (value) set += std::string(set.empty() ? "" : " ") + row.name;
        }
        return set;
    }

    std::string Text()
    {
        OBstr text;
        EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
        return FromBstr(text.Get()).nstring();
    }

    ComPtr<PrintJob> job;
    ComPtr<IPrintJobStatus> status;
};

struct StatusRow {
    DWORD status;
    const char* flags;
    const char* text;
};

const StatusRow statusRows[] = {
    {0x000, "",                                "Waiting"                           },
    {0x008, "Spooling",                        "Spooling"                          },
    {0x010, "Printing",                        "Printing"                          },
    {0x001, "Paused",                          "Paused"                            },
    {0x041, "Paused UserInterventionRequired", "Paused, User Intervention Required"},
    {0x800, "",                                ""                                  }, // Restarted is never seen
    {0x100, "Cancelled",                       "Cancelled"                         }, // of 5 pages 2 are printed
    {0x800, "",                                ""                                  },
};

TEST_F(PrintJobStatusTest, FollowsTheSpoolersNotices)
{
    for (const StatusRow& row : statusRows) {
        TellStatus(jobId, row.status);
        EXPECT_EQ(Flags(), row.flags) << std::hex << row.status;
        EXPECT_EQ(Text(), row.text) << std::hex << row.status;
    }
}

TEST_F(PrintJobStatusTest, WholeJobWasSentPrintedAndCompleted)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_ENABLE_BIDI);
    ::SpoolerSetJobPages(printerName, jobId, 5, 5);
    SpoolerJob whole = QueuedJob();
    whole.pagesPrinted = whole.totalPages;
    const auto second = OpenJob(AddJob(whole));
    ASSERT_EQ(second->get_Status(&status), S_OK);
    TellStatus(2, JOB_STATUS_COMPLETE);
    TellStatus(2, JOB_STATUS_DELETED);
    EXPECT_EQ(Flags(), "Sent Printed Completed");
    EXPECT_EQ(Text(), "Sent, Printed, Completed");
}

TEST_F(PrintJobStatusTest, NullOutPointerIsAnInvalidArgument)
{
    for (const FlagRow& row : flagRows)
        EXPECT_EQ(AnswerOf((status.Get()->*row.get)(nullptr)), invalidArgument) << row.name;
    EXPECT_EQ(AnswerOf(status->get_Text(nullptr)), invalidArgument);
}

TEST_F(JobTest, StatusThatIsNotBoundSaysSoBeforeItLooksAtTheOutPointer)
{
    const auto unbound = Make<PrintJobStatus>();
    for (const FlagRow& row : flagRows) {
        EXPECT_EQ(AnswerOf((unbound.Get()->*row.get)(nullptr)), jobStatusNotInitialized) << row.name;
    }
    EXPECT_EQ(AnswerOf(unbound->get_Text(nullptr)), jobStatusNotInitialized);
}

TEST_F(JobTest, StatusOfAJobThatHasGoneIsAnInvalidJob)
{
    const auto gone = OpenJob(4711);
    ComPtr<IPrintJobStatus> status;
    ASSERT_EQ(gone->get_Status(&status), S_OK);
    for (const FlagRow& row : flagRows) {
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(AnswerOf((status.Get()->*row.get)(&value)), invalidJob) << row.name;
    }
    OBstr text;
    EXPECT_EQ(AnswerOf(status->get_Text(text.Receive())), invalidJob);
}

TEST_F(JobTest, StatusMovesToAnotherJobWithItsParent)
{
    const auto job = OpenJob(jobId);
    ComPtr<IPrintJobStatus> status;
    ASSERT_EQ(job->get_Status(&status), S_OK);
    SpoolerJob paused = QueuedJob();
    paused.status = JOB_STATUS_PAUSED;
    EXPECT_EQ(Initialize(*job.Get(), printerName, AddJob(paused)), S_OK);
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(status->get_Paused(&value), S_OK);
    EXPECT_EQ(value, VARIANT_TRUE);
}

TEST_F(JobTest, StatusOfNothingOrOfAnUnboundJobIsNotBound)
{
    const auto status = Make<PrintJobStatus>();
    EXPECT_EQ(AnswerOf(status->Initialize(nullptr)), invalidArgument);
    const auto unbound = Make<PrintJob>();
    EXPECT_EQ(AnswerOf(status->Initialize(unbound.Get())), jobNotInitialized);
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(AnswerOf(status->get_Paused(&value)), jobStatusNotInitialized);
}

TEST_F(JobTest, StatusThatCannotBeBoundAgainLetsGoOfItsJobAndKeepsItsPrinter)
{
    auto job = OpenJob(jobId);
    const auto status = Make<PrintJobStatus>();
    ASSERT_EQ(status->Initialize(job.Get()), S_OK);
    job.Reset();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    const auto unbound = Make<PrintJob>();
    EXPECT_EQ(AnswerOf(status->Initialize(unbound.Get())), jobNotInitialized);
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(AnswerOf(status->get_Paused(&value)), jobStatusNotInitialized);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

} // namespace
