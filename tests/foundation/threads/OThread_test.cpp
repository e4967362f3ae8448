// SPDX-License-Identifier: MIT
#include "foundation/threads/OThread.h"

#include <gtest/gtest.h>

#include <process.h>

#include <atomic>
#include <memory>
#include <vector>

#include "foundation/failures/OException.h"
#include "foundation/failures/OExceptionHandler.h"
#include "foundation/threads/TickCount.h"
#include "support/AssertCatcher.h"
#include "support/ForeignThrow.h"
#include "support/ImportHook.h"

namespace {

constexpr DWORD generousMs = 30000;

OWaitHandle MakeEvent()
{
    return OWaitHandle(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

/// A body that runs until it is asked to stop for the nth time.
class WaitingBody : public IThreadable {
public:
    explicit WaitingBody(int stopsNeeded = 1) : _stopsNeeded(stopsNeeded) {}

    void TheadStart() override
    {
        threadId = ::GetCurrentThreadId();
        ::SetEvent(running.Get());
        ::WaitForSingleObject(_stopped.Get(), generousMs);
    }

    void ThreadStop() override
    {
        stoppingThreadId = ::GetCurrentThreadId();
        if (++stops >= _stopsNeeded) End();
    }

    void End() { ::SetEvent(_stopped.Get()); }

    bool WaitUntilRunning() const { return ::WaitForSingleObject(running.Get(), generousMs) == WAIT_OBJECT_0; }

    OWaitHandle running = MakeEvent();
    std::atomic<DWORD> threadId = 0;
    DWORD stoppingThreadId = 0;
    int stops = 0;

private:
    OWaitHandle _stopped = MakeEvent();
    int _stopsNeeded;
};

/// Ticks and sleeps of the thread under test, in place of the platform's.
class ScriptedTime {
public:
    ScriptedTime()
    {
        ticks = 0;
        ticksPerSleep = 0;
        slept.clear();
        onSleep = nullptr;
        SetTickCountSource([] { return ticks; });
    }
    ScriptedTime(const ScriptedTime&) = delete;
    ScriptedTime& operator=(const ScriptedTime&) = delete;
    ~ScriptedTime() { SetTickCountSource(nullptr); }

    static inline DWORD ticks;
    static inline DWORD ticksPerSleep; ///< by how much each sleep moves the ticks, beside its own length
    static inline std::vector<DWORD> slept;
    static inline void (*onSleep)();

private:
    ImportHook<decltype(::Sleep)> _sleep{"Sleep", [](DWORD milliseconds) {
                                             slept.push_back(milliseconds);
                                             ticks += milliseconds + ticksPerSleep;
                                             if (onSleep) onSleep();
                                         }};
};

/// Ends the body and waits for its thread, so that no thread outlives its test.
void Finish(OThread& thread, WaitingBody& body)
{
    body.End();
    ASSERT_TRUE(thread.Stop(generousMs));
}

TEST(OThread, RunsTheBodyOnAThreadOfItsOwn)
{
    WaitingBody body;
    OThread thread(&body);
    thread.Start();
    ASSERT_TRUE(body.WaitUntilRunning());
    EXPECT_NE(body.threadId, 0u);
    EXPECT_NE(body.threadId, ::GetCurrentThreadId());
    Finish(thread, body);
}

TEST(OThread, ConstructionStartsNothing)
{
    WaitingBody body;
    {
        const OThread thread(&body);
    }
    EXPECT_EQ(::WaitForSingleObject(body.running.Get(), 0), DWORD{WAIT_TIMEOUT});
}

TEST(OThread, ExitCodeOfAThreadThatWasNotStartedIsZero)
{
    WaitingBody body;
    const OThread thread(&body);
    EXPECT_EQ(thread.GetThreadExitCode(), 0u);
}

TEST(OThread, ExitCodeOfARunningThreadIsStillActive)
{
    WaitingBody body;
    OThread thread(&body);
    thread.Start();
    EXPECT_EQ(thread.GetThreadExitCode(), 259u);
    Finish(thread, body);
}

TEST(OThread, ExitCodeStaysReadableAfterTheEndAndIsZero)
{
    WaitingBody body;
    OThread thread(&body);
    thread.Start();
    Finish(thread, body);
    EXPECT_EQ(thread.GetThreadExitCode(), 0u);
}

TEST(OThread, StopOfAThreadThatWasNotStartedSucceedsWithoutAsking)
{
    WaitingBody body;
    OThread thread(&body);
    EXPECT_TRUE(thread.Stop(0));
    EXPECT_EQ(body.stops, 0);
}

TEST(OThread, StopAsksOnTheStoppingThread)
{
    WaitingBody body;
    OThread thread(&body);
    thread.Start();
    EXPECT_TRUE(thread.Stop(generousMs));
    EXPECT_EQ(body.stoppingThreadId, ::GetCurrentThreadId());
}

TEST(OThread, StopRepeatsTheRequestAtEachPoll)
{
    constexpr int stopsNeeded = 3;
    WaitingBody body(stopsNeeded);
    OThread thread(&body);
    thread.Start();
    EXPECT_TRUE(thread.Stop(generousMs));
    EXPECT_GE(body.stops, stopsNeeded);
}

TEST(OThread, StopPollsEvery100MillisecondsAndThenForTheRest)
{
    WaitingBody body(1000);
    OThread thread(&body);
    thread.Start();
    {
        ScriptedTime time;
        time.ticksPerSleep = 5;
        EXPECT_FALSE(thread.Stop(250));
        EXPECT_EQ(time.slept, (std::vector<DWORD>{100, 100, 40}));
        EXPECT_EQ(body.stops, 4);
    }
    Finish(thread, body);
}

TEST(OThread, StopGoesOnAtExactlyTheTimeOut)
{
    WaitingBody body(1000);
    OThread thread(&body);
    thread.Start();
    {
        ScriptedTime time;
        time.onSleep = [] { ScriptedTime::ticks += ScriptedTime::slept.back() == 0 ? 1 : 0; };
        EXPECT_FALSE(thread.Stop(100));
        EXPECT_EQ(time.slept, (std::vector<DWORD>{100, 0}));
    }
    Finish(thread, body);
}

TEST(OThread, StopWithoutTimePollsUntilTheTickMoves)
{
    WaitingBody body(1000);
    OThread thread(&body);
    thread.Start();
    {
        ScriptedTime time;
        time.onSleep = [] { ScriptedTime::ticks += ScriptedTime::slept.size() == 3 ? 1 : 0; };
        EXPECT_FALSE(thread.Stop(0));
        EXPECT_EQ(time.slept, (std::vector<DWORD>{0, 0, 0}));
        EXPECT_EQ(body.stops, 4);
    }
    Finish(thread, body);
}

TEST(OThread, StopMeasuresAcrossTheWrapOfTheTicks)
{
    WaitingBody body(1000);
    OThread thread(&body);
    thread.Start();
    {
        ScriptedTime time;
        time.ticks = 0xFFFFFFD0;
        time.ticksPerSleep = 1;
        EXPECT_FALSE(thread.Stop(100));
        EXPECT_EQ(time.slept, (std::vector<DWORD>{100}));
    }
    Finish(thread, body);
}

TEST(OThread, StopNeverKills)
{
    WaitingBody body(1000);
    OThread thread(&body);
    thread.Start();
    {
        ScriptedTime time;
        time.ticksPerSleep = 1;
        EXPECT_FALSE(thread.Stop(0));
    }
    EXPECT_EQ(thread.GetThreadExitCode(), 259u);
    Finish(thread, body);
}

TEST(OThread, DestructorNeitherStopsNorWaits)
{
    WaitingBody body;
    OWaitHandle ended;
    {
        OThread thread(&body);
        thread.Start();
        ASSERT_TRUE(body.WaitUntilRunning());
        ended.Reset(::OpenThread(SYNCHRONIZE, FALSE, body.threadId));
    }
    EXPECT_EQ(body.stops, 0);
    EXPECT_EQ(::WaitForSingleObject(ended.Get(), 0), DWORD{WAIT_TIMEOUT});
    body.End();
    EXPECT_EQ(::WaitForSingleObject(ended.Get(), generousMs), DWORD{WAIT_OBJECT_0});
}

TEST(OThread, DestructorClosesTheHandle)
{
    static DWORD threadOfClosedHandle;
    threadOfClosedHandle = 0;
    WaitingBody body;
    auto thread = std::make_unique<OThread>(&body);
    thread->Start();
    Finish(*thread, body);
    const ImportHook<decltype(::CloseHandle)> hook("CloseHandle", [](HANDLE handle) -> WINBOOL {
        threadOfClosedHandle = ::GetThreadId(handle);
        return TRUE;
    });
    thread.reset();
    EXPECT_EQ(threadOfClosedHandle, body.threadId);
}

TEST(OThread, AThreadThatCannotBeStartedBreaksAnAssert)
{
    const ImportHook<decltype(::_beginthreadex)> hook(
        "_beginthreadex",
        [](void*, unsigned, _beginthreadex_proc_type, void*, unsigned, unsigned*) -> uintptr_t { return 0; });
    WaitingBody body;
    OThread thread(&body);
    EXPECT_EQ(BrokenAssert([&] { thread.Start(); }), "OThread::Start ASSERT(_hThread)");
}

TEST(OThread, IsStartedWithDefaultSecurityAndStackAndNoFlags)
{
    struct Call {
        void* security;
        unsigned stackSize;
        void* argument;
        unsigned flags;
    };
    static Call call;
    call = {&call, 1, nullptr, 1};
    WaitingBody body;
    OThread thread(&body);
    {
        const ImportHook<decltype(::_beginthreadex)> hook("_beginthreadex",
                                                          [](void* security, unsigned stackSize,
                                                             _beginthreadex_proc_type, void* argument, unsigned flags,
                                                             unsigned*) -> uintptr_t {
                                                              call = {security, stackSize, argument, flags};
                                                              return 0;
                                                          });
        BrokenAssert([&] { thread.Start(); });
    }
    EXPECT_EQ(call.security, nullptr);
    EXPECT_EQ(call.stackSize, 0u);
    EXPECT_EQ(call.argument, static_cast<IThreadable*>(&body));
    EXPECT_EQ(call.flags, 0u);
}

TEST(OThread, AnExitCodeThatCannotBeReadBreaksAnAssert)
{
    WaitingBody body;
    OThread thread(&body);
    thread.Start();
    {
        const ImportHook<decltype(::GetExitCodeThread)> hook("GetExitCodeThread",
                                                             [](HANDLE, DWORD*) -> WINBOOL { return FALSE; });
        EXPECT_EQ(BrokenAssert([&] { thread.GetThreadExitCode(); }), "OThread::GetThreadExitCode ASSERT(rc)");
    }
    Finish(thread, body);
}

/// A body that fails, and sees it.
class FailingBody : public IThreadable {
public:
    void TheadStart() override
    {
        const OExceptionHandler handler("FailingBody");
        try {
            ::RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
        } catch (const OException& exception) {
            errorCode = exception.GetErrorCode();
        }
    }
    void ThreadStop() override {}

    std::atomic<LONG> errorCode = 0;
};

TEST(OThread, ABodyCanCatchItsStructuredExceptions)
{
    FailingBody body;
    OThread thread(&body);
    thread.Start();
    ASSERT_TRUE(thread.Stop(generousMs));
    EXPECT_EQ(body.errorCode, ERROR_INVALID_ADDRESS);
}

/// A body into which foreign code throws, without an exception handler of its own.
class ForeignThrowingBody : public IThreadable {
public:
    void TheadStart() override
    {
        try {
            ThrowAsForeignCode();
        } catch (...) {
            caught = true;
        }
    }
    void ThreadStop() override {}

    std::atomic<bool> caught = false;
};

TEST(OThread, ABodyCanCatchExceptionsOfForeignCode)
{
    ForeignThrowingBody body;
    OThread thread(&body);
    thread.Start();
    ASSERT_TRUE(thread.Stop(generousMs));
    EXPECT_TRUE(body.caught);
}

} // namespace
