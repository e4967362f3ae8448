// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

#include <chrono>

namespace {

constexpr DWORD generousMs = 60000;

class RealTimeTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        AddPrinterOfPace(SpoolerPace::RealTime);
    }

    static long long MsOf(const std::function<void()>& work)
    {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    }
};

TEST_F(RealTimeTest, AJobPrintsByItself)
{
    const Watch watch = WatchStatus();
    Print(printer, L"1", "x");
    ASSERT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0 0x2010 0x2090 0x2080 0x2084 0x2184");
}

TEST_F(RealTimeTest, AWaitingClientIsWokenByTheEngine)
{
    const Watch watch = WatchStatus();
    Print(printer, L"1", "x");
    watch.Next();
    EXPECT_EQ(::WaitForSingleObject(watch.Handle(), generousMs), DWORD{WAIT_OBJECT_0});
    SpoolerWaitUntilIdle(L"Label", generousMs);
}

TEST_F(RealTimeTest, SendingTakesTheTimeThatTheDeviceTakes)
{
    SpoolerSetPace(L"Label", SpoolerPace::RealTime, 10000);
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_BYTES_PRINTED});
    const std::string bytes(5000, 'x');
    QueueJob(L"Label", {.bytes = bytes.data(), .byteCount = 5000});
    const long long ms = MsOf([] { SpoolerWaitUntilIdle(L"Label", generousMs); });
    EXPECT_GE(ms, 500);
    EXPECT_EQ(watch.Next(), "0x0 J1.BYTES_PRINTED=5000");
}

TEST_F(RealTimeTest, TheTimeOfTheJobGrowsWhileItIsSent)
{
    SpoolerSetPrinterAttributes(L"Label", attributes | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    SpoolerSetPace(L"Label", SpoolerPace::RealTime, 2000);
    const std::string bytes(3000, 'x');
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_TIME});
    const DWORD jobId = QueueJob(L"Label", {.bytes = bytes.data(), .byteCount = 3000});
    SpoolerWaitUntilIdle(L"Label", generousMs);
    EXPECT_EQ((ReadJob<JOB_INFO_2W>(printer, jobId, 2)->Time), 1500u);
    EXPECT_EQ(watch.Next(), "0x0 J1.TIME=1");
}

TEST_F(RealTimeTest, AJobThatIsDeletedOnItsWayLeaves)
{
    SpoolerSetPace(L"Label", SpoolerPace::RealTime, 1);
    const DWORD jobId = Print(printer, L"1", "0123456789");
    const Watch watch = WatchStatus();
    ASSERT_EQ(::WaitForSingleObject(watch.Handle(), generousMs), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
}

TEST_F(RealTimeTest, SeveralPrintersGoOnSideBySide)
{
    SpoolerAddPrinter({.printerName = L"Other", .attributes = attributes, .pace = SpoolerPace::RealTime});
    for (const wchar_t* const name : {L"Label", L"Other"}) {
        for (int count = 0; count < 3; ++count) QueueJob(name);
    }
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Other", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 3u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Other"), 3u);
}

TEST_F(RealTimeTest, APrinterThatGoesAwayOnTheWayIsForgotten)
{
    SpoolerSetPace(L"Label", SpoolerPace::RealTime, 1);
    Print(printer, L"1", "0123456789");
    SpoolerRemovePrinter(L"Label");
    SpoolerAddPrinter({.printerName = L"Label", .attributes = attributes, .pace = SpoolerPace::RealTime});
    QueueJob(L"Label");
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
}

} // namespace
