// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/system/LoadedModules.h"
#include "foundation/OCriticalSection.h"
#include "foundation/OHandle.h"
#include "foundation/Platform.h"

#include <dbghelp.h>

#include <map>
#include <optional>
#include <string>

/// The lock for every use of the debug help library, which isn't thread-safe.
OCriticalSection& DebugHelpLock();

/// A session of the platform's debug help library for the own process.
///
/// Ownership: loads the library and starts the session; the destructor ends both. Usually the one of `Kept` is used:
///            reading symbols takes long, so one session serves many call stacks.
/// Threading: under `DebugHelpLock`.
class DebugHelp {
public:
    struct Symbol {
        std::string name;
        DWORD64 offset; ///< of the address in the function
    };
    struct Line {
        std::string file;
        DWORD number;
    };

    /// Starts the session.
    DebugHelp();
    DebugHelp(const DebugHelp&) = delete;
    DebugHelp& operator=(const DebugHelp&) = delete;
    ~DebugHelp();

    /// Whether the library is there and the session has started; nothing else may be called if not.
    bool IsStarted() const noexcept { return _started; }

    /// The session that is kept for the process, started when it is first needed; null if that fails.
    static DebugHelp* Kept() REQUIRES(DebugHelpLock());
    /// Ends the session of `Kept`. The next one looks for library and search path again.
    static void EndKept() noexcept REQUIRES(DebugHelpLock());

    /// Makes the symbols of `module` known, if they aren't yet.
    void LoadSymbols(const LoadedModule& module) REQUIRES(DebugHelpLock());
    /// The path on which symbols are looked for.
    const std::wstring& GetSearchPath() const noexcept { return _searchPath; }

    /// Steps to the next frame outwards on the calling thread's stack; false at its end.
    bool NextFrame(STACKFRAME64& frame, CONTEXT& context) noexcept REQUIRES(DebugHelpLock());
    std::optional<Symbol> FindSymbol(DWORD64 address) REQUIRES(DebugHelpLock());
    std::optional<Line> FindLine(DWORD64 address) REQUIRES(DebugHelpLock());
    /// The name of the module that contains `address`.
    std::optional<std::string> FindModule(DWORD64 address) REQUIRES(DebugHelpLock());

private:
    bool ImportFunctions() noexcept;

    std::wstring _searchPath;
    OModuleHandle _library;
    OWaitHandle _process; ///< a handle of our own, so that the session is not the host's
    bool _started = false;
    /// Of the modules whose symbols are known, by their base.
    std::map<DWORD64, std::wstring> _loadedPaths GUARDED_BY(DebugHelpLock());

    decltype(::SymInitializeW)* _initialize = nullptr;
    decltype(::SymCleanup)* _cleanup = nullptr;
    decltype(::SymGetOptions)* _getOptions = nullptr;
    decltype(::SymSetOptions)* _setOptions = nullptr;
    decltype(::SymLoadModuleExW)* _loadModule = nullptr;
    decltype(::SymUnloadModule64)* _unloadModule = nullptr;
    decltype(::StackWalk64)* _stackWalk = nullptr;
    decltype(::SymFunctionTableAccess64)* _functionTable = nullptr;
    decltype(::SymGetModuleBase64)* _moduleBase = nullptr;
    decltype(::SymGetSymFromAddr64)* _symbolOf = nullptr;
    decltype(::SymGetLineFromAddr64)* _lineOf = nullptr;
    decltype(::SymGetModuleInfo64)* _moduleOf = nullptr;
};
