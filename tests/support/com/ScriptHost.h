// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/ScriptObject.h"

#include <activscp.h>
#include <wrl/client.h>

#include <string>

/// Runs scripts in this process, in the apartment of the thread that makes it.
///
/// Ownership: the engine is closed at the end, and with it goes what the scripts still hold. Threads: its own only.
/// Errors:    throws std::runtime_error if the platform has no such engine.
class ScriptHost {
public:
    /// `language` is the engine's program identifier: "VBScript" or "JScript".
    explicit ScriptHost(const wchar_t* language);
    ScriptHost(const ScriptHost&) = delete;
    ScriptHost& operator=(const ScriptHost&) = delete;
    ~ScriptHost();

    /// A function that scripts call as `Host.name`.
    void AddFunction(const std::wstring& name, ScriptObject::Function function);

    /// Runs `script` to its end. Gives the error that ended it as "line 3: text", or "" if none did.
    std::string Run(const std::wstring& script);

private:
    class Site;

    Microsoft::WRL::ComPtr<ScriptObject> _object;
    Microsoft::WRL::ComPtr<Site> _site;
    Microsoft::WRL::ComPtr<IActiveScript> _engine;
};
