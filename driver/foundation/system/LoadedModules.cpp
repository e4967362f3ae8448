// SPDX-License-Identifier: MIT
#include "foundation/system/LoadedModules.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <array>

#include "foundation/ImportedFunction.h"
#include "foundation/OHandle.h"

namespace {

std::vector<LoadedModule> ListBySnapshot(HMODULE library)
{
    const auto createSnapshot =
        ImportedFunction<decltype(::CreateToolhelp32Snapshot)>(library, "CreateToolhelp32Snapshot");
    const auto first = ImportedFunction<decltype(::Module32FirstW)>(library, "Module32FirstW");
    const auto next = ImportedFunction<decltype(::Module32NextW)>(library, "Module32NextW");
    std::vector<LoadedModule> modules;
    if (!createSnapshot || !first || !next) return modules;

    const OWaitHandle snapshot(createSnapshot(TH32CS_SNAPMODULE, ::GetCurrentProcessId()));
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL found = snapshot && first(snapshot.Get(), &entry); found; found = next(snapshot.Get(), &entry)) {
        modules.push_back({entry.szExePath, reinterpret_cast<DWORD64>(entry.modBaseAddr), entry.modBaseSize});
    }
    return modules;
}

std::vector<LoadedModule> ListByProcessStatus(HMODULE library)
{
    const auto enumerate = ImportedFunction<decltype(::EnumProcessModules)>(library, "EnumProcessModules");
    const auto getPath = ImportedFunction<decltype(::GetModuleFileNameExW)>(library, "GetModuleFileNameExW");
    const auto getInformation = ImportedFunction<decltype(::GetModuleInformation)>(library, "GetModuleInformation");
    std::vector<LoadedModule> modules;
    if (!enumerate || !getPath || !getInformation) return modules;

    std::array<HMODULE, 1024> handles;
    DWORD bytes = 0;
    if (!enumerate(::GetCurrentProcess(), handles.data(), sizeof handles, &bytes)) return modules;
    const size_t count = std::min(handles.size(), bytes / sizeof(HMODULE));
    for (size_t index = 0; index < count; ++index) {
        wchar_t path[MAX_PATH];
        MODULEINFO information{};
        if (!getInformation(::GetCurrentProcess(), handles[index], &information, sizeof information)) continue;
        const DWORD length = getPath(::GetCurrentProcess(), handles[index], path, MAX_PATH);
        modules.push_back(
            {std::wstring(path, length), reinterpret_cast<DWORD64>(information.lpBaseOfDll), information.SizeOfImage});
    }
    return modules;
}

struct Listing {
    const wchar_t* fileName;
    std::vector<LoadedModule> (*list)(HMODULE library);
};

constexpr std::array listings{
    Listing{L"kernel32.dll", ListBySnapshot     },
    Listing{L"tlhelp32.dll", ListBySnapshot     },
    Listing{L"psapi.dll",    ListByProcessStatus},
};

} // namespace

std::vector<LoadedModule> ListLoadedModules()
{
    for (const Listing& listing : listings) {
        const OModuleHandle library(::LoadLibraryW(listing.fileName));
        if (!library) continue;
        std::vector<LoadedModule> modules = listing.list(library.Get());
        if (!modules.empty()) return modules;
    }
    return {};
}
