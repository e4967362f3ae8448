// SPDX-License-Identifier: MIT
#include "vrl/frame/Module.h"

#include <atomic>

namespace {

std::atomic<long> objects;
std::atomic<long> locks;

} // namespace

void Module::AddObject() noexcept
{
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
