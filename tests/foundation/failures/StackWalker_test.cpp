// SPDX-License-Identifier: MIT
#include "foundation/failures/StackWalker.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/failures/DebugHelp.h"
#include "foundation/OLockGuard.h"
#include "support/ImportHook.h"

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Keeps all that a walk puts out.
class RecordingWalker : public StackWalker {
public:
    struct KeptFrame {
        DWORD64 address;
        std::string function;
        std::string file;
        DWORD line;
        std::string module;
    };

    std::wstring searchPath;
    std::vector<std::wstring> modules;
    std::vector<KeptFrame> frames;
    std::vector<std::string> errors;
    std::string output;

protected:
    void OnSearchPath(const wchar_t* path) override { searchPath = path; }
    void OnModule(const wchar_t* path, DWORD64, DWORD) override { modules.emplace_back(path); }
    void OnFrame(const Frame& frame) override
    {
        frames.push_back({frame.address, frame.function, frame.file, frame.line, frame.module});
        StackWalker::OnFrame(frame);
    }
    void OnError(const char* text, DWORD64 address) override
    {
        errors.emplace_back(text);
        StackWalker::OnError(text, address);
    }
    void OnOutput(const char* line) override { output += line; }
};

[[gnu::noinline]] bool WalkFromInnerFunction(RecordingWalker& walker)
{
    CONTEXT context;
    ::RtlCaptureContext(&context);
    return walker.Walk(context);
}

[[gnu::noinline]] bool WalkFromOuterFunction(RecordingWalker& walker)
{
    const bool walked = WalkFromInnerFunction(walker);
    __asm__ volatile(""); // keeps the call from becoming a jump
    return walked;
}

/// Matches a frame by a part of its function's name.
auto FrameOf(const char* function)
{
    return Field(&RecordingWalker::KeptFrame::function, HasSubstr(function));
}

/// The program's own name without ".exe", as debug help names its module.
constexpr const char* ownModule = "foundation_failures_tests";

/// Makes the walks of a scope start debug help again, and those after it too.
class FreshDebugHelp {
public:
    FreshDebugHelp() { End(); }
    FreshDebugHelp(const FreshDebugHelp&) = delete;
    FreshDebugHelp& operator=(const FreshDebugHelp&) = delete;
    ~FreshDebugHelp() { End(); }

private:
    static void End()
    {
        const OLockGuard guard(DebugHelpLock());
        DebugHelp::EndKept();
    }
};

class StackWalkerTest : public ::testing::Test {
protected:
    RecordingWalker walker;
};

TEST_F(StackWalkerTest, NamesTheFunctionsOnTheWayOut)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    ASSERT_GE(walker.frames.size(), 3u);
    EXPECT_THAT(walker.frames[0], FrameOf("WalkFromInnerFunction"));
    EXPECT_THAT(walker.frames[1], FrameOf("WalkFromOuterFunction"));
    EXPECT_THAT(walker.frames[2], FrameOf("NamesTheFunctionsOnTheWayOut"));
}

TEST_F(StackWalkerTest, TellsFileLineAndModuleOfAFrame)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    ASSERT_FALSE(walker.frames.empty());
    EXPECT_THAT(walker.frames[0].file, HasSubstr("StackWalker_test.cpp"));
    EXPECT_GT(walker.frames[0].line, 0u);
    EXPECT_EQ(walker.frames[0].module, ownModule);
}

TEST_F(StackWalkerTest, GoesOutToTheBeginningOfTheThread)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    EXPECT_THAT(walker.frames, Contains(Field(&RecordingWalker::KeptFrame::module, "kernel32")));
    EXPECT_EQ(walker.frames.back().module, "ntdll");
}

TEST_F(StackWalkerTest, PutsOutALineForEachFrame)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    EXPECT_EQ(static_cast<size_t>(std::count(walker.output.begin(), walker.output.end(), '\n')), walker.frames.size());
    EXPECT_THAT(walker.output, AllOf(HasSubstr("WalkFromInnerFunction"), HasSubstr("StackWalker_test.cpp"),
                                     HasSubstr(ownModule), EndsWith("\r\n")));
}

/// Walks from a jump to nowhere, as if this function had called it.
[[gnu::noinline]] bool WalkFromNowhere(RecordingWalker& walker)
{
    CONTEXT context;
    ::RtlCaptureContext(&context);
    context.Rsp -= sizeof(DWORD64);
    *reinterpret_cast<DWORD64*>(context.Rsp) = context.Rip;
    context.Rip = 0x10;
    return walker.Walk(context);
}

