// SPDX-License-Identifier: MIT
#include "support/MadeUpMiniDump.h"

#include <string_view>

MadeUpMiniDump::MadeUpMiniDump()
{
    request = {};
    result = TRUE;
    find = _getProcAddress.Original();
}

BOOL MadeUpMiniDump::Write(HANDLE process, DWORD processId, HANDLE, MINIDUMP_TYPE type,
                           MINIDUMP_EXCEPTION_INFORMATION* exception, MINIDUMP_USER_STREAM_INFORMATION*,
                           MINIDUMP_CALLBACK_INFORMATION*)
{
    request = {process, processId, type, *exception};
    return result;
}

FARPROC MadeUpMiniDump::Find(HMODULE module, const char* name)
{
    if (std::string_view(name) != "MiniDumpWriteDump") return find(module, name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(Write));
}
