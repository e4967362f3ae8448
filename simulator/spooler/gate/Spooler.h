// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/Configuration.h"
#include "spooler/gate/CallLog.h"
#include "spooler/gate/FailureInjection.h"
#include "spooler/gate/KeptWorld.h"
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
/// Threading: any thread. The world's lock is never held while an injected failure waits or runs its action, nor with
/// the lock of the log or of the failures. Devices are called under it, and the kept file is written under it.
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
        if (call.closes && settled == RPC_S_SERVER_UNAVAILABLE) Guarded(work);
        End(call, number, settled ? *settled : Guarded(work));
        return call.result;
    }

    /// Does something to the world from outside: no log, no injected failures. Gives ERROR_SUCCESS or the error.
    template <typename Work>
    DWORD Control(Work work) noexcept
    {
        LoadFromEnvironment();
        const DWORD error = Guarded(work);
        KeepTime();
        return error;
    }

    /// Waits until the world is as `condition` wants it. ERROR_TIMEOUT if that takes longer than `timeoutMs`, or the
    /// error that the condition gives up with.
    template <typename Condition>
    DWORD WaitUntil(DWORD timeoutMs, Condition condition) noexcept
    {
        LoadFromEnvironment();
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        const MutexLock guard(_lock);
        for (bool late = false;; late = _worldUsed.wait_until(_lock, end) == std::cv_status::timeout) {
            bool met = false;
            const DWORD error = ErrorOf([&](World& world) { met = condition(world); }, _world);
            if (error || met) return error;
            if (late) return ERROR_TIMEOUT;
        }
    }

    void Reset() noexcept;
    DWORD LoadConfig(const std::wstring& path) noexcept;
    DWORD SaveConfig(const std::wstring& path) noexcept;
    DWORD PlayRecording(const wchar_t* printerName, const std::wstring& path) noexcept;
    std::wstring ConfigError();

    CallLog& Log() noexcept { return _log; }
    FailureInjection& Failures() noexcept { return _failures; }

private:
    template <typename Work>
    DWORD Guarded(Work work) noexcept
    {
        const MutexLock guard(_lock);
        return WorkOn(work);
    }

    template <typename Work>
    DWORD WorkOn(Work work) noexcept REQUIRES(_lock)
    {
        const auto whole = [&](World& world) {
            work(world);
            PrintEngine(world).Settle();
        };
        const DWORD error = ErrorOf(whole, _world);
        NoteUse();
        return error;
    }

    template <typename Work>
    static DWORD ErrorOf(Work work, World& world) noexcept
    {
        try {
            work(world);
            return ERROR_SUCCESS;
        } catch (const SpoolerError& error) {
            return error.Code();
        } catch (const std::bad_alloc&) {
            return ERROR_NOT_ENOUGH_MEMORY;
        }
    }

    /// The world was used, and may have changed.
    void NoteUse() noexcept REQUIRES(_lock);

    /// Sees to it that printers of real time are kept going.
    void KeepTime() noexcept;

    size_t Begin(Call& call);
    void End(Call& call, size_t number, DWORD result);
    std::optional<DWORD> Intercept(Call& call);
    /// Why every call fails, or this one; ERROR_SUCCESS if there is no such reason.
    DWORD StandingError(const Call& call);
    void LoadFromEnvironment() noexcept;
    void ReadEnvironment() noexcept REQUIRES(_lock);
    DWORD Keep(const ConfigOutcome& outcome) REQUIRES(_lock);
    template <typename Read>
    DWORD ReadFile(Read read) noexcept;

    Mutex _lock;
    std::condition_variable_any _worldUsed;
    World _world GUARDED_BY(_lock);
    RealTime _realTime GUARDED_BY(_lock);
    KeptWorld _kept GUARDED_BY(_lock);
    bool _environmentRead GUARDED_BY(_lock) = false;
    DWORD _configResult GUARDED_BY(_lock) = ERROR_SUCCESS; // of the file that the environment names
    std::wstring _configError GUARDED_BY(_lock);
    CallLog _log;
    FailureInjection _failures;
};
