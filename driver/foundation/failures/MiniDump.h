// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>

/// Writes a minidump of the own process, with the calling thread as the one that failed at `pointers`, into the folder
/// "MarrowfieldLabs" of the folder for temporary files: "kvcrash_0000.dmp" to "kvcrash_9999.dmp", the first that
/// doesn't exist. Gives its path, or an empty text if none was written: no name free, no folder, no debug help.
std::wstring WriteMiniDump(EXCEPTION_POINTERS* pointers);
