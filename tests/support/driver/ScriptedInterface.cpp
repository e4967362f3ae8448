// SPDX-License-Identifier: MIT
#include "support/driver/ScriptedInterface.h"

#include "support/driver/ModuleCopy.h"

namespace {

std::atomic<ScriptedInterface*> current;

} // namespace

ScriptedInterface::ScriptedInterface() : step([](const Call&) {})
{
    current = this;
}

ScriptedInterface::~ScriptedInterface()
{
    current = nullptr;
}

ScriptedInterface* ScriptedInterface::Current() noexcept
{
    return current;
}

void ScriptedInterface::Install(const std::wstring& path, const char* without)
{
    CopyModule(L"scripted_interface.dll", path, without);
}

void* ScriptedInterface::OnCall(const Call& call)
{
    {
        const std::lock_guard guard(_lock);
        _calls.push_back(call);
    }
    step(call);
    return driverHandle;
}

std::vector<ScriptedInterface::Call> ScriptedInterface::Calls() const
{
    const std::lock_guard guard(_lock);
    return _calls;
}

std::vector<std::string> ScriptedInterface::CallNames() const
{
    std::vector<std::string> names;
    for (const Call& call : Calls()) names.push_back(call.name);
    return names;
}

/// By this the module finds the test that it works for.
extern "C" __declspec(dllexport) ScriptedInterface* CurrentScriptedInterface()
{
    return ScriptedInterface::Current();
}
