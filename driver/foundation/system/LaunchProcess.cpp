// SPDX-License-Identifier: MIT
#include "foundation/system/LaunchProcess.h"

#include <string>

#include "foundation/OHandle.h"

bool LaunchProcess(const OString& commandLine, WORD show)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = show;

    // The platform may write into the command line.
    std::wstring text(commandLine.wstring());
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, text.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        return false;
    }
    const OWaitHandle thread(process.hThread);
    const OWaitHandle started(process.hProcess);
    return true;
}
