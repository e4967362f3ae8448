// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/text/OString.h"

/// What the running system is called and which one it is.
struct OSInfo {
    OString name;            ///< "Windows XP"; every system after 6.0 is called "Windows 8.0"
    OString edition;         ///< "Professional"; empty for an unknown product type
    OString version;         ///< "Build 2600 (Service Pack 3)"
    DWORD major = 0;         ///< of the version number
    DWORD minor = 0;         ///< of the version number
    OString servicePackText; ///< "Service Pack 3", or empty
    DWORD servicePack = 0;   ///< its major number in the high word, its minor number in the low word
};

/// Reads the record by the version source (see OSVersion.h). Without a version all numbers are 0 and the texts are
/// those of version 0.0.
OSInfo GetOSInfo();

/// One bit for each system that `IsOSAtLeast` tells apart: the newest that the running one reaches.
inline constexpr DWORD osVersion40 = 16;  ///< 4.0
inline constexpr DWORD osVersion50 = 32;  ///< 5.0
inline constexpr DWORD osVersion51 = 64;  ///< 5.1
inline constexpr DWORD osVersion52 = 128; ///< 5.2
inline constexpr DWORD osVersion60 = 256; ///< 6.0 and all later ones

/// Whether the bit of the running system is in `versionBits`. A system before 4.0 has no bit.
bool IsOSAtLeast(DWORD versionBits) noexcept;
