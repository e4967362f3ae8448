// SPDX-License-Identifier: MIT
#include "spooler/config/InputFile.h"

#include "foundation/OHandle.h"

Bytes ReadWholeFile(const std::wstring& path, DWORD& error)
{
    const OFileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    error = file ? ERROR_SUCCESS : ::GetLastError();
    if (!file) return {};
    Bytes bytes(::GetFileSize(file.Get(), nullptr));
    DWORD read = 0;
    if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
        error = ::GetLastError();
    bytes.resize(read);
    return bytes;
}
