// SPDX-License-Identifier: MIT
#include "vrl/frame/Module.h"

#include "foundation/Platform.h"

#include <atomic>

namespace {

std::atomic<long> objects;
std::atomic<long> locks;

/// Pins the module. The run-time library keeps a thread's exceptions under indexes of which a process has few, and does
/// not give them back when a module goes: a host that loads and frees us often would run out of them.
bool Pin() noexcept
{
    HMODULE module = nullptr;
    return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                                reinterpret_cast<const wchar_t*>(&objects), &module) != FALSE;
}

} // namespace

void Module::AddObject() noexcept
{
    [[maybe_unused]] static const bool pinned = Pin();
    ++objects;
}

void Module::RemoveObject() noexcept
{
    --objects;
}

void Module::AddLock() noexcept
{
    ++locks;
}

void Module::RemoveLock() noexcept
{
    --locks;
}

bool Module::IsIdle() noexcept
{
    return objects == 0 && locks == 0;
}
