// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Platform.h"

constexpr DWORD msPerSecond = 1000;
constexpr DWORD minutesOfDay = 24 * 60; ///< times of day are minutes since midnight
