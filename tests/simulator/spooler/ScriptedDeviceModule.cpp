// SPDX-License-Identifier: MIT
/// A device that does what the test wants in whose program it is.

#include "foundation/ImportedFunction.h"
#include "spooler/DeviceLink.h"

extern "C" __declspec(dllexport) const SpoolerDevice* SpoolerDeviceFunctions()
{
    return ImportedFunction<SpoolerDeviceFunctionsCall>(::GetModuleHandleW(nullptr), "ScriptedDeviceFunctions")();
}
