// SPDX-License-Identifier: MIT
#include "support/TemporaryDirectory.h"

#include "foundation/Platform.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <system_error>

namespace {

std::filesystem::path FreshPath()
{
    static std::atomic<unsigned> made = 0;
    const std::wstring name = L"vorlane-test-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
                              std::to_wstring(::GetTickCount64()) + L"-" + std::to_wstring(++made);
    return std::filesystem::temp_directory_path() / name;
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : _path(FreshPath())
{
    std::filesystem::create_directories(_path);
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

std::wstring TemporaryDirectory::Path(std::wstring_view name) const
{
    std::filesystem::path path = name.empty() ? _path : _path / name;
    return path.make_preferred().native();
}

std::wstring TemporaryDirectory::Make(std::wstring_view name, std::string_view contents) const
{
    std::ofstream file(_path / name, std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return Path(name);
}

std::string TemporaryDirectory::Contents(std::wstring_view name) const
{
    std::ifstream file(_path / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryDirectory::Has(std::wstring_view name) const
{
    return std::filesystem::exists(_path / name);
}
