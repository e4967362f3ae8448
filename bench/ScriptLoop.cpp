// SPDX-License-Identifier: MIT
#include "bench/ScriptLoop.h"

#include <stdexcept>

ScriptLoop::ScriptLoop(IPrinter* printer) : _host(L"VBScript")
{
    const _variant_t object(static_cast<IDispatch*>(printer));
    _host.AddFunction(L"Printer", [object](const std::vector<_variant_t>&) { return object; });
    RunScript(L"Dim p, i, x\nSet p = Host.Printer()\n");
}

void ScriptLoop::Run(const wchar_t* statement, int times)
{
    RunScript(L"For i = 1 To " + std::to_wstring(times) + L"\n" + statement + L"\nNext\n");
}

void ScriptLoop::RunScript(const std::wstring& script)
{
    const std::string error = _host.Run(script);
    if (!error.empty()) throw std::runtime_error(error);
}
