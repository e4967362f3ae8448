// SPDX-License-Identifier: MIT
#include "spooler/world/HandleTable.h"

HANDLE HandleTable::Add(OpenHandle handle)
{
    const auto value = reinterpret_cast<HANDLE>(_next);
    _open.emplace(value, std::move(handle));
    _next += step;
    return value;
}

OpenHandle* HandleTable::Find(HANDLE value) noexcept
{
    const auto found = _open.find(value);
    return found == _open.end() ? nullptr : &found->second;
}
