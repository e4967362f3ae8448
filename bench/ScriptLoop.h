// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/ScriptHost.h"

#include "vrl/Vorlane.h"

/// A VBScript engine in this process that runs one statement on a printer many times. The statement says `p` for the
/// printer; what the empty loop costs is in the time.
class ScriptLoop {
public:
    explicit ScriptLoop(IPrinter* printer);

    /// Throws std::runtime_error with the script's error if it has one.
    void Run(const wchar_t* statement, int times);

private:
    void RunScript(const std::wstring& script);

    ScriptHost _host;
};
