// SPDX-License-Identifier: MIT
#include "spooler/config/SavedFile.h"

#include "foundation/OHandle.h"

namespace {

DWORD WriteNewFile(const std::wstring& path, std::string_view text)
{
    const OFileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return ::GetLastError();
    DWORD written = 0;
    const BOOL done = ::WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    if (!done) return ::GetLastError();
    return written == text.size() ? ERROR_SUCCESS : ERROR_DISK_FULL;
}

} // namespace

DWORD WriteSavedFile(const std::wstring& path, std::string_view text)
{
    const std::wstring unfinished = path + L"." + std::to_wstring(::GetCurrentProcessId()) + L".new";
    DWORD error = WriteNewFile(unfinished, text);
    if (error == ERROR_SUCCESS && !::MoveFileExW(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
        error = ::GetLastError();
    if (error != ERROR_SUCCESS) ::DeleteFileW(unfinished.c_str());
    return error;
}
