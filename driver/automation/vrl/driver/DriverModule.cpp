// SPDX-License-Identifier: MIT
#include "vrl/driver/DriverModule.h"

DriverModule::DriverModule(const wchar_t* path) noexcept : _module(::LoadLibraryW(path))
{
    if (!_module) return;
    const auto* const inside = reinterpret_cast<const wchar_t*>(_module.Get());
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, inside, _secondHold.Receive());
}
