// SPDX-License-Identifier: MIT
#include "support/driver/ModuleCopy.h"

#include "foundation/Platform.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

[[noreturn]] void GiveUp(const std::string& why)
{
    std::cerr << "CopyModule: " << why << std::endl;
    std::abort();
}

std::filesystem::path ProgramFolder()
{
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).parent_path();
}

} // namespace

void CopyModule(const wchar_t* fileName, const std::wstring& path, const char* without)
{
    std::ifstream original(ProgramFolder() / fileName, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(original), {}};
    if (bytes.empty()) GiveUp("the module isn't there");

    if (without) {
        // Only the last letter changes, so that the table of names stays in order. The name may also be a literal of
        // the module's own, in front of the table.
        const std::string name = std::string(1, '\0') + without + '\0';
        size_t position = bytes.find(name);
        if (position == std::string::npos) GiveUp("the module has no such export");
        for (; position != std::string::npos; position = bytes.find(name, position)) {
            bytes[position + name.size() - 2] = '~';
        }
    }
    std::ofstream copy(std::filesystem::path(path), std::ios::binary);
    copy << bytes;
    if (!copy.flush()) GiveUp("the copy can't be written");
}