TEST_F(StackWalkerTest, WhatIsMissingSaysSo)
{
    ASSERT_TRUE(WalkFromNowhere(walker));
    ASSERT_FALSE(walker.frames.empty());
    EXPECT_EQ(walker.frames[0].address, 0x10u);
    EXPECT_EQ(walker.frames[0].function, "(function-name not available)");
    EXPECT_EQ(walker.frames[0].file, "(filename not available)");
    EXPECT_EQ(walker.frames[0].line, 0u);
    EXPECT_EQ(walker.frames[0].module, "(module-name not available)");
}

TEST_F(StackWalkerTest, FindsTheCallerOfAJumpToNowhere)
{
    ASSERT_TRUE(WalkFromNowhere(walker));
    ASSERT_GE(walker.frames.size(), 2u);
    EXPECT_THAT(walker.frames[1], FrameOf("WalkFromNowhere"));
}

TEST_F(StackWalkerTest, ListsTheModulesOfTheProcess)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    EXPECT_THAT(walker.modules, Contains(HasSubstr(L"foundation_failures_tests.exe")));
    EXPECT_THAT(walker.modules, Contains(HasSubstr(L"kernel32.dll")));
}

TEST_F(StackWalkerTest, SearchesSymbolsInSettledFoldersAndThoseOfTheEnvironment)
{
    const FreshDebugHelp fresh;
    ::SetEnvironmentVariableW(L"_NT_SYMBOL_PATH", L"C:\\FirstSymbols");
    ::SetEnvironmentVariableW(L"_NT_ALTERNATE_SYMBOL_PATH", L"C:\\OtherSymbols");
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    ::SetEnvironmentVariableW(L"_NT_SYMBOL_PATH", nullptr);
    ::SetEnvironmentVariableW(L"_NT_ALTERNATE_SYMBOL_PATH", nullptr);

    wchar_t current[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, current);
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    wchar_t system[MAX_PATH];
    ::GetEnvironmentVariableW(L"SYSTEMROOT", system, MAX_PATH);
    const std::wstring path = program;
    EXPECT_EQ(walker.searchPath, std::wstring(current) + L";" + path.substr(0, path.rfind(L'\\')) +
                                     L";C:\\FirstSymbols;C:\\OtherSymbols;" + system + L";");
}

TEST_F(StackWalkerTest, TriesTheDebuggingToolsBeforeThePlatformsLibrary)
{
    static std::vector<std::wstring> tried;
    tried.clear();
    ::SetEnvironmentVariableW(L"ProgramFiles", L"C:\\Programs");
    ::SetEnvironmentVariableW(L"ProgramFiles(x86)", L"C:\\OldPrograms");
    ::SetEnvironmentVariableW(L"SYSTEMROOT", L"C:\\System");
    const FreshDebugHelp fresh;
    {
        const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t* path) -> HMODULE {
            tried.emplace_back(path);
            return nullptr;
        });
        EXPECT_FALSE(WalkFromOuterFunction(walker));
    }
    ::SetEnvironmentVariableW(L"ProgramFiles", L"C:\\Program Files");
    ::SetEnvironmentVariableW(L"ProgramFiles(x86)", L"C:\\Program Files (x86)");
    ::SetEnvironmentVariableW(L"SYSTEMROOT", L"C:\\windows");
    EXPECT_EQ(tried, (std::vector<std::wstring>{L"C:\\System\\Debugging Tools for Windows\\dbghelp.dll",
                                                L"C:\\Programs\\Debugging Tools for Windows\\dbghelp.dll",
                                                L"C:\\OldPrograms\\Debugging Tools for Windows\\dbghelp.dll",
                                                L"dbghelp.dll"}));
}

TEST_F(StackWalkerTest, WithoutDebugHelpNothingIsPutOut)
{
    const FreshDebugHelp fresh;
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t*) -> HMODULE { return nullptr; });
    EXPECT_FALSE(WalkFromOuterFunction(walker));
    EXPECT_THAT(walker.output, IsEmpty());
}

TEST_F(StackWalkerTest, ALibraryWithoutTheFunctionsIsNoDebugHelp)
{
    const FreshDebugHelp fresh;
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress",
                                                      [](HMODULE, const char*) -> FARPROC { return nullptr; });
    EXPECT_FALSE(WalkFromOuterFunction(walker));
}

