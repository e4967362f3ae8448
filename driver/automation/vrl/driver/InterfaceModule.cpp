// SPDX-License-Identifier: MIT
#include "vrl/driver/InterfaceModule.h"

#include "foundation/OGuardedBlock.h"

#include <cstring>
#include <cwchar>

namespace {

using OpenFunction = void*(HANDLE printer);
using HandleFunction = void(void* driver);
using FileFunction = void(void* driver, const wchar_t* fileName, DWORD mask);
using MaskFunction = void(void* driver, DWORD mask);

/// Calls an export if it is there, and tells whether it is.
template <typename Function, typename... Arguments>
bool CallExport(const DriverModule& module, const char* name, Arguments... arguments)
{
    Function* const function = module.Find<Function>(name);
    if (function) function(arguments...);
    return function != nullptr;
}

/// The driver has a copy of the file name for itself: what it writes there, and past it, does no harm. False without
/// memory for it.
bool CallWithFile(const DriverModule& module, const char* name, void* driver, const wchar_t* fileName, DWORD mask)
{
    const size_t size = (std::wcslen(fileName) + 1) * sizeof(wchar_t);
    const OGuardedBlock copy(size);
    if (!copy) return false;
    std::memcpy(copy.Data(), fileName, size);
    return CallExport<FileFunction>(module, name, driver, reinterpret_cast<const wchar_t*>(copy.Data()), mask);
}

} // namespace

bool ReadInterfacePath(HANDLE printer, InterfacePath& path)
{
    path = {};
    DWORD needed = 0;
    return ::GetPrinterDataW(printer, const_cast<wchar_t*>(L"VRL Interface"), nullptr,
                             reinterpret_cast<BYTE*>(path.data()), dataTextLength * sizeof(wchar_t),
                             &needed) == ERROR_SUCCESS;
}

void* InterfaceModule::Open(HANDLE printer) const
{
    OpenFunction* const open = _module.Find<OpenFunction>("VRL_Printer_Open");
    return open ? open(printer) : nullptr;
}

void InterfaceModule::Close(void* driver) const
{
    CallExport<HandleFunction>(_module, "VRL_Printer_Close", driver);
}

void InterfaceModule::Save(void* driver) const
{
    CallExport<HandleFunction>(_module, "VRL_Settings_Save", driver);
}

bool InterfaceModule::Import(void* driver, const wchar_t* fileName, DWORD mask) const
{
    return CallWithFile(_module, "VRL_Settings_Import", driver, fileName, mask);
}

bool InterfaceModule::Export(void* driver, const wchar_t* fileName, DWORD mask) const
{
    return CallWithFile(_module, "VRL_Settings_Export", driver, fileName, mask);
}

bool InterfaceModule::Reset(void* driver, DWORD mask) const
{
    return CallExport<MaskFunction>(_module, "VRL_Settings_Reset", driver, mask);
}
