// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/threads/IThreadable.h"
#include "foundation/OHandle.h"

/// Runs an `IThreadable` on a thread of its own and stops it by polling.
///
/// Ownership: the threadable is not owned and must outlive the thread; the thread handle is closed by the destructor,
///            which neither stops the thread nor waits for it: the owner must have stopped it.
/// Threading: `Start` once, on one thread; the others afterwards.
class OThread {
public:
    /// Starts nothing yet.
    explicit OThread(IThreadable* threadable) noexcept : _threadable(threadable) {}
    OThread(const OThread&) = delete;
    OThread& operator=(const OThread&) = delete;
    virtual ~OThread() = default;

    /// Starts the thread; it runs `IThreadable::TheadStart`. An ASSERT breaks if the platform refuses.
    void Start();

    /// Asks the threadable to stop, again at least every 100 milliseconds, until the thread has ended or more than
    /// `timeoutMs` milliseconds have gone by. True if the thread has ended; it is never killed. A thread that was not
    /// started counts as ended.
    bool Stop(DWORD timeoutMs);

    /// STILL_ACTIVE (259) while the thread runs, 0 after its end and before its start.
    DWORD GetThreadExitCode() const;

private:
    IThreadable* _threadable;
    OWaitHandle _hThread; ///< null until started; stays open to the end, so that the exit code stays readable
    unsigned _threadId = 0;
};
