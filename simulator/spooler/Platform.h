// SPDX-License-Identifier: MIT
#pragma once

/// The one way by which the simulator and its users include the platform's headers.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <windows.h>
#include <winspool.h>
