// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/gate/CallLog.h"
#include "spooler/gate/FailureInjection.h"
#include "spooler/levels/PackedWriter.h"
#include "spooler/SpoolerError.h"
#include "spooler/world/Delivery.h"

#include <chrono>
#include <condition_variable>
#include <new>

/// One call on its way through the spooler: what the log is to tell, where its results go, how far it may go.
struct Call : CallRecord {
    explicit Call(SpoolerCall which, HANDLE printerHandle = nullptr)
    {
        call = which;
        handle = printerHandle;
    }

    SizedBuffer target;
    LONG onSuccess = TRUE; // what the function returns
    LONG onFailure = FALSE;
    bool returnsError = false;     // it returns its error instead
    bool returnsNumber = false;    // its success is a number, which an injected success brings along
    DWORD writeLimit = 0xFFFFFFFF; // bytes that WritePrinter may take
};

/// The process's one spooler: the world under its lock, the log, the failures, and the configuration that the world
/// begins with.
///
/// Threading: any thread. The world's lock is never held while a call waits or runs foreign code, nor with the lock of
/// the log or of the failures.
class Spooler {
public:
    static Spooler& Instance();

    /// Does the work of one of the spooler's functions on the world, unless an injected failure or a configuration that
    /// could not be read stops it; writes the log. Gives ERROR_SUCCESS or the error that the call is to fail with, and
    /// in `call.value` what the function is to return. Work whose success is a number puts it in `call.onSuccess`.
    template <typename Work>
    DWORD Perform(Call& call, Work work) noexcept
    {
        const size_t number = Begin(call);
        const std::optional<DWORD> settled = Intercept(call);
        End(call, number, settled ? *settled : Guarded([&] { work(_world); }));
        return call.result;
    }

    /// Does something to the world from outside: no log, no injected failures. Gives ERROR_SUCCESS or the error.
    template <typename Work>
    DWORD Control(Work work) noexcept
    {
        LoadFromEnvironment();
        return Guarded([&] { work(_world); });
    }

    /// Waits until the world is as `condition` wants it. ERROR_TIMEOUT if that takes longer than `timeoutMs`, or the
    /// error that the condition gives up with.
    template <typename Condition>
    DWORD WaitUntil(DWORD timeoutMs, Condition condition) noexcept
    {
        LoadFromEnvironment();
        std::unique_lock guard(_lock);
        return ErrorOf([&] {
            const auto limit = std::chrono::milliseconds(timeoutMs);
            Require(_worldUsed.wait_for(guard, limit, [&] { return condition(_world); }), ERROR_TIMEOUT);
        });
    }

    void Reset() noexcept;
    DWORD LoadConfig(const std::wstring& path) noexcept;
    std::wstring ConfigError();

    CallLog& Log() noexcept { return _log; }
    FailureInjection& Failures() noexcept { return _failures; }

private:
    template <typename Work>
    DWORD Guarded(Work work) noexcept
    {
        const std::lock_guard guard(_lock);
        const DWORD error = ErrorOf([&] {
            work();
            Delivery(_world).DeliverReady();
        });
        _worldUsed.notify_all();
        return error;
    }

    template <typename Work>
    static DWORD ErrorOf(Work work) noexcept
    {
        try {
            work();
            return ERROR_SUCCESS;
        } catch (const SpoolerError& error) {
            return error.Code();
        } catch (const std::bad_alloc&) {
            return ERROR_NOT_ENOUGH_MEMORY;
        }
    }

    size_t Begin(Call& call);
    void End(Call& call, size_t number, DWORD result);
    std::optional<DWORD> Intercept(Call& call);
    DWORD ConfigResult();
    void LoadFromEnvironment() noexcept;
    DWORD LoadLocked(const std::wstring& path);

    std::mutex _lock; // of all below but the log and the failures
    std::condition_variable _worldUsed;
    World _world;
    bool _environmentRead = false;
    DWORD _configResult = ERROR_SUCCESS; // of the file that the environment names
    std::wstring _configError;
    CallLog _log;
    FailureInjection _failures;
};
