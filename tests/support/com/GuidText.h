// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>

/// "{66E50781-862E-4983-927E-08E858EA3187}"
std::string GuidText(const GUID& guid);

/// Throws std::runtime_error for anything else.
GUID GuidFromText(const std::string& text);
