// SPDX-License-Identifier: MIT
#include "foundation/threads/OThread.h"

#include <process.h>

#include <algorithm>

#include "foundation/Assert.h"
#include "foundation/failures/OException.h"
#include "foundation/failures/SehTranslator.h"
#include "foundation/threads/TickCount.h"

namespace {

constexpr DWORD pollIntervalMs = 100;

unsigned __stdcall RunThreadable(void* threadable) noexcept
{
    RunTranslated([threadable] { static_cast<IThreadable*>(threadable)->TheadStart(); });
    return 0;
}

} // namespace

void OThread::Start()
{
    _hThread.Reset(reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, RunThreadable, _threadable, 0, &_threadId)));
    ASSERT(_hThread);
    if (!_hThread) throw OException(static_cast<LONG>(::GetLastError()), "_beginthreadex error in OThread::Start");
}

bool OThread::Stop(DWORD timeoutMs)
{
    const DWORD start = TickCount();
    while (GetThreadExitCode() == STILL_ACTIVE) {
        _threadable->ThreadStop();
        const DWORD elapsedMs = TickCount() - start;
        if (elapsedMs > timeoutMs) break;
        ::Sleep(std::min(timeoutMs - elapsedMs, pollIntervalMs));
    }
    return GetThreadExitCode() != STILL_ACTIVE;
}

DWORD OThread::GetThreadExitCode() const
{
    if (!_hThread) return 0;
    DWORD exitCode = 0;
    const BOOL rc = ::GetExitCodeThread(_hThread.Get(), &exitCode);
    ASSERT(rc);
    return exitCode;
}
