// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "foundation/text/OString.h"

/// Times of the day as a schedule takes and gives them: texts in local time outside, minutes since midnight UTC inside.
/// The date of today decides whether daylight saving counts.

/// What `ParseDayTime` gives for a text that is no time, and for an empty one, which clears a time window.
inline constexpr long noDayTime = -1;
inline constexpr long clearedDayTime = static_cast<long>(0xCDCDCDCD);

/// Hour and minute out of "8", "08:30", "8:30 pm", "8 a.m." and the like. What follows a second ":" counts for nothing.
long ParseDayTime(const OString& text);

/// "HH:MM"; empty above 1440 minutes.
OString FormatDayTime(DWORD minutes);
