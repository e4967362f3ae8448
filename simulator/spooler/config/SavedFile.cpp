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

/// Somebody who reads the file has it open for a moment.
bool IsInUse(DWORD error)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
}

DWORD Replace(const std::wstring& path, const std::wstring& file)
{
    constexpr int attempts = 20;
    constexpr DWORD pauseMs = 5;
    DWORD error = ERROR_SUCCESS;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (attempt > 0) ::Sleep(pauseMs);
        if (::MoveFileExW(file.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) return ERROR_SUCCESS;
        error = ::GetLastError();
        if (!IsInUse(error)) break;
    }
    return error;
}

} // namespace

DWORD WriteSavedFile(const std::wstring& path, std::string_view text)
{
    const std::wstring unfinished = path + L"." + std::to_wstring(::GetCurrentProcessId()) + L".new";
    DWORD error = WriteNewFile(unfinished, text);
    if (error == ERROR_SUCCESS) error = Replace(path, unfinished);
    if (error != ERROR_SUCCESS) ::DeleteFileW(unfinished.c_str());
    return error;
}
