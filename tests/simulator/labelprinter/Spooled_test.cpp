// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"

#include "foundation/OHandle.h"
#include "spooler/SpoolerControl.h"

namespace {

using PrinterHandle = OHandle<::ClosePrinter>;

/// The device behind a port of the simulated spooler, which prints a step at a time.
class SpooledTest : public LabelPrinterTest {
protected:
    void SetUp() override
    {
        LabelPrinterTest::SetUp();
        ::SpoolerReset();
        ASSERT_EQ(::SpoolerAddPort({.name = L"NET1", .device = L"labelprinter.dll"}), 0u);
        ASSERT_EQ(::SpoolerAddPrinter({.printerName = printerName, .portName = L"NET1", .pace = SpoolerPace::Stepped}),
                  0u);
    }

    void TearDown() override
    {
        ::SpoolerReset();
        LabelPrinterTest::TearDown();
    }

    static DWORD Queue(std::string_view bytes)
    {
        DWORD jobId = 0;
        const SpoolerJob job{.bytes = bytes.data(), .byteCount = static_cast<DWORD>(bytes.size())};
        EXPECT_EQ(::SpoolerAddJob(printerName, job, &jobId), 0u);
        return jobId;
    }

    static DWORD Step(DWORD steps = spoolerAllSteps)
    {
        DWORD done = 0;
        EXPECT_EQ(::SpoolerStep(printerName, steps, &done), 0u);
        return done;
    }

    static std::vector<BYTE> Peek(DWORD jobId)
    {
        DWORD needed = 0;
        ::SpoolerPeekJob(printerName, jobId, nullptr, 0, &needed);
        std::vector<BYTE> bytes(needed);
        EXPECT_EQ(::SpoolerPeekJob(printerName, jobId, bytes.data(), needed, &needed), 0u);
        return bytes;
    }
};

TEST_F(SpooledTest, LabelsOfAJobArePrintedOneByOneAndVerified)
{
    Set(L"verifier", L"yes");
    const DWORD jobId = Queue("LABEL 100x60\nPRINT 3\nPRINT 2\n");
    Step(2);
    EXPECT_EQ(Job(jobId).labelsPrinted, 1u);
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Printing);
    Step();
    EXPECT_EQ(Job(jobId).labelsPrinted, 5u);
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Verified);
    EXPECT_EQ(Get(L"distance"), L"300");
    EXPECT_EQ(::SpoolerDeliveryCount(printerName), 1u);
}

TEST_F(SpooledTest, AJobWaitsForRibbonAndGoesOn)
{
    Set(L"ribbon", L"2");
    const DWORD jobId = Queue("PRINT 3\n");
    Step();
    const std::vector<BYTE> bytes = Peek(jobId);
    const auto& job = *reinterpret_cast<const JOB_INFO_2W*>(bytes.data());
    EXPECT_EQ(job.Status & (JOB_STATUS_ERROR | JOB_STATUS_USER_INTERVENTION),
              DWORD{JOB_STATUS_ERROR | JOB_STATUS_USER_INTERVENTION});
    EXPECT_STREQ(job.pStatus, L"Ribbon Out");
    EXPECT_EQ(job.PagesPrinted, 2u);
    EXPECT_EQ(job.TotalPages, 3u);
    Set(L"ribbon", L"endless");
    Step();
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Completed);
}

TEST_F(SpooledTest, TheStepThatUsesUpTheRibbonShowsIt)
{
    Set(L"ribbon", L"1");
    Queue("PRINT 1\n");
    Step(2);
    DWORD needed = 0;
    ::SpoolerPeekPrinter(printerName, nullptr, 0, &needed);
    std::vector<BYTE> bytes(needed);
    EXPECT_EQ(::SpoolerPeekPrinter(printerName, bytes.data(), needed, &needed), 0u);
    EXPECT_EQ(reinterpret_cast<const PRINTER_INFO_2W*>(bytes.data())->Status, DWORD{PRINTER_STATUS_NO_TONER});
}

TEST_F(SpooledTest, AJobWithoutRibbonIsThrownAwayIfTheDeviceIsToCancel)
{
    Set(L"ribbon", L"2");
    Set(L"on error", L"cancel");
    const DWORD jobId = Queue("PRINT 3\n");
    Step();
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Job(jobId).labelsPrinted, 2u);
    EXPECT_EQ(::SpoolerJobBytes(printerName, jobId, nullptr, 0), 0u) << "it has left the queue";
}

TEST_F(SpooledTest, AJobThatIsDeletedHasFailed)
{
    const DWORD jobId = Queue("PRINT 3\n");
    Step(2);
    HANDLE handle = nullptr;
    ASSERT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), &handle, nullptr));
    const PrinterHandle printer(handle);
    EXPECT_TRUE(::SetJobW(handle, jobId, 0, nullptr, JOB_CONTROL_DELETE));
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Step(), 1u);
}

TEST_F(SpooledTest, AJobWhoseDeviceIsTakenAwayIsLost)
{
    const DWORD jobId = Queue("PRINT 3\n");
    Step(2);
    ::LabelPrinterRemove(printerName);
    Step();
    const std::vector<BYTE> bytes = Peek(jobId);
    EXPECT_STREQ(reinterpret_cast<const JOB_INFO_2W*>(bytes.data())->pStatus,
                 L"The device has refused or lost the job, error 6");
    ::LabelPrinterAdd(printerName);
}

TEST_F(SpooledTest, ADisconnectedDeviceIsWaitedFor)
{
    Set(L"connection", L"disconnected");
    const DWORD jobId = Queue("PRINT 1\n");
    Step();
    EXPECT_STREQ(reinterpret_cast<const JOB_INFO_2W*>(Peek(jobId).data())->pStatus, L"Offline");
    Set(L"connection", L"connected");
    Step();
    EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Completed);
}

TEST_F(SpooledTest, APrinterThatIsRemovedTakesItsDeviceAlong)
{
    ::SpoolerRemovePrinter(printerName);
    EXPECT_EQ(::LabelPrinterGet(printerName, L"media", nullptr, 0), DWORD{ERROR_INVALID_PRINTER_NAME});
    ::LabelPrinterAdd(printerName);
}

} // namespace
