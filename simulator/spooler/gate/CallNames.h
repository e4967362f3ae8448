// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/SpoolerControl.h"

/// Name of the exported function; empty for a number outside the enumeration.
const wchar_t* CallName(SpoolerCall call) noexcept;
