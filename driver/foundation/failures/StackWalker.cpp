// SPDX-License-Identifier: MIT
#include "foundation/failures/StackWalker.h"

#include <cstdio>

#include "foundation/OLockGuard.h"

namespace {

/// Enough for any stack that a person reads; one that has overflowed has far more.
constexpr int maximumFrames = 500;

STACKFRAME64 FirstFrame(const CONTEXT& context) noexcept
{
    STACKFRAME64 frame{};
    frame.AddrPC = {context.Rip, 0, AddrModeFlat};
    frame.AddrFrame = {context.Rbp, 0, AddrModeFlat};
    frame.AddrStack = {context.Rsp, 0, AddrModeFlat};
    return frame;
}

} // namespace

bool StackWalker::Walk(const CONTEXT& context)
{
    const OLockGuard guard(DebugHelpLock());
    DebugHelp* const debugHelp = DebugHelp::Kept();
    if (!debugHelp) return false;

    OnSearchPath(debugHelp->GetSearchPath().c_str());
    for (const LoadedModule& module : ListLoadedModules()) {
        debugHelp->LoadSymbols(module);
        OnModule(module.path.c_str(), module.base, module.size);
    }
    ReportFrames(*debugHelp, context);
    return true;
}

void StackWalker::ReportFrames(DebugHelp& debugHelp, CONTEXT context)
{
    if (!debugHelp.FindModule(context.Rip)) {
        // A jump out of all code: the library would stop here, but the caller is where a call has left its address.
        ReportFrame(debugHelp, context.Rip);
        context.Rip = *reinterpret_cast<const DWORD64*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
    }
    STACKFRAME64 frame = FirstFrame(context);
    DWORD64 lastAddress = 0;
    DWORD64 lastStack = 0;
    for (int count = 0; debugHelp.NextFrame(frame, context); ++count) {
        const DWORD64 address = frame.AddrPC.Offset;
        if (count == maximumFrames) return OnError("Further frames are left out", address);
        if (address == lastAddress && frame.AddrStack.Offset == lastStack) {
            return OnError("StackWalk64-Endless-Callstack!", address);
        }
        ReportFrame(debugHelp, address);
        lastAddress = address;
        lastStack = frame.AddrStack.Offset;
    }
}

void StackWalker::ReportFrame(DebugHelp& debugHelp, DWORD64 address)
{
    const auto symbol = debugHelp.FindSymbol(address);
    const auto line = debugHelp.FindLine(address);
    const auto module = debugHelp.FindModule(address);
    OnFrame({.address = address,
             .function = symbol ? symbol->name.c_str() : "(function-name not available)",
             .offset = symbol ? symbol->offset : 0,
             .file = line ? line->file.c_str() : "(filename not available)",
             .line = line ? line->number : 0,
             .module = module ? module->c_str() : "(module-name not available)"});
}

void StackWalker::OnSearchPath(const wchar_t*) {}

void StackWalker::OnModule(const wchar_t*, DWORD64, DWORD) {}

void StackWalker::OnFrame(const Frame& frame)
{
    char line[2048];
    std::snprintf(line, sizeof line, "%016llX %s: %s + 0x%llX, %s (%lu)\r\n", frame.address, frame.module,
                  frame.function, frame.offset, frame.file, frame.line);
    OnOutput(line);
}

void StackWalker::OnError(const char* text, DWORD64 address)
{
    char line[2048];
    std::snprintf(line, sizeof line, "%016llX %s\r\n", address, text);
    OnOutput(line);
}
