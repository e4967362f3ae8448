// SPDX-License-Identifier: MIT
#include "support/spooler/ScriptedNotices.h"

#include "foundation/OHandle.h"
#include "support/Eventually.h"
#include "support/ImportHook.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace {

/// What is in a block that was given out; the block comes first.
struct Block {
    std::vector<BYTE> memory;
    ScriptedBatch batch;
};

struct Script {
    std::mutex lock;
    std::deque<ScriptedBatch> batches;
    std::vector<HANDLE> notifications; ///< manual-reset events
    std::map<void*, Block> blocks;
    std::vector<ScriptedNotices::Request> requests;
    bool refusing = false;
    int fetches = 0;
    size_t waiting = 0; ///< watchers in their waits
    std::deque<DWORD> waitResults;
    DWORD waitTimeout = 0;
    OWaitHandle waitResult{::CreateSemaphoreW(nullptr, 0, 1000, nullptr)}; ///< counts the results

    void Signal()
    {
        for (HANDLE const notification : notifications) {
            batches.empty() ? ::ResetEvent(notification) : ::SetEvent(notification);
        }
    }
};

Script* script = nullptr;
decltype(&::WaitForMultipleObjects) platformWait = nullptr;

bool IsNotification(HANDLE handle)
{
    return std::ranges::count(script->notifications, handle) != 0;
}

std::vector<BYTE> BytesOf(const void* data, size_t size)
{
    const auto* const bytes = static_cast<const BYTE*>(data);
    return {bytes, bytes + size};
}

/// The info block of a batch; what its entries point at lies in the batch, which is kept with it.
PRINTER_NOTIFY_INFO* GiveOut(ScriptedBatch batch)
{
    const size_t count = batch.entries.size();
    Block block{std::vector<BYTE>(sizeof(PRINTER_NOTIFY_INFO) + count * sizeof(PRINTER_NOTIFY_INFO_DATA)),
                std::move(batch)};
    auto* const info = reinterpret_cast<PRINTER_NOTIFY_INFO*>(block.memory.data());
    info->Version = 2;
    info->Flags = block.batch.flags;
    info->Count = static_cast<DWORD>(count);
    for (size_t i = 0; i < count; ++i) {
        ScriptedEntry& entry = block.batch.entries[i];
        PRINTER_NOTIFY_INFO_DATA& data = info->aData[i];
        data.Type = entry.type;
        data.Field = entry.field;
        data.Id = entry.id;
        if (entry.pointsAtBytes) {
            data.NotifyData.Data.cbBuf = static_cast<DWORD>(entry.bytes.size());
            data.NotifyData.Data.pBuf = entry.bytes.empty() ? nullptr : entry.bytes.data();
        } else {
            data.NotifyData.adwData[0] = entry.number;
        }
    }
    script->blocks.emplace(info, std::move(block));
    return info;
}

ScriptedNotices::Request Described(HANDLE printer, DWORD filter, DWORD options, const PRINTER_NOTIFY_OPTIONS& asked)
{
    ScriptedNotices::Request request{printer, filter, options, asked.Version, asked.Flags, {}};
    for (DWORD i = 0; i < asked.Count; ++i) {
        const PRINTER_NOTIFY_OPTIONS_TYPE& type = asked.pTypes[i];
        request.fields.emplace_back(type.Type, std::vector<WORD>(type.pFields, type.pFields + type.Count));
    }
    return request;
}

HANDLE WINAPI OpenNotification(HANDLE printer, DWORD filter, DWORD options, void* asked)
{
    const std::lock_guard guard(script->lock);
    script->requests.push_back(Described(printer, filter, options, *static_cast<const PRINTER_NOTIFY_OPTIONS*>(asked)));
    if (script->refusing) {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    HANDLE const notification = ::CreateEventW(nullptr, TRUE, !script->batches.empty(), nullptr);
    script->notifications.push_back(notification);
    return notification;
}

BOOL WINAPI FetchBatch(HANDLE notification, DWORD* change, void* asked, void** info)
{
    const auto* const options = static_cast<const PRINTER_NOTIFY_OPTIONS*>(asked);
    ScriptedBatch batch;
    {
        const std::lock_guard guard(script->lock);
        // A refresh is never to be asked for.
        if (!IsNotification(notification) || script->batches.empty() || !options || options->Version != 2 ||
            options->Flags || options->Count) {
            ::SetLastError(ERROR_INVALID_PARAMETER);
            return FALSE;
        }
        batch = std::move(script->batches.front());
        script->batches.pop_front();
        script->Signal();
    }
    if (batch.action) batch.action();

    const std::lock_guard guard(script->lock);
    ++script->fetches;
    if (batch.fails) {
        ::SetLastError(RPC_S_SERVER_UNAVAILABLE);
        return FALSE;
    }
    *change = batch.change;
    *info = batch.hasInfo ? GiveOut(std::move(batch)) : nullptr;
    return TRUE;
}

BOOL WINAPI CloseNotification(HANDLE notification)
{
    const std::lock_guard guard(script->lock);
    if (std::erase(script->notifications, notification) == 0) return FALSE;
    return ::CloseHandle(notification);
}

BOOL WINAPI FreeInfo(PRINTER_NOTIFY_INFO* info)
{
    const std::lock_guard guard(script->lock);
    return script->blocks.erase(info) != 0;
}

bool BeginWait(const HANDLE* handles, DWORD timeoutMs)
{
    const std::lock_guard guard(script->lock);
    if (!IsNotification(handles[0])) return false;
    ++script->waiting;
    script->waitTimeout = timeoutMs;
    return true;
}

DWORD WINAPI Wait(DWORD count, const HANDLE* handles, BOOL all, DWORD timeoutMs)
{
    if (!BeginWait(handles, timeoutMs)) return platformWait(count, handles, all, timeoutMs);
    std::vector<HANDLE> withResult(handles, handles + count);
    withResult.push_back(script->waitResult.Get());
    const DWORD result = platformWait(count + 1, withResult.data(), all, INFINITE);

    const std::lock_guard guard(script->lock);
    --script->waiting;
    if (result != WAIT_OBJECT_0 + count) return result;
    const DWORD wanted = script->waitResults.front();
    script->waitResults.pop_front();
    return wanted;
}

} // namespace

