// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>
#include <vector>

/// One line for each key below `key` and for each value, keys in the registry's order: "A\B", "A\B [name] = text",
/// "A\B [] = text" for the default value, numbers as "d 1". Texts are narrowed. Empty if there is nothing.
std::vector<std::string> RegistryDump(HKEY key);
