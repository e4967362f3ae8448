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
    ::SpoolerInject({.call = SpoolerCall::GetPrinter, .error = RPC_S_SERVER_UNAVAILABLE});
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

TEST(WatchError, TellsAnErrorThatTheSystemHasNoTextFor)
{
    EXPECT_EQ((WatchError{L"it failed", 0xE0000001}.Text()), L"it failed: error 3758096385");
}

} // namespace
