// SPDX-License-Identifier: MIT
/// A driver's interface module that does what the test wants in whose program it is.

#include "foundation/ImportedFunction.h"
#include "support/driver/ScriptedInterface.h"

namespace {

ScriptedInterface* Script()
{
    return ImportedFunction<ScriptedInterface*()>(::GetModuleHandleW(nullptr), "CurrentScriptedInterface")();
}

void CallWithFile(const char* name, void* driver, const wchar_t* fileName, DWORD mask)
{
    Script()->givenFileName = const_cast<wchar_t*>(fileName);
    Script()->OnCall({name, driver, fileName, mask});
}

} // namespace

extern "C" {

__declspec(dllexport) void* VRL_Printer_Open(HANDLE printer)
{
    return Script()->OnCall({"VRL_Printer_Open", printer, L"", 0});
}

__declspec(dllexport) void VRL_Printer_Close(void* driver)
{
    Script()->OnCall({"VRL_Printer_Close", driver, L"", 0});
}

__declspec(dllexport) void VRL_Settings_Save(void* driver)
{
    Script()->OnCall({"VRL_Settings_Save", driver, L"", 0});
}

__declspec(dllexport) void VRL_Settings_Import(void* driver, const wchar_t* fileName, DWORD mask)
{
    CallWithFile("VRL_Settings_Import", driver, fileName, mask);
}

__declspec(dllexport) void VRL_Settings_Export(void* driver, const wchar_t* fileName, DWORD mask)
{
    CallWithFile("VRL_Settings_Export", driver, fileName, mask);
}

__declspec(dllexport) void VRL_Settings_Reset(void* driver, DWORD mask)
{
    Script()->OnCall({"VRL_Settings_Reset", driver, L"", mask});
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*)
{
    ScriptedInterface* const script = Script();
    if (script && reason == DLL_PROCESS_ATTACH) script->OnLoad();
    if (script && reason == DLL_PROCESS_DETACH) script->OnUnload();
    return TRUE;
}
}
