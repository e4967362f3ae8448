// SPDX-License-Identifier: MIT
#include "foundation/DebugHelp.h"

#include <array>

#include "foundation/ImportedFunction.h"

namespace {

constexpr DWORD maximumNameLength = 1024;

std::wstring EnvironmentText(const wchar_t* name)
{
    wchar_t text[MAX_PATH];
    const DWORD length = ::GetEnvironmentVariableW(name, text, MAX_PATH);
    return length < MAX_PATH ? std::wstring(text, length) : std::wstring();
}

/// The library of the debugging tools, where they are installed, is newer than the platform's own.
OModuleHandle LoadLibraryOfDebugHelp()
{
    for (const wchar_t* const folder : {L"SYSTEMROOT", L"ProgramFiles", L"ProgramFiles(x86)"}) {
        const std::wstring path = EnvironmentText(folder) + L"\\Debugging Tools for Windows\\dbghelp.dll";
        if (OModuleHandle library{::LoadLibraryW(path.c_str())}) return library;
    }
    return OModuleHandle(::LoadLibraryW(L"dbghelp.dll"));
}

HANDLE DuplicateOwnProcess() noexcept
{
    HANDLE process = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), ::GetCurrentProcess(), ::GetCurrentProcess(), &process, 0, FALSE,
                      DUPLICATE_SAME_ACCESS);
    return process;
}

} // namespace

OCriticalSection& DebugHelpLock()
{
    static OCriticalSection lock;
    return lock;
}

DebugHelp::DebugHelp(const std::wstring& searchPath)
    : _library(LoadLibraryOfDebugHelp()), _process(DuplicateOwnProcess())
{
    if (!_library || !_process || !ImportFunctions()) return;
    _setOptions(_getOptions() | SYMOPT_LOAD_LINES | SYMOPT_DEFERRED_LOADS | SYMOPT_UNDNAME |
                SYMOPT_FAIL_CRITICAL_ERRORS);
    _started = _initialize(_process.Get(), searchPath.c_str(), FALSE);
}

DebugHelp::~DebugHelp()
{
    if (_started) _cleanup(_process.Get());
}

bool DebugHelp::ImportFunctions() noexcept
{
    const auto import = [this]<typename Function>(Function*& function, const char* name) {
        function = ImportedFunction<Function>(_library.Get(), name);
        return function != nullptr;
    };
    return import(_initialize, "SymInitializeW") && import(_cleanup, "SymCleanup") &&
           import(_getOptions, "SymGetOptions") && import(_setOptions, "SymSetOptions") &&
           import(_loadModule, "SymLoadModuleExW") && import(_stackWalk, "StackWalk64") &&
           import(_functionTable, "SymFunctionTableAccess64") && import(_moduleBase, "SymGetModuleBase64") &&
           import(_symbolOf, "SymGetSymFromAddr64") && import(_lineOf, "SymGetLineFromAddr64") &&
           import(_moduleOf, "SymGetModuleInfo64");
}

bool DebugHelp::LoadSymbols(const LoadedModule& module) noexcept
{
    return _loadModule(_process.Get(), nullptr, module.path.c_str(), nullptr, module.base, module.size, nullptr, 0);
}

bool DebugHelp::NextFrame(STACKFRAME64& frame, CONTEXT& context) noexcept
{
    return _stackWalk(IMAGE_FILE_MACHINE_AMD64, _process.Get(), ::GetCurrentThread(), &frame, &context, nullptr,
                      _functionTable, _moduleBase, nullptr);
}

std::optional<DebugHelp::Symbol> DebugHelp::FindSymbol(DWORD64 address)
{
    alignas(IMAGEHLP_SYMBOL64) std::array<char, sizeof(IMAGEHLP_SYMBOL64) + maximumNameLength> room{};
    auto* const symbol = reinterpret_cast<IMAGEHLP_SYMBOL64*>(room.data());
    symbol->SizeOfStruct = sizeof *symbol;
    symbol->MaxNameLength = maximumNameLength;
    DWORD64 offset = 0;
    if (!_symbolOf(_process.Get(), address, &offset, symbol)) return std::nullopt;
    return Symbol{symbol->Name, offset};
}

std::optional<DebugHelp::Line> DebugHelp::FindLine(DWORD64 address)
{
    IMAGEHLP_LINE64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD offset = 0;
    if (!_lineOf(_process.Get(), address, &offset, &line)) return std::nullopt;
    return Line{line.FileName, line.LineNumber};
}

std::optional<std::string> DebugHelp::FindModule(DWORD64 address)
{
    IMAGEHLP_MODULE64 module{};
    module.SizeOfStruct = sizeof module;
    if (!_moduleOf(_process.Get(), address, &module)) return std::nullopt;
    return module.ModuleName;
}
