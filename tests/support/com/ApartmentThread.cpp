// SPDX-License-Identifier: MIT
#include "support/com/ApartmentThread.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr DWORD limitMs = 60000;

OWaitHandle NewEvent()
{
    return OWaitHandle(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
}

void PumpMessages()
{
    for (MSG message; ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageW(&message);
}

/// There is no way on: the thread hangs in work that uses what the test is about to destroy.
void WaitOrDie(HANDLE event)
{
    if (::WaitForSingleObject(event, limitMs) == WAIT_OBJECT_0) return;
    std::fputs("a thread of an apartment does not answer\n", stderr);
    std::abort();
}

} // namespace

ApartmentThread::ApartmentThread(COINIT kind)
    : _ready(NewEvent()), _posted(NewEvent()), _done(NewEvent()), _thread([this, kind] { Body(kind); })
{
    WaitOrDie(_ready.Get());
}

ApartmentThread::~ApartmentThread()
{
    _work = nullptr;
    ::SetEvent(_posted.Get());
    WaitOrDie(_done.Get());
    _thread.join();
}

void ApartmentThread::Run(const std::function<void()>& work)
{
    _work = &work;
    ::SetEvent(_posted.Get());
    WaitOrDie(_done.Get());
}

void ApartmentThread::Body(COINIT kind)
{
    _id = ::GetCurrentThreadId();
    ::CoInitializeEx(nullptr, kind);
    ::SetEvent(_ready.Get());
    while (PumpUntilWork()) {
        (*_work)();
        ::SetEvent(_done.Get());
    }
    ::CoUninitialize();
    ::SetEvent(_done.Get());
}

bool ApartmentThread::PumpUntilWork() const
{
    const HANDLE posted = _posted.Get();
    while (::MsgWaitForMultipleObjects(1, &posted, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) PumpMessages();
    return _work != nullptr;
}
