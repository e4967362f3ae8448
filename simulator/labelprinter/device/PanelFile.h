// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/DeviceState.h"

/// A text file by which a person turns the knobs of a running device: lines of the form "property = value", read again
/// whenever the file has changed. Lines that say nothing sensible are passed over.
class PanelFile {
public:
    /// Does what the file that the state names says, if it has changed since the last time.
    void Apply(DeviceState& state);

private:
    std::wstring _path;
    ULONGLONG _lastWrite = 0;
    ULONGLONG _size = 0;
};