ScriptedEntry ScriptedEntry::Job(DWORD jobId, WORD field, DWORD number)
{
    return {JOB_NOTIFY_TYPE, field, jobId, number, {}, false};
}

ScriptedEntry ScriptedEntry::JobDevMode(DWORD jobId, const DEVMODEW& devMode)
{
    return {JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_DEVMODE, jobId, 0, BytesOf(&devMode, sizeof devMode), true};
}

ScriptedEntry ScriptedEntry::JobNull(DWORD jobId, WORD field)
{
    return {JOB_NOTIFY_TYPE, field, jobId, 0, {}, true};
}

ScriptedEntry ScriptedEntry::Printer(WORD field, DWORD number)
{
    return {PRINTER_NOTIFY_TYPE, field, 0, number, {}, false};
}

ScriptedEntry ScriptedEntry::Printer(WORD field, const std::wstring& text)
{
    return {PRINTER_NOTIFY_TYPE, field, 0, 0, BytesOf(text.c_str(), (text.size() + 1) * sizeof(wchar_t)), true};
}

ScriptedEntry ScriptedEntry::PrinterNull(WORD field)
{
    return {PRINTER_NOTIFY_TYPE, field, 0, 0, {}, true};
}

class ScriptedNotices::Hooks {
public:
    Hooks()
    {
        script = &_script;
        platformWait = _wait.Original();
    }
    Hooks(const Hooks&) = delete;
    Hooks& operator=(const Hooks&) = delete;
    ~Hooks() { script = nullptr; }

private:
    Script _script;
    ImportHook<decltype(::FindFirstPrinterChangeNotification)> _first{"FindFirstPrinterChangeNotification",
                                                                      OpenNotification};
    ImportHook<decltype(::FindNextPrinterChangeNotification)> _next{"FindNextPrinterChangeNotification", FetchBatch};
    ImportHook<decltype(::FindClosePrinterChangeNotification)> _close{"FindClosePrinterChangeNotification",
                                                                      CloseNotification};
    ImportHook<decltype(::FreePrinterNotifyInfo)> _free{"FreePrinterNotifyInfo", FreeInfo};
    ImportHook<decltype(::WaitForMultipleObjects)> _wait{"WaitForMultipleObjects", Wait};
};

ScriptedNotices::ScriptedNotices() : _hooks(std::make_unique<Hooks>()) {}

ScriptedNotices::~ScriptedNotices() = default;

void ScriptedNotices::Queue(ScriptedBatch batch)
{
    const std::lock_guard guard(script->lock);
    script->batches.push_back(std::move(batch));
    script->Signal();
}

void ScriptedNotices::RefuseWatching()
{
    const std::lock_guard guard(script->lock);
    script->refusing = true;
}

std::vector<ScriptedNotices::Request> ScriptedNotices::Requests() const
{
    const std::lock_guard guard(script->lock);
    return script->requests;
}

size_t ScriptedNotices::Waiting() const
{
    const std::lock_guard guard(script->lock);
    return script->batches.size();
}

void ScriptedNotices::EndWait(DWORD result)
{
    {
        const std::lock_guard guard(script->lock);
        script->waitResults.push_back(result);
    }
    ::ReleaseSemaphore(script->waitResult.Get(), 1, nullptr);
}

void ScriptedNotices::PassQuietSecond()
{
    EndWait(WAIT_TIMEOUT);
    WaitUntilIdle();
}

bool ScriptedNotices::WaitUntilIdle() const
{
    return Eventually([] {
        const std::lock_guard guard(script->lock);
        return script->batches.empty() && script->waitResults.empty() &&
               script->waiting == script->notifications.size();
    });
}

DWORD ScriptedNotices::WaitTimeout() const
{
    const std::lock_guard guard(script->lock);
    return script->waitTimeout;
}

int ScriptedNotices::OpenNotifications() const
{
    const std::lock_guard guard(script->lock);
    return static_cast<int>(script->notifications.size());
}

int ScriptedNotices::UnfreedBlocks() const
{
    const std::lock_guard guard(script->lock);
    return static_cast<int>(script->blocks.size());
}

int ScriptedNotices::Fetches() const
{
    const std::lock_guard guard(script->lock);
    return script->fetches;
}
