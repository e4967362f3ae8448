// SPDX-License-Identifier: MIT
#include "recorder/PrinterWatch.h"

#include "spooler/SpoolerControl.h"

#include <gmock/gmock.h>

namespace {

class PrinterWatchTest : public ::testing::Test {
protected:
    void SetUp() override { ::SpoolerReset(); }
    void TearDown() override { ::SpoolerReset(); }

    /// Why watching that printer fails; empty if it doesn't.
    static std::wstring ErrorOf(const wchar_t* printerName)
    {
        try {
            PrinterWatch watch(printerName);
            return {};
        } catch (const WatchError& error) {
            return error.Text();
        }
    }
};

TEST_F(PrinterWatchTest, TellsThatThePrinterIsUnknown)
{
    const std::wstring error = ErrorOf(L"Nowhere");
    EXPECT_THAT(error, ::testing::StartsWith(L"the printer can't be opened: "));
    EXPECT_THAT(error, ::testing::EndsWith(L" (1801)"));
}

TEST_F(PrinterWatchTest, TellsThatThePrinterCannotBeRead)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    ::SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = RPC_S_SERVER_UNAVAILABLE});
    EXPECT_THAT(ErrorOf(L"Label"), ::testing::AllOf(::testing::StartsWith(L"the printer can't be read: "),
                                                    ::testing::EndsWith(L" (1722)")));
    EXPECT_EQ(::SpoolerOpenHandles(L"Label"), 0u);
}

TEST_F(PrinterWatchTest, TellsThatNotificationsAreNotToBeHad)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    ::SpoolerInject({.call = SpoolerCall::FindFirstPrinterChangeNotification, .error = ERROR_NOT_SUPPORTED});
    EXPECT_THAT(ErrorOf(L"Label"), ::testing::AllOf(::testing::StartsWith(L"the printer's changes can't be watched: "),
                                                    ::testing::EndsWith(L" (50)")));
    EXPECT_EQ(::SpoolerOpenHandles(L"Label"), 0u);
}

TEST_F(PrinterWatchTest, TellsWhatIsWatched)
{
    ::SpoolerAddPrinter({.printerName = L"Label", .driverName = L"Label 203 dpi"});
    const PrinterWatch watch(L"Label");
    const RecordingHeader& header = watch.Header();
    EXPECT_EQ(header.printer, L"Label");
    EXPECT_EQ(header.driver, L"Label 203 dpi");
    EXPECT_THAT(header.system, ::testing::StartsWith(L"Windows "));
    EXPECT_GE(header.begun.wYear, 2024);
    EXPECT_EQ(header.filter, DWORD{PRINTER_CHANGE_ALL});
    EXPECT_THAT(header.printerFields, ::testing::Contains(PRINTER_NOTIFY_FIELD_STATUS));
    EXPECT_THAT(header.printerFields, ::testing::Not(::testing::Contains(PRINTER_NOTIFY_FIELD_TOTAL_PAGES)));
    EXPECT_THAT(header.jobFields, ::testing::Contains(JOB_NOTIFY_FIELD_BYTES_PRINTED));
}

TEST_F(PrinterWatchTest, GivesBackWhatItOpened)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    {
        PrinterWatch watch(L"Label");
        ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
        watch.Next(nullptr, 0);
        EXPECT_EQ(::SpoolerOpenNotifications(), 1u);
    }
    EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u);
    EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
    EXPECT_EQ(::SpoolerUnfreedNotifyBlocks(), 0u);
}

TEST_F(PrinterWatchTest, GivesEachBatchWithItsTime)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    PrinterWatch watch(L"Label");
    ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    const auto first = watch.Next(nullptr, 0);
    ASSERT_TRUE(first && first->info);
    EXPECT_EQ(first->change, DWORD{PRINTER_CHANGE_SET_PRINTER});
    ASSERT_EQ(first->info->entries.size(), 1u);
    EXPECT_EQ(first->info->entries[0].field, PRINTER_NOTIFY_FIELD_STATUS);
    EXPECT_FALSE(first->refresh);

    ::SpoolerSetPrinterStatus(L"Label", 0);
    const auto second = watch.Next(nullptr, 0);
    ASSERT_TRUE(second);
    EXPECT_GE(second->microseconds, first->microseconds);
}

TEST_F(PrinterWatchTest, WaitsForABatchUntilTheTimeIsOver)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    PrinterWatch watch(L"Label");
    EXPECT_FALSE(watch.Next(nullptr, 0));
    EXPECT_FALSE(watch.Next(nullptr, 1));
}

TEST_F(PrinterWatchTest, CanBeStoppedEvenIfBatchesWait)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    PrinterWatch watch(L"Label");
    ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    const OWaitHandle stop(::CreateEventW(nullptr, TRUE, TRUE, nullptr));
    EXPECT_FALSE(watch.Next(stop.Get(), INFINITE));
}

TEST_F(PrinterWatchTest, AsksForAllValuesOnceChangesWereLost)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    PrinterWatch watch(L"Label");
    ::SpoolerLoseNotifications(L"Label");
    const auto lost = watch.Next(nullptr, 0);
    ASSERT_TRUE(lost && lost->info);
    EXPECT_EQ(lost->info->flags, DWORD{PRINTER_NOTIFY_INFO_DISCARDED});
    const auto refreshed = watch.Next(nullptr, 0);
    ASSERT_TRUE(refreshed && refreshed->info);
    EXPECT_TRUE(refreshed->refresh);
    EXPECT_GT(refreshed->info->entries.size(), 10u);

    ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    const auto later = watch.Next(nullptr, 0);
    ASSERT_TRUE(later);
    EXPECT_FALSE(later->refresh);
}

TEST_F(PrinterWatchTest, TellsThatChangesCannotBeRead)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    PrinterWatch watch(L"Label");
    ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    ::SpoolerInject({.call = SpoolerCall::FindNextPrinterChangeNotification, .error = RPC_S_SERVER_UNAVAILABLE});
    try {
        watch.Next(nullptr, 0);
        ADD_FAILURE() << "it should have failed";
    } catch (const WatchError& error) {
        EXPECT_EQ(error.action, L"the printer's changes can't be read");
        EXPECT_EQ(error.code, DWORD{RPC_S_SERVER_UNAVAILABLE});
    }
}

TEST(WatchError, TellsAnErrorThatTheSystemHasNoTextFor)
{
    EXPECT_EQ((WatchError{L"it failed", 0xE0000001}.Text()), L"it failed: error 3758096385");
}

} // namespace
