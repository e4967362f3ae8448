// SPDX-License-Identifier: MIT
#include "bench/NoticeCases.h"

#include "bench/SimulatedWorld.h"
#include "support/spooler/HeldCall.h"

#include <memory>
#include <stdexcept>

namespace {

/// Keeps the product's thread in its first fetch until all notices are there.
class HeldThread {
public:
    void Fill(const WatchedQueue& watched, DWORD jobId, int count)
    {
        ::SpoolerClearLog();
        watched.Expect(count);
        _held = std::make_unique<HeldCall>(SpoolerCall::FindNextPrinterChangeNotification);
        QueueNotices(watched.PrinterName().c_str(), jobId, count);
        if (!_held->WaitUntilMade()) throw std::runtime_error("nobody fetches the notices");
    }

    void Release() const { _held->Release(); }

private:
    std::unique_ptr<HeldCall> _held;
};

} // namespace

BenchCase ProductNotices(const WatchedQueue& watched, DWORD jobId, int calls)
{
    const auto thread = std::make_shared<HeldThread>();
    return {[thread, &watched](int) {
                thread->Release();
                watched.Wait();
            },
            calls, [thread, &watched, jobId](int count) { thread->Fill(watched, jobId, count); }};
}

BenchCase RawNotices(const RawNotification& notification, const std::wstring& printerName, DWORD jobId, int calls)
{
    return {[&notification](int count) {
                for (int i = 0; i < count; ++i) {
                    ::WaitForSingleObject(notification.Handle(), INFINITE);
                    notification.Fetch();
                }
            },
            calls,
            [printerName, jobId](int count) {
                ::SpoolerClearLog();
                QueueNotices(printerName.c_str(), jobId, count);
            }};
}
