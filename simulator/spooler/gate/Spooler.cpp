// SPDX-License-Identifier: MIT
#include "spooler/gate/Spooler.h"

#include <cstdio>
#include <utility>

namespace {

constexpr DWORD longestHoldMs = 60000;
constexpr wchar_t configVariable[] = L"VORLANE_SPOOLER_CONFIG";
constexpr wchar_t saveVariable[] = L"VORLANE_SPOOLER_SAVE";

std::wstring EnvironmentText(const wchar_t* name)
{
    std::wstring text(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    const DWORD length = ::GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
    text.resize(length < text.size() ? length : 0);
    return text;
}

/// A person at a console sees it on stderr, a debugger in the trace.
void Report(const std::wstring& message)
{
    const std::wstring line = L"spooler simulator: " + message + L"\n";
    std::fwprintf(stderr, L"%ls", line.c_str());
    std::fflush(stderr);
    ::OutputDebugStringW(line.c_str());
}

void Hold(const SpoolerFailure& failure)
{
    if (failure.entered) ::SetEvent(failure.entered);
    if (failure.release) ::WaitForSingleObject(failure.release, longestHoldMs);
}

} // namespace

Spooler& Spooler::Instance()
{
    // Never destroyed: at the end of the process a thread may be waiting in it.
    static Spooler& spooler = *new Spooler;
    return spooler;
}

size_t Spooler::Begin(Call& call)
{
    LoadFromEnvironment();
    call.threadId = ::GetCurrentThreadId();
    if (call.handle && call.printer.empty()) {
        const MutexLock guard(_lock);
        call.printer = _world.PrinterNameOf(call.handle);
    }
    return _log.Begin(call);
}

void Spooler::End(Call& call, size_t number, DWORD result)
{
    call.result = result;
    call.value = result == ERROR_SUCCESS ? call.onSuccess : call.onFailure;
    if (call.returnsError) call.value = static_cast<LONG>(result);
    _log.End(number, call);
}

DWORD Spooler::StandingError(const Call& call)
{
    const MutexLock guard(_lock);
    if (_configResult) return _configResult;
    // Blocks of notifications are the process's own memory.
    const bool goesToSpooler = call.call != SpoolerCall::FreePrinterNotifyInfo;
    return _world.IsStopped() && goesToSpooler ? RPC_S_SERVER_UNAVAILABLE : ERROR_SUCCESS;
}

void Spooler::KeepTime() noexcept
{
    const auto noteUse = [this]() NO_THREAD_SAFETY_ANALYSIS { NoteUse(); }; // its caller has the lock
    const MutexLock guard(_lock);
    if (_realTime.IsNeeded(_world)) _realTime.Start(_world, _lock, _worldUsed, noteUse);
}

std::optional<DWORD> Spooler::Intercept(Call& call)
{
    if (const DWORD error = StandingError(call)) return error;
    const std::optional<SpoolerFailure> failure = _failures.Take(call);
    if (!failure) return std::nullopt;
    call.injected = true;

    switch (failure->effect) {
    case SpoolerEffect::Fail:
    case SpoolerEffect::SucceedEmpty:
        if (call.target.needed) *call.target.needed = failure->bytes;
        if (call.target.returned) *call.target.returned = 0;
        if (call.returnsNumber) call.onSuccess = static_cast<LONG>(failure->bytes);
        return failure->effect == SpoolerEffect::Fail ? failure->error : ERROR_SUCCESS;
    case SpoolerEffect::ShortWrite:
        call.writeLimit = failure->bytes;
        break;
    case SpoolerEffect::Delay:
        ::Sleep(failure->delayMs);
        break;
    case SpoolerEffect::Hold:
        Hold(*failure);
        break;
    case SpoolerEffect::Run:
        if (failure->action) failure->action(failure->context);
        break;
    }
    return std::nullopt;
}

void Spooler::LoadFromEnvironment() noexcept
{
    std::wstring message;
    {
        const MutexLock guard(_lock);
        if (std::exchange(_environmentRead, true)) return;
        ReadEnvironment();
        message = _configError;
    }
    if (!message.empty()) Report(message);
    KeepTime();
}

/// A world that could not be read is not written over.
void Spooler::ReadEnvironment() noexcept
{
    const std::wstring path = EnvironmentText(configVariable);
    if (!path.empty()) _configResult = Keep(LoadConfiguration(path, _world));
    if (_configResult == ERROR_SUCCESS) _kept.KeepIn(EnvironmentText(saveVariable));
}

void Spooler::NoteUse() noexcept
{
    const DWORD error = _kept.Update(_world);
    if (error != ERROR_SUCCESS) Report(_kept.Path() + L": the world can't be saved, error " + std::to_wstring(error));
    _worldUsed.notify_all();
}

DWORD Spooler::LoadConfig(const std::wstring& path) noexcept
{
    return ReadFile([&](World& world) { return LoadConfiguration(path, world); });
}

DWORD Spooler::SaveConfig(const std::wstring& path) noexcept
{
    DWORD outcome = ERROR_SUCCESS;
    const DWORD error = Control([&](World& world) { outcome = SaveConfiguration(path, world); });
    return error ? error : outcome;
}

DWORD Spooler::PlayRecording(const wchar_t* printerName, const std::wstring& path) noexcept
{
    return ReadFile([&](World& world) { return ::PlayRecording(path, world.PrinterOf(printerName), world); });
}

/// Reads a file into the world by way of `read`, and tells what is wrong with it.
template <typename Read>
DWORD Spooler::ReadFile(Read read) noexcept
{
    LoadFromEnvironment();
    ConfigOutcome outcome;
    DWORD error = ERROR_SUCCESS;
    {
        const MutexLock guard(_lock);
        error = WorkOn([&](World& world) { outcome = read(world); });
        if (error == ERROR_SUCCESS) error = Keep(outcome);
    }
    KeepTime();
    if (!outcome.message.empty()) Report(outcome.message);
    return error;
}

DWORD Spooler::Keep(const ConfigOutcome& outcome)
{
    _configError = outcome.message;
    return outcome.error;
}

std::wstring Spooler::ConfigError()
{
    LoadFromEnvironment();
    const MutexLock guard(_lock);
    return _configError;
}

void Spooler::Reset() noexcept
{
    {
        const MutexLock guard(_lock);
        _world.Clear();
        _kept.KeepIn({});
        _environmentRead = true;
        _configResult = ERROR_SUCCESS;
        _configError.clear();
    }
    _failures.Clear();
    _log.Clear();
}
