// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/failures/DebugHelp.h"
#include "foundation/Platform.h"

/// Walks a call stack of the calling thread and names its frames, with the platform's debug help library.
///
/// What it finds goes to the overridable `On...` operations; those of this class turn frames and errors into lines and
/// pass them to `OnOutput`. Names come from the symbols in the modules and on the search path.
///
/// Threading: any thread; walks are made one after the other.
/// Errors:    without the library there is no output; what has no name gets a text that says so.
class StackWalker {
public:
    StackWalker() = default;
    StackWalker(const StackWalker&) = delete;
    StackWalker& operator=(const StackWalker&) = delete;
    virtual ~StackWalker() = default;

    /// Walks outwards from the frame of `context`. After 500 frames it says that it leaves out the rest. False
    /// if debug help isn't there or doesn't start.
    bool Walk(const CONTEXT& context);

protected:
    struct Frame {
        DWORD64 address;
        const char* function;
        DWORD64 offset; ///< of `address` in the function; 0 if that has no name
        const char* file;
        DWORD line; ///< 0 if the file has no name
        const char* module;
    };

    /// The path on which debug help looks for symbols.
    virtual void OnSearchPath(const wchar_t* searchPath);
    /// A module of the process, whether its symbols could be loaded or not.
    virtual void OnModule(const wchar_t* path, DWORD64 base, DWORD size);
    virtual void OnFrame(const Frame& frame);
    /// What went wrong at `address`.
    virtual void OnError(const char* text, DWORD64 address);
    /// One line, "\r\n" included.
    virtual void OnOutput(const char* line) = 0;

private:
    void ReportFrames(DebugHelp& debugHelp, CONTEXT context) REQUIRES(DebugHelpLock());
    void ReportFrame(DebugHelp& debugHelp, DWORD64 address) REQUIRES(DebugHelpLock());
};
