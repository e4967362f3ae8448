// SPDX-License-Identifier: MIT
#include "foundation/failures/MiniDump.h"

#include <dbghelp.h>

#include <cwchar>

#include "foundation/failures/DebugHelp.h"
#include "foundation/files/SystemFolders.h"
#include "foundation/ImportedFunction.h"
#include "foundation/OHandle.h"
#include "foundation/OLockGuard.h"

namespace {

constexpr int dumpsKept = 10000;

/// Empty if there is no such folder and none can be made.
std::wstring DumpFolder()
{
    const OString temporaryFolder = GetTemporaryFolder();
    if (temporaryFolder.IsEmpty()) return L"";
    std::wstring path = std::wstring(temporaryFolder.wstring()) + L"MarrowfieldLabs";
    if (!::CreateDirectoryW(path.c_str(), nullptr) && ::GetLastError() != ERROR_ALREADY_EXISTS) return L"";
    return path;
}

/// Empty if all names are taken.
std::wstring FreeDumpPath(const std::wstring& folder)
{
    for (int number = 0; number < dumpsKept; ++number) {
        wchar_t name[32];
        std::swprintf(name, std::size(name), L"\\kvcrash_%04d.dmp", number);
        std::wstring path = folder + name;
        if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return path;
    }
    return L"";
}

} // namespace

std::wstring WriteMiniDump(EXCEPTION_POINTERS* pointers)
{
    const OLockGuard guard(DebugHelpLock());
    const OModuleHandle library(::LoadLibraryW(L"dbghelp.dll"));
    if (!library) return L"";
    const auto write = ImportedFunction<decltype(::MiniDumpWriteDump)>(library.Get(), "MiniDumpWriteDump");
    if (!write) return L"";

    const std::wstring folder = DumpFolder();
    if (folder.empty()) return L"";
    const std::wstring path = FreeDumpPath(folder);
    if (path.empty()) return L"";
    const OFileHandle file(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return L"";

    MINIDUMP_EXCEPTION_INFORMATION exception{};
    exception.ThreadId = ::GetCurrentThreadId();
    exception.ExceptionPointers = pointers;
    exception.ClientPointers = TRUE;
    const BOOL written =
        write(::GetCurrentProcess(), ::GetCurrentProcessId(), file.Get(), MiniDumpNormal, &exception, nullptr, nullptr);
    return written ? path : L"";
}
