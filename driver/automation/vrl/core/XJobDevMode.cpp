// SPDX-License-Identifier: MIT
#include "vrl/core/XJobDevMode.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace {

/// The device mode as far as it says that it reaches; zeros after that.
DEVMODEW WholeDevMode(const DEVMODEW& devMode)
{
    DEVMODEW whole{};
    if (devMode.dmSize > offsetof(DEVMODEW, dmFields)) {
        std::memcpy(&whole, &devMode, std::min<size_t>(devMode.dmSize, sizeof whole));
    }
    return whole;
}

} // namespace

XJobDevMode::XJobDevMode(const DEVMODEW& devMode)
{
    const DEVMODEW given = WholeDevMode(devMode);
    const auto take = [&](DWORD bit, auto& field, auto value) {
        if (given.dmFields & bit) field = value;
    };
    fields = given.dmFields;
    take(DM_ORIENTATION, orientation, given.dmOrientation);
    take(DM_PAPERSIZE, paperSize, given.dmPaperSize);
    take(DM_PAPERLENGTH, paperLength, given.dmPaperLength);
    take(DM_PAPERLENGTH, rawPaperLength, given.dmPaperLength);
    take(DM_PAPERWIDTH, paperWidth, given.dmPaperWidth);
    take(DM_PAPERWIDTH, rawPaperWidth, given.dmPaperWidth);
    take(DM_COPIES, copies, given.dmCopies);
    if (given.dmFields & DM_FORMNAME) std::copy_n(given.dmFormName, std::size(formName), formName);
}
