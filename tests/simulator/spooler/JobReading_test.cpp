// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <cstring>

namespace {

class JobReadingTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerSetIdentity(L"jane", L"DEPOT");
        SpoolerAddPrinter({.printerName = L"Label", .driverName = L"Driver"});
        printer = Open(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    std::vector<DWORD> Numbers(DWORD first, DWORD most)
    {
        const auto jobs = ReadJobs<JOB_INFO_3>(printer, 3, first, most);
        std::vector<DWORD> numbers;
        for (DWORD index = 0; index < jobs.count; ++index) numbers.push_back(jobs[index].JobId);
        return numbers;
    }

    PrinterHandle printer;
};

SpoolerJob FullJob(const DEVMODEW& devMode)
{
    return {
        .jobId = 42,
        .machineName = L"\\\\GATE3",
        .userName = L"joe",
        .document = L"Pallet",
        .notifyName = L"jim",
        .datatype = L"TEXT",
        .printProcessor = L"proc",
        .parameters = L"p=1",
        .devMode = &devMode,
        .statusText = L"Waiting for ribbon",
        .status = JOB_STATUS_PAPEROUT,
        .priority = 33,
        .startTime = 60,
        .untilTime = 120,
        .totalPages = 10,
        .pagesPrinted = 3,
        .submitted = {2024, 5, 0, 6, 7, 8, 9, 10},
        .time = 1234,
        .bytes = "TEXT 1,1",
        .byteCount = 6
    };
}

TEST_F(JobReadingTest, Level2TellsAllFields)
{
    const DEVMODEW devMode = LabelDevMode();
    const SpoolerJob given = FullJob(devMode);
    QueueJob(L"Label", given);
    const auto job = ReadJob<JOB_INFO_2W>(printer, 42, 2);
    EXPECT_EQ(job->JobId, 42u);
    EXPECT_EQ(Text(job->pPrinterName), L"Label");
    EXPECT_EQ(Text(job->pMachineName), L"\\\\GATE3");
    EXPECT_EQ(Text(job->pUserName), L"joe");
    EXPECT_EQ(Text(job->pDocument), L"Pallet");
    EXPECT_EQ(Text(job->pNotifyName), L"jim");
    EXPECT_EQ(Text(job->pDatatype), L"TEXT");
    EXPECT_EQ(Text(job->pPrintProcessor), L"proc");
    EXPECT_EQ(Text(job->pParameters), L"p=1");
    EXPECT_EQ(Text(job->pDriverName), L"Driver");
    EXPECT_EQ(Text(job->pStatus), L"Waiting for ribbon");
    EXPECT_EQ(job->pSecurityDescriptor, nullptr);
    EXPECT_EQ(job->Status, DWORD{JOB_STATUS_PAPEROUT});
    EXPECT_EQ(job->Priority, 33u);
    EXPECT_EQ(job->Position, 1u);
    EXPECT_EQ(job->StartTime, 60u);
    EXPECT_EQ(job->UntilTime, 120u);
    EXPECT_EQ(job->TotalPages, 10u);
    EXPECT_EQ(job->PagesPrinted, 3u);
    EXPECT_EQ(job->Size, 6u);
    EXPECT_EQ(job->Time, 1234u);
    EXPECT_EQ(std::memcmp(&job->Submitted, &given.submitted, sizeof given.submitted), 0);
    EXPECT_EQ(std::memcmp(job->pDevMode, &devMode, sizeof devMode), 0);
}

TEST_F(JobReadingTest, Level1TellsTheGeneralFields)
{
    const DEVMODEW devMode = LabelDevMode();
    const SpoolerJob given = FullJob(devMode);
    QueueJob(L"Label", given);
    const auto job = ReadJob<JOB_INFO_1W>(printer, 42, 1);
    EXPECT_EQ(job->JobId, 42u);
    EXPECT_EQ(Text(job->pPrinterName), L"Label");
    EXPECT_EQ(Text(job->pMachineName), L"\\\\GATE3");
    EXPECT_EQ(Text(job->pUserName), L"joe");
    EXPECT_EQ(Text(job->pDocument), L"Pallet");
    EXPECT_EQ(Text(job->pDatatype), L"TEXT");
    EXPECT_EQ(Text(job->pStatus), L"Waiting for ribbon");
    EXPECT_EQ(job->Status, DWORD{JOB_STATUS_PAPEROUT});
    EXPECT_EQ(job->Priority, 33u);
    EXPECT_EQ(job->Position, 1u);
    EXPECT_EQ(job->TotalPages, 10u);
    EXPECT_EQ(job->PagesPrinted, 3u);
    EXPECT_EQ(std::memcmp(&job->Submitted, &given.submitted, sizeof given.submitted), 0);
}

TEST_F(JobReadingTest, Level3TellsTheNextJobOfAChain)
{
    const DWORD first = QueueJob(L"Label");
    const DWORD second = QueueJob(L"Label");
    JOB_INFO_3 link = {first, second, 0};
    ASSERT_TRUE(::SetJobW(printer.Get(), first, 3, reinterpret_cast<BYTE*>(&link), 0));
    const auto job = ReadJob<JOB_INFO_3>(printer, first, 3);
    EXPECT_EQ(job->JobId, first);
    EXPECT_EQ(job->NextJobId, second);
    EXPECT_EQ(ReadJob<JOB_INFO_3>(printer, second, 3)->NextJobId, 0u);
}

TEST_F(JobReadingTest, AJobWithoutAStatusTextHasANullOne)
{
    const DWORD jobId = QueueJob(L"Label");
    EXPECT_EQ(ReadJob<JOB_INFO_2W>(printer, jobId, 2)->pStatus, nullptr);
}

TEST_F(JobReadingTest, WithoutABufferEveryLevelFailsWithInsufficientBuffer)
{
    const DWORD jobId = QueueJob(L"Label");
    for (const DWORD level : {1, 2, 3}) {
        DWORD needed = 0;
        EXPECT_FALSE(::GetJobW(printer.Get(), jobId, level, nullptr, 0, &needed)) << level;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER}) << level;
        EXPECT_GT(needed, 0u) << level;
    }
}

