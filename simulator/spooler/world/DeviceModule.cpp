// SPDX-License-Identifier: MIT
#include "spooler/world/DeviceModule.h"

#include "foundation/ImportedFunction.h"

namespace {

/// With the backslash at its end.
std::wstring OwnFolder()
{
    HMODULE self = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<const wchar_t*>(&OwnFolder), &self);
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(self, path, MAX_PATH);
    const std::wstring_view file = path;
    return std::wstring(file.substr(0, file.rfind(L'\\') + 1));
}

std::wstring FullPath(const std::wstring& path)
{
    return path.find_first_of(L"\\/") == std::wstring::npos ? OwnFolder() + path : path;
}

const SpoolerDevice* FunctionsOf(HMODULE module)
{
    const auto call = ImportedFunction<SpoolerDeviceFunctionsCall>(module, spoolerDeviceFunctionsName);
    const SpoolerDevice* const functions = call ? call() : nullptr;
    return functions && functions->size >= sizeof *functions ? functions : nullptr;
}

} // namespace

DWORD ConnectDevice(PortRecord& port, const std::wstring& path)
{
    const HMODULE module = ::LoadLibraryW(FullPath(path).c_str());
    if (!module) return ::GetLastError();
    const SpoolerDevice* const functions = FunctionsOf(module);
    if (!functions) {
        ::FreeLibrary(module);
        return ERROR_PROC_NOT_FOUND;
    }
    port.devicePath = path;
    port.device = functions;
    return ERROR_SUCCESS;
}
