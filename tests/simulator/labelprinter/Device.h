// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/DeviceLink.h"

#include <string_view>

/// The device as the simulated spooler has it.
inline const SpoolerDevice& Device()
{
    static const auto functions = reinterpret_cast<SpoolerDeviceFunctionsCall*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"labelprinter.dll"), spoolerDeviceFunctionsName)));
    return *functions();
}
