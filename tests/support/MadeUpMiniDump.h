// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <dbghelp.h>

#include "support/ImportHook.h"

/// Stands in for the platform's writing of minidumps, which takes seconds, for a scope. The file stays empty.
class MadeUpMiniDump {
public:
    /// What the platform was asked for.
    struct Request {
        HANDLE process;
        DWORD processId;
        MINIDUMP_TYPE type;
        MINIDUMP_EXCEPTION_INFORMATION exception;
    };

    MadeUpMiniDump();

    static inline Request request; ///< the last one
    static inline BOOL result;     ///< what the platform answers; TRUE at the beginning of a scope

private:
    static BOOL WINAPI Write(HANDLE process, DWORD processId, HANDLE file, MINIDUMP_TYPE type,
                             MINIDUMP_EXCEPTION_INFORMATION* exception, MINIDUMP_USER_STREAM_INFORMATION* stream,
                             MINIDUMP_CALLBACK_INFORMATION* callback);
    static FARPROC Find(HMODULE module, const char* name);

    using Finder = FARPROC(HMODULE, const char*);
    static inline Finder* find;

    ImportHook<Finder> _getProcAddress{"GetProcAddress", Find};
};
