// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using ChangeNotificationsTest = SimulatorTest;

TEST_F(ChangeNotificationsTest, AreNotSupportedYet)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    ::SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(::FindFirstPrinterChangeNotification(printer.Get(), PRINTER_CHANGE_JOB, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
    EXPECT_EQ(SpoolerOpenNotifications(), 0u);
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
}

TEST_F(ChangeNotificationsTest, AskingForNothingFailsWithInvalidParameter)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    EXPECT_EQ(::FindFirstPrinterChangeNotification(printer.Get(), 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(ChangeNotificationsTest, AnInvalidPrinterHandleFailsWithInvalidHandle)
{
    EXPECT_EQ(::FindFirstPrinterChangeNotification(nullptr, PRINTER_CHANGE_JOB, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(ChangeNotificationsTest, UnknownNotificationsFailWithInvalidHandle)
{
    DWORD change = 0xFFFFFFFF;
    void* info = &change;
    EXPECT_FALSE(::FindNextPrinterChangeNotification(INVALID_HANDLE_VALUE, &change, nullptr, &info));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(change, 0u);
    EXPECT_EQ(info, nullptr);
    EXPECT_FALSE(::FindClosePrinterChangeNotification(INVALID_HANDLE_VALUE));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(ChangeNotificationsTest, ABlockThatWasNotGivenOutCannotBeFreed)
{
    PRINTER_NOTIFY_INFO info = {};
    EXPECT_FALSE(::FreePrinterNotifyInfo(&info));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_FALSE(::FreePrinterNotifyInfo(nullptr));
}

} // namespace
