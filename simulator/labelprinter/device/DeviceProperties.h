// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/DeviceState.h"

#include <string_view>

/// The words by which everything about a device is set and read: the same in a configuration, in a panel file, through
/// the control interface and over the wire.
struct DeviceProperty {
    std::wstring_view name;
    bool ofDevice; ///< it belongs to the device itself, which knows nothing of the rest
    /// False for a value that the property can't have; the state is as it was then.
    bool (*set)(DeviceState& state, std::wstring_view value);
    std::wstring (*get)(const DeviceState& state);
};

/// The property of that name in any case; null if there is none.
const DeviceProperty* FindDeviceProperty(std::wstring_view name);

/// Without the blanks around it.
std::wstring_view TrimmedText(std::wstring_view text);

/// A decimal number and nothing else.
bool ParseNumber(std::wstring_view text, DWORD& number);

/// Whether two words are the same but for the case of the letters a to z.
bool SameWord(std::wstring_view left, std::wstring_view right);
