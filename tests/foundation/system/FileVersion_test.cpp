// SPDX-License-Identifier: MIT
#include "foundation/system/FileVersion.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/system/ModuleInstance.h"
#include "foundation/OHandle.h"
#include "foundation/files/PathParts.h"
#include "support/TemporaryDirectory.h"

namespace {

OString TestFile(const char* file)
{
    return GetFolderPart(GetModuleName(nullptr)) + "\\" + file;
}

TEST(GetFileVersionString, TakesTheNeutralTableBeforeTheEnglishOneOfCodePage1252)
{
    static constexpr struct {
        const char* file;
        const char* name;
        const char* text;
    } rows[] = {
        {"version_000004B0.dll",          "FileVersion", "1.2.3 neutral"     },
        {"version_040904E4.dll",          "FileVersion", "1.2.3 multilingual"},
        {"version_000004B0_040904E4.dll", "FileVersion", "1.2.3 neutral"     },
        {"version_000004B0_040904E4.dll", "Comments",    "only here"         }, // a name that the first table lacks
        {"version_000004B0_040904E4.dll", "Empty",       ""                  }, // an empty text is there all the same
        {"version_000004B0_040904E4.dll", "NoSuchName",  ""                  },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetFileVersionString(TestFile(row.file), row.name), row.text) << row.file << " " << row.name;
    }
}

TEST(GetFileVersionString, IsEmptyForAFileWhoseOnlyTableIsEnglishUnicode)
{
    EXPECT_EQ(GetFileVersionString(TestFile("version_040904B0.dll"), "FileVersion"), "");
}

TEST(GetFileVersionString, FindsAFileWithoutADriveAsTheLoaderDoes)
{
    EXPECT_EQ(GetFileVersionString("version_000004B0.dll", "FileVersion"), "1.2.3 neutral");
}

TEST(GetFileVersionString, FindsALoadedModuleOutsideTheSearchedFolders)
{
    const TemporaryDirectory folder;
    const std::wstring path = folder.Path(L"version_elsewhere.dll");
    ASSERT_TRUE(::CopyFileW(TestFile("version_000004B0.dll").wstring(), path.c_str(), TRUE));
    const OModuleHandle loaded(::LoadLibraryW(path.c_str()));
    EXPECT_EQ(GetFileVersionString("version_elsewhere.dll", "FileVersion"), "1.2.3 neutral");
}

TEST(GetFileVersionString, UnloadsWhatItLoaded)
{
    GetFileVersionString("version_040904E4.dll", "FileVersion");
    EXPECT_EQ(::GetModuleHandleW(L"version_040904E4.dll"), nullptr);
}

TEST(GetFileVersionString, IsEmptyWithoutTheFileOrItsVersionResource)
{
    static constexpr struct {
        const char* what;
        const char* file;
    } rows[] = {
        {"no such module", "no_such_module.dll"    },
        {"no such path",   "C:\\no\\such\\file.dll"},
        {"no file name",   ""                      },
    };
    for (const auto& row : rows) EXPECT_EQ(GetFileVersionString(row.file, "FileVersion"), "") << row.what;
    EXPECT_EQ(GetFileVersionString(GetModuleName(nullptr), "FileVersion"), "") << "a program without the resource";
}

} // namespace
