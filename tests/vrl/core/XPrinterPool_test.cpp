// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinterPool.h"

#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/VRException.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

class XPrinterPoolTest : public SpoolerTest {
protected:
    void TearDown() override
    {
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        SpoolerTest::TearDown();
    }
};

TEST_F(XPrinterPoolTest, OneNameHasOnePrinterAndOneSpoolerHandle)
{
    const XPrinterRef first = XPrinterRef::Acquire(OString("Label"));
    const XPrinterRef second = XPrinterRef::Acquire(OString("Label"));
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(XPrinterPoolTest, NamesInOtherLetterCaseShareThePrinterUnderTheFirstName)
{
    const XPrinterRef first = XPrinterRef::Acquire(OString("lAbEl"));
    const XPrinterRef second = XPrinterRef::Acquire(OString("LABEL"));
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(second->GetPrinterName(), "lAbEl");
}

TEST_F(XPrinterPoolTest, OtherLettersThanAToZKeepTheirCase)
{
    SpoolerPrinter printer = LabelPrinter();
    printer.printerName = L"\u00C9tiquette";
    AddPrinter(printer);
    printer.printerName = L"\u00E9tiquette";
    ::SpoolerAddPrinter(printer); // may be the same printer to the spooler

    const XPrinterRef upper = XPrinterRef::Acquire(OString(L"\u00C9tiquette"));
    const XPrinterRef lower = XPrinterRef::Acquire(OString(L"\u00E9tiquette"));
    EXPECT_NE(upper.Get(), lower.Get());
}

TEST_F(XPrinterPoolTest, UnknownNameThrowsAndLeavesNothing)
{
    EXPECT_THROW(XPrinterPool::Acquire(OString("No such printer")), CouldNotOpenPrinter_E);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(XPrinterPoolTest, PrinterLivesUntilTheLastCountIsGivenBack)
{
    XPrinterRef first = XPrinterRef::Acquire(OString("Label"));
    XPrinterRef second = XPrinterRef::Acquire(OString("Label"));
    first.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    second.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(XPrinterPoolTest, ReopenedPrinterIsANewOneWithAnotherHandleAndTheOdometerReadAnew)
{
    XPrinterRef::Acquire(OString("Label")).Release();
    ::SpoolerClearLog();
    const XPrinterRef reopened = XPrinterRef::Acquire(OString("label"));
    EXPECT_EQ(reopened->GetPrinterName(), "label");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDataExW), 2u);
}

TEST_F(XPrinterPoolTest, SpoolerHandleStaysOpenForGood)
{
    XPrinterRef::Acquire(OString("Label")).Release();
    XPrinterRef::Acquire(OString("Label")).Release();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::ClosePrinter), 0u);
    EXPECT_EQ(::SpoolerOpenHandles(printerName), 2u);
}

TEST_F(XPrinterPoolTest, CountsFromManyThreadsBalance)
{
    std::atomic<int> wrongNames{0};
    std::vector<std::jthread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&wrongNames] {
            for (int i = 0; i < 200; ++i) {
                const XPrinterRef printer = XPrinterRef::Acquire(OString("Label"));
                if (!(printer->GetPrinterName() == "Label")) ++wrongNames;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(wrongNames, 0);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(XPrinterPoolTest, SlowOpenHoldsUpOtherThreadsUntilItIsDone)
{
    HANDLE const entered = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    HANDLE const release = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    SpoolerFailure hold;
    hold.call = SpoolerCall::OpenPrinterW;
    hold.effect = SpoolerEffect::Hold;
    hold.entered = entered;
    hold.release = release;
    ::SpoolerInject(hold);

    std::atomic<bool> secondDone{false};
    std::jthread opener([] { XPrinterRef::Acquire(OString("Label")).Release(); });
    ASSERT_EQ(::WaitForSingleObject(entered, 10000), WAIT_OBJECT_0);
    std::jthread second([&secondDone] {
        XPrinterRef::Acquire(OString("Label")).Release();
        secondDone = true;
    });
    EXPECT_FALSE(secondDone);
    ::SetEvent(release);
    opener.join();
    second.join();
    EXPECT_TRUE(secondDone);
    ::CloseHandle(entered);
    ::CloseHandle(release);
}

TEST_F(XPrinterPoolTest, MovedReferenceCountsOnce)
{
    XPrinterRef first = XPrinterRef::Acquire(OString("Label"));
    XPrinterRef second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): that is what is tested
    second.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(XPrinterPoolTest, AssignedReferenceGivesTheOldPrinterBack)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    XPrinterRef reference = XPrinterRef::Acquire(OString("Label"));
    reference = XPrinterRef::Acquire(OString("Other"));
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(reference->GetPrinterName(), "Other");
}

} // namespace
