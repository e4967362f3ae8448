// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/Configuration.h"
#include "spooler/gate/CallLog.h"
#include "spooler/gate/FailureInjection.h"
#include "spooler/gate/RealTime.h"
#include "spooler/levels/PackedWriter.h"
#include "spooler/SpoolerError.h"
#include "spooler/world/PrintEngine.h"

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
    bool closes = false;           // it gives a handle back, even if the spooler is not there to hear it
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
        if (call.closes && settled == RPC_S_SERVER_UNAVAILABLE) Guarded([&] { work(_world); });
        End(call, number, settled ? *settled : Guarded([&] { work(_world); }));
        return call.result;
    }

    /// Does something to the world from outside: no log, no injected failures. Gives ERROR_SUCCESS or the error.
    template <typename Work>
    DWORD Control(Work work) noexcept
    {
        LoadFromEnvironment();
        const DWORD error = Guarded([&] { work(_world); });
        KeepTime();
        return error;
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
    DWORD PlayRecording(const wchar_t* printerName, const std::wstring& path) noexcept;
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
            PrintEngine(_world).Settle();
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

    /// Sees to it that printers of real time are kept going.
    void KeepTime() noexcept;

    size_t Begin(Call& call);
    void End(Call& call, size_t number, DWORD result);
    std::optional<DWORD> Intercept(Call& call);
    /// Why every call fails, or this one; ERROR_SUCCESS if there is no such reason.
    DWORD StandingError(const Call& call);
    void LoadFromEnvironment() noexcept;
    DWORD Keep(const ConfigOutcome& outcome);
    template <typename Read>
    DWORD ReadFile(Read read) noexcept;

    std::mutex _lock; // of all below but the log and the failures
    std::condition_variable _worldUsed;
    World _world;
    RealTime _realTime;
    bool _environmentRead = false;
    DWORD _configResult = ERROR_SUCCESS; // of the file that the environment names
    std::wstring _configError;
    CallLog _log;
    FailureInjection _failures;
};
