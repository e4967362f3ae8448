// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinterPool.h"

#include "foundation/failures/OException.h"
#include "foundation/failures/OExceptionHandler.h"
#include "support/BackgroundCall.h"
#include "support/Eventually.h"
#include "support/ImportHook.h"
#include "support/TranslatorScope.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/Module.h"
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

TEST_F(XPrinterPoolTest, EachOfManyIsFoundAgainWhicheverWasFoundLast)
{
    SpoolerPrinter printer = LabelPrinter();
    for (const wchar_t* const name : {L"Second", L"Third"}) {
        printer.printerName = name;
        AddPrinter(printer);
    }
    XPrinterRef label = XPrinterRef::Acquire(OString("Label"));
    const XPrinterRef second = XPrinterRef::Acquire(OString("Second"));
    const XPrinterRef third = XPrinterRef::Acquire(OString("Third"));
    EXPECT_EQ(XPrinterRef::Acquire(OString("Second")).Get(), second.Get());
    EXPECT_EQ(XPrinterRef::Acquire(OString("Third")).Get(), third.Get());
    label.Release(); // the others move up, and the place of the last is empty
    EXPECT_EQ(XPrinterRef::Acquire(OString("Third")).Get(), third.Get());
    EXPECT_EQ(XPrinterRef::Acquire(OString("Second")).Get(), second.Get());
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 3u);
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

TEST_F(XPrinterPoolTest, StructuredExceptionOutOfTheOpeningReachesTheCallerAndLeavesNothing)
{
    const TranslatorScope translator(OExceptionHandler::Translate);
    {
        const ImportHook<decltype(::OpenPrinterW)> hook("OpenPrinterW",
                                                        [](LPWSTR, HANDLE*, PRINTER_DEFAULTSW*) -> BOOL {
                                                            ::RaiseException(STATUS_ACCESS_VIOLATION, 0, 0, nullptr);
                                                            return FALSE;
                                                        });
        EXPECT_THROW(RunTranslated([] { XPrinterPool::Acquire(OString("Label")); }), OException);
    }
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
    EXPECT_NO_THROW(XPrinterRef::Acquire(OString("Label")).Release());
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

// ---- releases on notification threads ----

using Environment = _TP_CALLBACK_ENVIRON_V3;

/// Runs `body` on a thread that the pool takes for the notification thread of `xPrinter`.
template <class Body>
void OnStatusThreadOf(XPrinter& xPrinter, Body&& body)
{
    std::jthread([&] {
        const XPrinterPool::StatusThreadScope scope(xPrinter);
        body();
    }).join();
}

/// Keeps the work that is given to the system's pool of threads until the test runs it.
class StandingPool {
public:
    void RunWork() const { work(nullptr, workContext); }

private:
    static inline PTP_SIMPLE_CALLBACK work;
    static inline void* workContext;
    const ImportHook<decltype(::TrySubmitThreadpoolCallback)> _hook{
        "TrySubmitThreadpoolCallback", [](PTP_SIMPLE_CALLBACK callback, void* context, Environment*) -> BOOL {
            work = callback;
            workContext = context;
            return TRUE;
        }};
};

/// A printer that is watched, and the last count on another one.
class LastReleaseTest : public XPrinterPoolTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        SpoolerPrinter other = LabelPrinter();
        other.printerName = L"Other";
        AddPrinter(other);
        watched = XPrinterRef::Acquire(OString("Other"));
        last = XPrinterRef::Acquire(OString("Label"));
    }

    void TearDown() override
    {
        watched.Release();
        XPrinterPoolTest::TearDown();
    }

    XPrinterRef watched;
    XPrinterRef last;
};

TEST_F(LastReleaseTest, OnANotificationThreadEvenOfAnotherPrinterIsFinishedOnAPoolThread)
{
    OnStatusThreadOf(*watched.Get(), [&] { last.Release(); });
    EXPECT_TRUE(Eventually([] { return XPrinterPool::GetCount() == 1 && Module::IsIdle(); }));
}

TEST_F(LastReleaseTest, LocksTheModuleUntilThePoolThreadIsThrough)
{
    const StandingPool pool;
    OnStatusThreadOf(*watched.Get(), [&] { last.Release(); });
    EXPECT_FALSE(Module::IsIdle());
    EXPECT_EQ(XPrinterPool::GetCount(), 2);
    pool.RunWork();
    EXPECT_TRUE(Module::IsIdle());
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(LastReleaseTest, LeavesANewObjectToAThreadThatAcquiresTheNameMeanwhile)
{
    const StandingPool pool;
    const XPrinter* const closing = last.Get();
    OnStatusThreadOf(*watched.Get(), [&] { last.Release(); });
    const XPrinterRef next = XPrinterRef::Acquire(OString("Label"));
    EXPECT_NE(next.Get(), closing);
    pool.RunWork();
    EXPECT_EQ(XPrinterRef::Acquire(OString("Label")).Get(), next.Get());
}

TEST_F(LastReleaseTest, LeavesTheObjectToItsOwnThreadWhoeverAskedForTheNameLast)
{
    const StandingPool pool;
    XPrinter* const closing = last.Get();
    XPrinterRef others;
    OnStatusThreadOf(*closing, [&] {
        last.Release();
        const BackgroundCall opening([&] {
            others = XPrinterRef::Acquire(OString("Label"));
            XPrinterRef::Acquire(OString("Label")).Release();
        });
        EXPECT_TRUE(opening.Ends());
        EXPECT_EQ(XPrinterRef::Acquire(OString("Label")).Get(), closing);
    });
    pool.RunWork();
}

class NoPoolThreadTest : public XPrinterPoolTest {
protected:
    const ImportHook<decltype(::TrySubmitThreadpoolCallback)> refusal{
        "TrySubmitThreadpoolCallback", [](PTP_SIMPLE_CALLBACK, void*, Environment*) -> BOOL { return FALSE; }};
};

TEST_F(NoPoolThreadTest, PrinterStaysOpenUntilItIsAcquiredAndReleasedOnceMore)
{
    XPrinterRef last = XPrinterRef::Acquire(OString("Label"));
    OnStatusThreadOf(*last.Get(), [&] { last.Release(); });
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_TRUE(Module::IsIdle());
    XPrinterRef::Acquire(OString("Label")).Release();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(NoPoolThreadTest, ReleaseTooManyTakesNoCountFromTheNextHolder)
{
    XPrinterRef last = XPrinterRef::Acquire(OString("Label"));
    XPrinter* const xPrinter = last.Get();
    OnStatusThreadOf(*xPrinter, [&] {
        last.Release();
        XPrinterPool::Release(xPrinter);
    });
    XPrinterRef next = XPrinterRef::Acquire(OString("Label"));
    EXPECT_EQ(next.Get(), xPrinter);
    XPrinterRef another = XPrinterRef::Acquire(OString("Label"));
    next.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    another.Release();
}

} // namespace
