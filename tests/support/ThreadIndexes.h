// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <vector>

/// How many indexes for the data of threads the process has left. A module that uses up one at each load ends the
/// process when there are none.
inline size_t FreeThreadIndexes()
{
    std::vector<DWORD> taken;
    for (DWORD index = ::TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = ::TlsAlloc()) taken.push_back(index);
    for (const DWORD index : taken) ::TlsFree(index);
    return taken.size();
}
