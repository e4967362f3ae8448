// SPDX-License-Identifier: MIT
#include "LaunchedProgram.h"

#include "foundation/Platform.h"

#include <string>

#include "foundation/OHandle.h"

namespace {

/// The last word of the command line.
std::wstring Name()
{
    const std::wstring commandLine = ::GetCommandLineW();
    return commandLine.substr(commandLine.rfind(L' ') + 1);
}

void Report(LaunchReport& report)
{
    STARTUPINFOW startup{};
    ::GetStartupInfoW(&startup);
    report.startupFlags = startup.dwFlags;
    report.show = startup.wShowWindow;
}

} // namespace

int main()
{
    const std::wstring name = Name();
    const OWaitHandle go(::OpenEventW(SYNCHRONIZE, FALSE, (name + goSuffix).c_str()));
    const OWaitHandle done(::OpenEventW(EVENT_MODIFY_STATE, FALSE, (name + doneSuffix).c_str()));
    const OFileHandle memory(::OpenFileMappingW(FILE_MAP_WRITE, FALSE, name.c_str()));
    void* view = ::MapViewOfFile(memory.Get(), FILE_MAP_WRITE, 0, 0, sizeof(LaunchReport));
    if (!view || ::WaitForSingleObject(go.Get(), launchLimitMs) != WAIT_OBJECT_0) return 1;
    Report(*static_cast<LaunchReport*>(view));
    ::SetEvent(done.Get());
    return 0;
}
