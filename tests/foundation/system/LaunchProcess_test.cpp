// SPDX-License-Identifier: MIT
#include "foundation/system/LaunchProcess.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <string>

#include "LaunchedProgram.h"
#include "foundation/system/ModuleInstance.h"
#include "foundation/OHandle.h"
#include "foundation/files/PathParts.h"

namespace {

using MappedView = OHandle<::UnmapViewOfFile, const void*>;

/// The handles of this process that can be used, counted by trying them.
int OpenHandles()
{
    int count = 0;
    for (ULONG_PTR value = 4; value < 0x10000; value += 4) {
        DWORD flags = 0;
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return count;
}

/// A program to launch, and the events and the memory between it and the test.
class LaunchProcessTest : public ::testing::Test {
protected:
    LaunchProcessTest()
        : name(L"Vorlane.LaunchProcess." + std::to_wstring(::GetCurrentProcessId()) + L'.' + std::to_wstring(++made)),
          go(::CreateEventW(nullptr, TRUE, FALSE, (name + goSuffix).c_str())),
          done(::CreateEventW(nullptr, TRUE, FALSE, (name + doneSuffix).c_str())),
          memory(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(LaunchReport),
                                      name.c_str())),
          view(::MapViewOfFile(memory.Get(), FILE_MAP_READ, 0, 0, sizeof(LaunchReport)))
    {
    }

    OString CommandLine() const
    {
        return L'"' + GetFolderPart(GetModuleName(nullptr)) + L"\\launched_program.exe\" " + name.c_str();
    }

    DWORD LetGoAndWait()
    {
        ::SetEvent(go.Get());
        return ::WaitForSingleObject(done.Get(), launchLimitMs);
    }

    const LaunchReport& Report() const { return *static_cast<const LaunchReport*>(view.Get()); }

    // A name for each test: the program of the one before may still keep its events open.
    inline static int made = 0;

    std::wstring name;
    OWaitHandle go;
    OWaitHandle done;
    OFileHandle memory;
    MappedView view;
};

TEST_F(LaunchProcessTest, StartsTheProgramWithTheShowCode)
{
    ASSERT_TRUE(LaunchProcess(CommandLine(), SW_SHOWMINNOACTIVE));
    ASSERT_EQ(LetGoAndWait(), WAIT_OBJECT_0);
    EXPECT_EQ(Report().startupFlags & STARTF_USESHOWWINDOW, DWORD{STARTF_USESHOWWINDOW});
    EXPECT_EQ(Report().show, SW_SHOWMINNOACTIVE);
}

TEST_F(LaunchProcessTest, DoesNotWaitForTheProgram)
{
    ASSERT_TRUE(LaunchProcess(CommandLine(), SW_HIDE));
    EXPECT_EQ(::WaitForSingleObject(done.Get(), 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(LetGoAndWait(), WAIT_OBJECT_0);
}

TEST_F(LaunchProcessTest, KeepsNoHandleOfTheProgram)
{
    const int before = OpenHandles();
    ASSERT_TRUE(LaunchProcess(CommandLine(), SW_HIDE));
    EXPECT_EQ(OpenHandles(), before);
    LetGoAndWait();
}

TEST_F(LaunchProcessTest, AnswersFalseForAProgramThatIsNotThere)
{
    EXPECT_FALSE(LaunchProcess(OString("C:\\no\\such\\program.exe"), SW_SHOWNORMAL));
}

} // namespace