TEST_F(StackWalkerTest, KeepsTheSessionForTheNextWalk)
{
    ASSERT_TRUE(WalkFromOuterFunction(walker));
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t*) -> HMODULE { return nullptr; });
    EXPECT_TRUE(WalkFromOuterFunction(walker));
}

/// A debug help library that gives a stack of a given number of frames, without names.
class MadeUpStack {
public:
    explicit MadeUpStack(int frames)
    {
        framesLeft = frames;
        find = _hook.Original();
    }

private:
    static BOOL Succeed() { return TRUE; }
    static BOOL NextFrame(DWORD, HANDLE, HANDLE, STACKFRAME64* frame)
    {
        frame->AddrPC.Offset = static_cast<DWORD64>(framesLeft);
        return framesLeft-- > 0;
    }
    static BOOL NameNothing() { return FALSE; }

    static FARPROC Find(HMODULE library, const char* name)
    {
        const std::string_view function = name;
        if (!function.starts_with("Sym") && function != "StackWalk64") return find(library, name);
        if (function == "StackWalk64") return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(NextFrame));
        const bool isName = function == "SymGetSymFromAddr64" || function == "SymGetLineFromAddr64";
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(isName ? NameNothing : Succeed));
    }

    static inline int framesLeft;
    static inline FARPROC (*find)(HMODULE, const char*);
    FreshDebugHelp _fresh;
    ImportHook<FARPROC(HMODULE, const char*)> _hook{"GetProcAddress", Find};
};

TEST_F(StackWalkerTest, PutsOutAStackOf500FramesWhole)
{
    const MadeUpStack stack(500);
    ASSERT_TRUE(WalkFromInnerFunction(walker));
    EXPECT_EQ(walker.frames.size(), 500u);
    EXPECT_THAT(walker.errors, IsEmpty());
}

TEST_F(StackWalkerTest, SaysThatItLeavesOutFramesAfterTheFirst500)
{
    const MadeUpStack stack(501);
    ASSERT_TRUE(WalkFromInnerFunction(walker));
    EXPECT_EQ(walker.frames.size(), 500u);
    EXPECT_EQ(walker.errors, std::vector<std::string>{"Further frames are left out"});
    EXPECT_THAT(walker.output, EndsWith("Further frames are left out\r\n"));
}

/// Walks from under `depth` calls of itself.
[[gnu::noinline]] bool WalkFromDepth(RecordingWalker& walker, int depth)
{
    const volatile auto again = WalkFromDepth;
    const bool walked = depth > 0 ? again(walker, depth - 1) : WalkFromInnerFunction(walker);
    __asm__ volatile("");
    return walked;
}

TEST_F(StackWalkerTest, ARecursionIsNoRepeatingFrame)
{
    ASSERT_TRUE(WalkFromDepth(walker, 5));
    EXPECT_THAT(walker.errors, IsEmpty());
    EXPECT_EQ(std::ranges::count_if(walker.frames,
                                    [](const RecordingWalker::KeptFrame& frame) {
                                        return frame.function.find("WalkFromDepth") != std::string::npos;
                                    }),
              6);
}

// A function that seems to have been called by itself, from the same frame: one that only a broken stack shows.
extern "C" const char FrameThatRepeats[];
__asm__(R"(
    .text
    .globl FrameThatRepeats
    .seh_proc FrameThatRepeats
    pushq %rbp
    .seh_pushreg %rbp
    movq %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    nop
FrameThatRepeats:
    nop
    nop
    popq %rbp
    ret
    .seh_endproc
)");

TEST_F(StackWalkerTest, StopsWhenAFrameRepeats)
{
    DWORD64 stack[64] = {};
    const auto frame = reinterpret_cast<DWORD64>(&stack[8]);
    const auto address = reinterpret_cast<DWORD64>(FrameThatRepeats);
    stack[8] = frame;   // the caller's frame pointer
    stack[9] = address; // the return address
    CONTEXT context;
    ::RtlCaptureContext(&context);
    context.Rip = address;
    context.Rbp = frame;
    context.Rsp = frame - 16;
    ASSERT_TRUE(walker.Walk(context));
    EXPECT_EQ(walker.errors, std::vector<std::string>{"StackWalk64-Endless-Callstack!"});
    EXPECT_LE(walker.frames.size(), 3u);
    EXPECT_THAT(walker.output, HasSubstr("StackWalk64-Endless-Callstack!"));
}

} // namespace
