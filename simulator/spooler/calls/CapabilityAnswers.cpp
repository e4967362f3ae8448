// SPDX-License-Identifier: MIT
#include "spooler/calls/CapabilityAnswers.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

/// A capability that the driver's device mode tells by itself.
struct DevModeCapability {
    WORD capability;
    DWORD (*read)(const DEVMODEW& devMode);
};

constexpr std::array devModeCapabilities{
    DevModeCapability{DC_FIELDS,  [](const DEVMODEW& devMode) -> DWORD { return devMode.dmFields; }       },
    DevModeCapability{DC_SIZE,    [](const DEVMODEW& devMode) -> DWORD { return devMode.dmSize; }         },
    DevModeCapability{DC_EXTRA,   [](const DEVMODEW& devMode) -> DWORD { return devMode.dmDriverExtra; }  },
    DevModeCapability{DC_VERSION, [](const DEVMODEW& devMode) -> DWORD { return devMode.dmSpecVersion; }  },
    DevModeCapability{DC_DRIVER,  [](const DEVMODEW& devMode) -> DWORD { return devMode.dmDriverVersion; }},
};

} // namespace

int AnswerCapability(const World& world, const wchar_t* device, WORD capability, void* output, const DEVMODEW* devMode)
{
    const PrinterRecord& printer = world.PrinterOf(device);
    const auto answer = printer.capabilities.find(capability);
    if (answer != printer.capabilities.end()) {
        CopyOut(answer->second.output, output, static_cast<DWORD>(answer->second.output.size()));
        return answer->second.result;
    }
    const auto derived = std::ranges::find(devModeCapabilities, capability, &DevModeCapability::capability);
    if (!devMode && !printer.devMode.empty()) devMode = reinterpret_cast<const DEVMODEW*>(printer.devMode.data());
    Require(derived != devModeCapabilities.end() && devMode, ERROR_NOT_SUPPORTED);
    return static_cast<int>(derived->read(*devMode));
}
