// SPDX-License-Identifier: MIT
#include "foundation/failures/DebugHelp.h"

#include <array>
#include <memory>
#include <string>

#include "foundation/ImportedFunction.h"
#include "foundation/files/PathParts.h"
#include "foundation/system/ModuleInstance.h"

namespace {

constexpr DWORD maximumNameLength = 1024;

std::wstring CurrentFolder()
{
    wchar_t folder[MAX_PATH];
    const DWORD length = ::GetCurrentDirectoryW(MAX_PATH, folder);
    return length < MAX_PATH ? std::wstring(folder, length) : std::wstring();
}

std::wstring ProgramFolder()
{
    return GetFolderPart(GetModuleName(nullptr)).wstring();
}

std::wstring EnvironmentText(const wchar_t* name)
{
    std::wstring text(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    text.resize(::GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
    return text;
}

std::wstring SearchPath()
{
    const std::array folders{CurrentFolder(), ProgramFolder(), EnvironmentText(L"_NT_SYMBOL_PATH"),
                             EnvironmentText(L"_NT_ALTERNATE_SYMBOL_PATH"), EnvironmentText(L"SYSTEMROOT")};
    std::wstring path;
    for (const std::wstring& folder : folders) {
        if (!folder.empty()) path += folder + L';';
    }
    return path;
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

/// Owner of the session that is kept.
class KeptSession {
public:
    static std::unique_ptr<DebugHelp>& Get() noexcept REQUIRES(DebugHelpLock())
    {
        static KeptSession session;
        return session._session;
    }
    KeptSession(const KeptSession&) = delete;
    KeptSession& operator=(const KeptSession&) = delete;

private:
    KeptSession() noexcept = default;

    /// When the process ends, the library may have ended before: then the session is left to the platform. Without the
    /// lock on purpose: no other thread is left, and the lock may be gone already.
    ~KeptSession() NO_THREAD_SAFETY_ANALYSIS
    {
        const auto isShutdown =
            ImportedFunction<BOOLEAN NTAPI()>(::GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress");
        if (isShutdown && isShutdown()) static_cast<void>(_session.release());
    }

    std::unique_ptr<DebugHelp> _session GUARDED_BY(DebugHelpLock());
};

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

DebugHelp::DebugHelp() : _searchPath(SearchPath()), _library(LoadLibraryOfDebugHelp()), _process(DuplicateOwnProcess())
{
    if (!_library || !_process || !ImportFunctions()) return;
    _setOptions(_getOptions() | SYMOPT_LOAD_LINES | SYMOPT_DEFERRED_LOADS | SYMOPT_UNDNAME |
                SYMOPT_FAIL_CRITICAL_ERRORS);
    _started = _initialize(_process.Get(), _searchPath.c_str(), FALSE);
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
           import(_loadModule, "SymLoadModuleExW") && import(_unloadModule, "SymUnloadModule64") &&
           import(_stackWalk, "StackWalk64") && import(_functionTable, "SymFunctionTableAccess64") &&
           import(_moduleBase, "SymGetModuleBase64") && import(_symbolOf, "SymGetSymFromAddr64") &&
           import(_lineOf, "SymGetLineFromAddr64") && import(_moduleOf, "SymGetModuleInfo64");
}

DebugHelp* DebugHelp::Kept()
{
    std::unique_ptr<DebugHelp>& kept = KeptSession::Get();
    if (!kept) kept = std::make_unique<DebugHelp>();
    if (!kept->IsStarted()) kept.reset();
    return kept.get();
}

void DebugHelp::EndKept() noexcept
{
    KeptSession::Get().reset();
}

void DebugHelp::LoadSymbols(const LoadedModule& module)
{
    std::wstring& loadedPath = _loadedPaths[module.base];
    if (loadedPath == module.path) return;
    if (!loadedPath.empty()) _unloadModule(_process.Get(), module.base);
    loadedPath = module.path;
    _loadModule(_process.Get(), nullptr, module.path.c_str(), nullptr, module.base, module.size, nullptr, 0);
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
