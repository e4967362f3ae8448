// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// The ProgID of one of the module's classes, as error information names its source; null for any other class. A text
/// that lives as long as the process. The class table defines it: what the machine has registered plays no part.
const wchar_t* ProgramIdOf(const CLSID& classId) noexcept;
