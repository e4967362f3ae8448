// SPDX-License-Identifier: MIT
#include "foundation/files/SystemFolders.h"

#include "foundation/Platform.h"

#include <iterator>

namespace {

OString Folder(UINT(WINAPI* getFolder)(wchar_t*, UINT))
{
    wchar_t path[260];
    const UINT length = getFolder(path, static_cast<UINT>(std::size(path)));
    return length == 0 || length >= std::size(path) ? OString() : OString(path);
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
