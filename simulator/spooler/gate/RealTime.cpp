// SPDX-License-Identifier: MIT
#include "spooler/gate/RealTime.h"

#include "foundation/OHandle.h"
#include "spooler/world/PrintEngine.h"
#include "spooler/world/RecordedChanges.h"

#include <algorithm>
#include <utility>

namespace {

constexpr auto longestWait = std::chrono::seconds(1);         // the time of day may let a job start
constexpr auto lookInterval = std::chrono::milliseconds(100); // at devices, whose state changes without a word

bool IsRealTime(const std::unique_ptr<PrinterRecord>& printer)
{
    return printer->pace == SpoolerPace::RealTime;
}

bool HasDevice(const std::unique_ptr<PrinterRecord>& printer)
{
    return IsRealTime(printer) && !printer->attached.ports.empty();
}

void KeepModuleLoaded()
{
    HMODULE module = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                         reinterpret_cast<const wchar_t*>(&KeepModuleLoaded), &module);
}

} // namespace

bool RealTime::IsNeeded(const World& world) const noexcept
{
    return !_world && std::ranges::any_of(world.Printers(), IsRealTime);
}

void RealTime::Start(World& world, Mutex& lock, std::condition_variable_any& used,
                     std::function<void()> noteUse) noexcept
{
    _world = &world;
    _lock = &lock;
    _used = &used;
    _noteUse = std::move(noteUse);
    KeepModuleLoaded();
    const auto body = [](void* engine) -> DWORD {
        static_cast<RealTime*>(engine)->Run();
        return 0;
    };
    const OWaitHandle thread(::CreateThread(nullptr, 0, body, this, 0, nullptr));
}

void RealTime::Run()
{
    const MutexLock guard(*_lock);
    for (;;) {
        while (DoWhatIsDue()) _noteUse();
        const auto now = Clock::now();
        const auto recorded = PlayUntil(*_world, now);
        auto wake = std::min(now + longestWait, recorded.value_or(Clock::time_point::max()));
        if (std::ranges::any_of(_world->Printers(), HasDevice)) wake = std::min(wake, _nextLook);
        for (const auto& [printerId, due] : _due) wake = std::min(wake, due);
        if (std::ranges::any_of(_world->Printers(), IsRealTime))
            _used->wait_until(*_lock, wake);
        else
            _used->wait(*_lock);
    }
}

/// True if something was done.
bool RealTime::DoWhatIsDue()
{
    const auto now = Clock::now();
    bool done = false;
    const World& world = *_world;
    std::erase_if(_due, [&world](const auto& entry) { return !world.FindPrinter(entry.first); });
    const bool isLookDue = now >= _nextLook;
    if (isLookDue) _nextLook = now + lookInterval;
    for (const auto& printer : world.Printers()) {
        if (isLookDue && HasDevice(printer)) done |= PrintEngine(*_world).LookAtDevices(*printer);
        if (IsRealTime(printer)) done |= KeepGoing(*printer, now);
    }
    return done;
}

/// Does the printer's next step if it is due. Steps follow each other without a gap, so that the speed is right.
bool RealTime::KeepGoing(const PrinterRecord& printer, Clock::time_point now)
{
    const std::optional<DWORD> ms = PrintEngine(*_world).NextStepMs(printer);
    if (!ms) {
        _due.erase(printer.id);
        return false;
    }
    const auto due = _due.try_emplace(printer.id, now + std::chrono::milliseconds(*ms)).first;
    if (due->second > now) return false;
    PrintEngine(*_world).Step(printer);
    const std::optional<DWORD> next = PrintEngine(*_world).NextStepMs(printer);
    if (next)
        due->second += std::chrono::milliseconds(*next);
    else
        _due.erase(due);
    return true;
}
