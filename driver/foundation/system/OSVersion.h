// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Where the version of the running system and its metrics come from.
struct OSVersionSource {
    BOOL(WINAPI* version)(OSVERSIONINFOW* version); ///< as GetVersionExW: fills as much as dwOSVersionInfoSize says
    int(WINAPI* metric)(int index);                 ///< as GetSystemMetrics
};

/// The version of the running system by the source that is set. The caller sets `dwOSVersionInfoSize`, to the size of
/// an OSVERSIONINFOW (276 bytes) or of an OSVERSIONINFOEXW. False, with the last error set, if there is no version.
bool GetOSVersion(OSVERSIONINFOW& version) noexcept;

/// One system metric by the source that is set.
int GetOSMetric(int index) noexcept;

/// Replaces the source of both and gives the one before; null restores the platform's own. The source isn't
/// copied: it must live until it is replaced. For tests.
const OSVersionSource* SetOSVersionSource(const OSVersionSource* source) noexcept;