TEST_F(JobReadingTest, OtherLevelsFail)
{
    const DWORD jobId = QueueJob(L"Label");
    DWORD needed = 0;
    DWORD returned = 0;
    for (const DWORD level : {0, 4, 5}) {
        EXPECT_EQ(ErrorOf(::GetJobW(printer.Get(), jobId, level, nullptr, 0, &needed)), DWORD{ERROR_INVALID_LEVEL});
        EXPECT_EQ(ErrorOf(::EnumJobsW(printer.Get(), 0, 1, level, nullptr, 0, &needed, &returned)),
                  DWORD{ERROR_INVALID_LEVEL});
    }
}

TEST_F(JobReadingTest, AnUnknownJobFailsWithInvalidParameterAndNoSize)
{
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(::GetJobW(printer.Get(), 42, 2, nullptr, 0, &needed)), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(needed, 0u);
}

TEST_F(JobReadingTest, EnumerationFollowsTheQueue)
{
    for (const DWORD jobId : {30, 10, 20}) QueueJob(L"Label", {.jobId = jobId});
    EXPECT_EQ(Numbers(0, 0xFFFFFFFF), (std::vector<DWORD>{30, 10, 20}));
    const auto jobs = ReadJobs<JOB_INFO_1W>(printer, 1);
    ASSERT_EQ(jobs.count, 3u);
    for (const DWORD index : {0, 1, 2}) EXPECT_EQ(jobs[index].Position, index + 1);
}

TEST_F(JobReadingTest, EnumerationTakesAPieceOfTheQueue)
{
    for (const DWORD jobId : {1, 2, 3, 4}) QueueJob(L"Label", {.jobId = jobId});
    EXPECT_EQ(Numbers(1, 2), (std::vector<DWORD>{2, 3}));
    EXPECT_EQ(Numbers(3, 5), (std::vector<DWORD>{4}));
    EXPECT_EQ(Numbers(4, 1), std::vector<DWORD>{});
    EXPECT_EQ(Numbers(0xFFFFFFFF, 0xFFFFFFFF), std::vector<DWORD>{});
}

TEST_F(JobReadingTest, AnEmptyQueueSucceedsWithNothing)
{
    const auto jobs = ReadJobs<JOB_INFO_2W>(printer, 2);
    EXPECT_TRUE(jobs.sized);
    EXPECT_EQ(jobs.bytes.size(), 0u);
    EXPECT_EQ(jobs.count, 0u);
}

TEST_F(JobReadingTest, EnumerationWithoutABufferTellsTheSize)
{
    QueueJob(L"Label");
    const auto jobs = ReadJobs<JOB_INFO_2W>(printer, 2);
    EXPECT_FALSE(jobs.sized);
    EXPECT_EQ(jobs.error, DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(jobs.count, 1u);
}

TEST_F(JobReadingTest, JobsOfOtherPrintersAreUnknown)
{
    SpoolerAddPrinter({.printerName = L"Other"});
    QueueJob(L"Other", {.jobId = 5});
    DWORD needed = 0;
    EXPECT_EQ(ErrorOf(::GetJobW(printer.Get(), 5, 2, nullptr, 0, &needed)), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
}

TEST_F(JobReadingTest, AReportedSizeStandsForTheDocuments)
{
    const DWORD jobId = QueueJob(L"Label", {.bytes = "abc", .byteCount = 3, .reportedSize = 1000});
    EXPECT_EQ(ReadJob<JOB_INFO_2W>(printer, jobId, 2)->Size, 1000u);
    SpoolerSetJobSize(L"Label", jobId, 0);
    EXPECT_EQ(ReadJob<JOB_INFO_2W>(printer, jobId, 2)->Size, 3u);
}

} // namespace
