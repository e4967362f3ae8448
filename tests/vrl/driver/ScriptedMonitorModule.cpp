// SPDX-License-Identifier: MIT
/// A port monitor that does what the test wants in whose program it is.

#include "foundation/ImportedFunction.h"
#include "support/driver/ScriptedMonitor.h"

namespace {

ScriptedMonitor* Script()
{
    return ImportedFunction<ScriptedMonitor*()>(::GetModuleHandleW(nullptr), "CurrentScriptedMonitor")();
}

} // namespace

extern "C" {

__declspec(dllexport) DWORD SendQRMLRequest(const wchar_t* printer, const char* request, void** response)
{
    return Script()->sendRequest(printer, request, response);
}

__declspec(dllexport) LONG HTTPResponse_Size(void* response)
{
    return Script()->size(response);
}

__declspec(dllexport) void HTTPResponse_Data(void* response, BYTE* buffer)
{
    Script()->data(response, buffer);
}

__declspec(dllexport) void HTTPResponse_Free(void* response)
{
    Script()->free(response);
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*)
{
    ScriptedMonitor* const script = Script();
    if (script && reason == DLL_PROCESS_ATTACH) script->OnLoad();
    if (script && reason == DLL_PROCESS_DETACH) script->OnUnload();
    return TRUE;
}
}
