// SPDX-License-Identifier: MIT
/// A device of an earlier kind, which has too few functions.

#include "spooler/DeviceLink.h"

extern "C" __declspec(dllexport) const SpoolerDevice* SpoolerDeviceFunctions()
{
    static constexpr SpoolerDevice functions{sizeof(SpoolerDevice) - sizeof(void*), {}, {}, {}, {}, {}, {}, {}, {}};
    return &functions;
}
