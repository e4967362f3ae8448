// SPDX-License-Identifier: MIT
#include "bench/Machine.h"

#include "support/product/LabelPrinterSetup.h"

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

namespace {

std::string Today()
{
    const std::time_t now = std::time(nullptr);
    char text[11] = {};
    std::strftime(text, sizeof text, "%Y-%m-%d", std::gmtime(&now));
    return text;
}

std::string Processor()
{
    char name[128] = "unknown processor";
    DWORD size = sizeof name;
    ::RegGetValueA(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", "ProcessorNameString",
                   RRF_RT_REG_SZ, nullptr, name, &size);
    return name;
}

/// Of the processors, those that this process may use.
int Processors()
{
    DWORD_PTR ours = 0;
    DWORD_PTR all = 0;
    ::GetProcessAffinityMask(::GetCurrentProcess(), &ours, &all);
    return __builtin_popcountll(ours);
}

std::string System()
{
    using WineVersion = const char*();
    const FARPROC wineVersion = ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
    if (!wineVersion) return "Windows";
    return std::string("Wine ") + reinterpret_cast<WineVersion*>(reinterpret_cast<void*>(wineVersion))();
}

uintmax_t SizeBesideProgram(const wchar_t* fileName)
{
    std::error_code none;
    const uintmax_t size = std::filesystem::file_size(ProgramFolder() / fileName, none);
    return none ? 0 : size;
}

} // namespace

void PrintMachine()
{
    std::printf("%s, %s, %d of %s.\n\n", Today().c_str(), System().c_str(), Processors(), Processor().c_str());
    std::printf("Vorlane.dll has %llu bytes, its symbols in Vorlane.dll.debug have %llu.\n\n",
                SizeBesideProgram(L"Vorlane.dll"), SizeBesideProgram(L"Vorlane.dll.debug"));
}
