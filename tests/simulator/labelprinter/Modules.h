// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <filesystem>
#include <string>

/// A file in the folder of the test program.
inline std::wstring ModulePath(const wchar_t* name)
{
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return (std::filesystem::path(program).parent_path() / name).wstring();
}

/// One of the simulator's modules from there.
inline OModuleHandle LoadModule(const wchar_t* name)
{
    return OModuleHandle(::LoadLibraryW(ModulePath(name).c_str()));
}
