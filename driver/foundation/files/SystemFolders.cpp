// SPDX-License-Identifier: MIT
#include "foundation/files/SystemFolders.h"

#include "foundation/Platform.h"

namespace {

OString Folder(UINT(WINAPI* getFolder)(wchar_t*, UINT))
{
    wchar_t path[MAX_PATH];
    const UINT length = getFolder(path, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? OString() : OString(path);
}

} // namespace

OString GetSystemFolder()
{
    return Folder(::GetSystemDirectoryW);
}

OString GetWindowsFolder()
{
    return Folder(::GetWindowsDirectoryW);
}

OString GetTemporaryFolder()
{
    return Folder([](wchar_t* path, UINT size) -> UINT { return ::GetTempPathW(size, path); });
}
