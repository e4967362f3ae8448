// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <wingdi.h>

/// What matters of a job's device mode. A field that the device mode doesn't name in its `dmFields` is 0. Lengths are
/// in tenths of a millimetre.
struct XJobDevMode {
    XJobDevMode() = default;

    /// A device mode that ends before one of its fields has zeros there.
    explicit XJobDevMode(const DEVMODEW& devMode);

    long paperLength = 0;
    long paperWidth = 0;
    DWORD fields = 0; ///< `dmFields` as it stands
    short orientation = 0;
    short paperSize = 0;
    short rawPaperLength = 0;
    short rawPaperWidth = 0;
    short copies = 0;
    wchar_t formName[16] = {}; ///< cut, and without terminator then
};
