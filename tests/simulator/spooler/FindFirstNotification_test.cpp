// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

namespace {

class FindFirstNotificationTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
    }

    /// The error of asking with these options; ERROR_SUCCESS if they do.
    DWORD ErrorOfOptions(PRINTER_NOTIFY_OPTIONS options, DWORD filter = PRINTER_CHANGE_JOB) const
    {
        const ChangeHandle handle(::FindFirstPrinterChangeNotification(printer.Get(), filter, 0, &options));
        return handle ? ERROR_SUCCESS : ::GetLastError();
    }

    DWORD ErrorOfTypes(std::vector<PRINTER_NOTIFY_OPTIONS_TYPE> types) const
    {
        return ErrorOfOptions({2, 0, static_cast<DWORD>(types.size()), types.data()});
    }

    DWORD ErrorOfCategory(DWORD category) const
    {
        const ChangeHandle handle(
            ::FindFirstPrinterChangeNotification(printer.Get(), PRINTER_CHANGE_JOB, category, nullptr));
        return handle ? ERROR_SUCCESS : ::GetLastError();
    }

    PrinterHandle printer;
    WORD statusField = JOB_NOTIFY_FIELD_STATUS;
};

TEST_F(FindFirstNotificationTest, GivesAHandleThatIsNotSignalledYet)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    ASSERT_TRUE(watch);
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(FindFirstNotificationTest, AskingForNothingFailsWithInvalidParameter)
{
    EXPECT_EQ(::FindFirstPrinterChangeNotification(printer.Get(), 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(FindFirstNotificationTest, OptionsSufficeWithoutAFilter)
{
    PRINTER_NOTIFY_OPTIONS_TYPE type = {JOB_NOTIFY_TYPE, 0, 0, 0, 1, &statusField};
    EXPECT_EQ(ErrorOfOptions({2, 0, 1, &type}, 0), DWORD{ERROR_SUCCESS});
}

TEST_F(FindFirstNotificationTest, AnInvalidPrinterHandleFailsWithInvalidHandle)
{
    EXPECT_EQ(::FindFirstPrinterChangeNotification(nullptr, PRINTER_CHANGE_JOB, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(FindFirstNotificationTest, ADeletedPrinterFailsWithPrinterDeleted)
{
    SpoolerRemovePrinter(L"Label");
    EXPECT_EQ(ErrorOfCategory(0), DWORD{ERROR_PRINTER_DELETED});
}

TEST_F(FindFirstNotificationTest, OptionsAreOfVersion2)
{
    EXPECT_EQ(ErrorOfOptions({1, 0, 0, nullptr}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ErrorOfOptions({3, 0, 0, nullptr}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ErrorOfOptions({2, 0, 0, nullptr}), DWORD{ERROR_SUCCESS});
}

TEST_F(FindFirstNotificationTest, FlagsOfTheOptionsAreIgnored)
{
    EXPECT_EQ(ErrorOfOptions({2, 0xFFFFFFFF, 0, nullptr}), DWORD{ERROR_SUCCESS});
}

TEST_F(FindFirstNotificationTest, MissingArraysFailWithInvalidParameter)
{
    EXPECT_EQ(ErrorOfOptions({2, 0, 1, nullptr}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ErrorOfTypes({
                  {JOB_NOTIFY_TYPE, 0, 0, 0, 1, nullptr}
    }),
              DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(FindFirstNotificationTest, EachOfTheTwoTypesMayStandOnce)
{
    const PRINTER_NOTIFY_OPTIONS_TYPE printers = {PRINTER_NOTIFY_TYPE, 0, 0, 0, 1, &statusField};
    const PRINTER_NOTIFY_OPTIONS_TYPE jobs = {JOB_NOTIFY_TYPE, 0, 0, 0, 1, &statusField};
    const PRINTER_NOTIFY_OPTIONS_TYPE others = {2, 0, 0, 0, 1, &statusField};
    EXPECT_EQ(ErrorOfTypes({printers, jobs}), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfTypes({jobs, printers}), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfTypes({jobs, jobs}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ErrorOfTypes({printers, printers}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(ErrorOfTypes({others}), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(FindFirstNotificationTest, KnowsThreeCategoriesOfPrinters)
{
    EXPECT_EQ(ErrorOfCategory(0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfCategory(0x10000), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfCategory(0x20000), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfCategory(0x1000), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(FindFirstNotificationTest, WhoAsksForOtherKindsOfPrintersHearsNothing)
{
    const ChangeHandle all(::FindFirstPrinterChangeNotification(printer.Get(), PRINTER_CHANGE_JOB, 0x10000, nullptr));
    const ChangeHandle other(::FindFirstPrinterChangeNotification(printer.Get(), PRINTER_CHANGE_JOB, 0x20000, nullptr));
    QueueJob(L"Label");
    EXPECT_EQ(::WaitForSingleObject(all.Get(), 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(::WaitForSingleObject(other.Get(), 0), DWORD{WAIT_TIMEOUT});
}

TEST_F(FindFirstNotificationTest, AnyHandleToThePrinterOrToAJobOfItWillDo)
{
    const DWORD jobId = QueueJob(L"Label");
    const PrinterHandle user = Open(L"Label", PRINTER_ACCESS_USE);
    const PrinterHandle job = Open((L"Label, Job " + std::to_wstring(jobId)).c_str(), 0);
    const Watch userWatch(user, PRINTER_CHANGE_JOB);
    const Watch jobWatch(job, PRINTER_CHANGE_JOB);
    QueueJob(L"Label");
    EXPECT_EQ(userWatch.Next(), "0x100 -");
    EXPECT_EQ(jobWatch.Next(), "0x100 -");
}

TEST_F(FindFirstNotificationTest, OpenNotificationsAreCounted)
{
    EXPECT_EQ(SpoolerOpenNotifications(), 0u);
    Watch first(printer, PRINTER_CHANGE_JOB);
    const Watch second(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(SpoolerOpenNotifications(), 2u);
    EXPECT_TRUE(first.Close());
    EXPECT_EQ(SpoolerOpenNotifications(), 1u);
}

TEST_F(FindFirstNotificationTest, AClosedNotificationIsInvalid)
{
    Watch watch(printer, PRINTER_CHANGE_JOB);
    const HANDLE handle = watch.Handle();
    EXPECT_TRUE(watch.Close());
    EXPECT_FALSE(::FindClosePrinterChangeNotification(handle));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    DWORD change = 0;
    EXPECT_FALSE(::FindNextPrinterChangeNotification(handle, &change, nullptr, nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(FindFirstNotificationTest, AClosedNotificationHearsNothingMore)
{
    Watch closed(printer, PRINTER_CHANGE_JOB);
    closed.Close();
    QueueJob(L"Label");
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_SUCCESS});
}

TEST_F(FindFirstNotificationTest, ClosingThePrinterCleansUpItsNotifications)
{
    Watch watch(printer, PRINTER_CHANGE_JOB);
    QueueJob(L"Label");
    printer.Reset();
    EXPECT_EQ(SpoolerOpenNotifications(), 0u);
    QueueJob(L"Label");
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "failed 6");
    EXPECT_TRUE(watch.Close());
}

TEST_F(FindFirstNotificationTest, ClosingAnotherHandleToThePrinterChangesNothing)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    Open(L"Label").Reset();
    QueueJob(L"Label");
    EXPECT_EQ(watch.Next(), "0x100 -");
}

TEST_F(FindFirstNotificationTest, AResetTakesNotificationsAway)
{
    Watch watch(printer, PRINTER_CHANGE_JOB);
    SpoolerReset();
    EXPECT_EQ(SpoolerOpenNotifications(), 0u);
    EXPECT_EQ(watch.Next(), "failed 6");
    EXPECT_TRUE(watch.Close());
}

TEST_F(FindFirstNotificationTest, TheLogTellsFilterCategoryAndHandle)
{
    const ChangeHandle handle(::FindFirstPrinterChangeNotification(printer.Get(), 0xFF00, 0x10000, nullptr));
    DWORD change = 0;
    ::FindNextPrinterChangeNotification(handle.Get(), &change, nullptr, nullptr);
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[1].filter, 0xFF00u);
    EXPECT_EQ(log[1].category, 0x10000u);
    EXPECT_EQ(log[1].handle, printer.Get());
    EXPECT_EQ(log[1].notification, handle.Get());
    EXPECT_EQ(log[2].notification, handle.Get());
    EXPECT_EQ(log[2].handle, nullptr);
}

TEST_F(FindFirstNotificationTest, AServerHearsOfAllPrintersButNotOfFields)
{
    const PrinterHandle server = Open(nullptr, SERVER_ACCESS_ENUMERATE);
    const Watch watch(server, PRINTER_CHANGE_ALL, usualJobFields, usualPrinterFields);
    SpoolerAddPrinter({.printerName = L"New"});
    EXPECT_EQ(watch.Next(), "0x1 -");
    QueueJob(L"New");
    EXPECT_EQ(watch.Next(), "0x100 -");
    SpoolerRemovePrinter(L"New");
    EXPECT_EQ(watch.Next(), "0x4 -");
}

} // namespace
