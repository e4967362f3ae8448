// SPDX-License-Identifier: MIT
#include "foundation/system/FileVersion.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/system/ModuleInstance.h"
#include "foundation/OHandle.h"
#include "foundation/files/PathParts.h"
#include "support/ImportHook.h"
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

TEST(GetFileVersionString, LoadsOnlyAFileWithoutADrive)
{
    static std::vector<std::wstring> loaded;
    loaded.clear();
    const ImportHook<HMODULE(const wchar_t*)> hook("LoadLibraryW", [](const wchar_t* path) {
        loaded.emplace_back(path);
        return HMODULE{};
    });
    const OString path = TestFile("version_000004B0.dll");
    ASSERT_GE(path.Find(':'), 0);
    EXPECT_EQ(GetFileVersionString(path, "FileVersion"), "1.2.3 neutral");
    EXPECT_TRUE(loaded.empty());
    EXPECT_EQ(GetFileVersionString("version_000004B0.dll", "FileVersion"), "");
    EXPECT_EQ(loaded, std::vector<std::wstring>{L"version_000004B0.dll"});
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

/// A version resource, and the value that is found in it, as a damaged file may have them.
class MadeUpVersionResource {
public:
    MadeUpVersionResource(std::wstring_view contents, UINT valueLength)
    {
        resource = contents;
        length = valueLength;
    }

private:
    static inline std::wstring resource;
    static inline UINT length;

    /// Memory that ends in no zero by chance.
    static void* Allocate(size_t size)
    {
        void* const block = std::calloc(size + 64, 1);
        return block ? std::memset(block, 'x', size + 64) : nullptr;
    }
    static DWORD Size(const wchar_t*, DWORD*) { return static_cast<DWORD>(resource.size() * sizeof(wchar_t)); }
    static BOOL Read(const wchar_t*, DWORD, DWORD, void* block)
    {
        std::memcpy(block, resource.data(), resource.size() * sizeof(wchar_t));
        return TRUE;
    }
    static BOOL Query(const void* block, const wchar_t*, void** value, UINT* valueLength)
    {
        *value = const_cast<void*>(block);
        *valueLength = length;
        return TRUE;
    }

    ImportHook<decltype(Allocate)> _malloc{"malloc", Allocate};
    ImportHook<decltype(Size)> _size{"GetFileVersionInfoSizeW", Size};
    ImportHook<decltype(Read)> _read{"GetFileVersionInfoW", Read};
    ImportHook<decltype(Query)> _query{"VerQueryValueW", Query};
};

TEST(GetFileVersionString, ReadsATextWithoutATerminatorToTheEndOfItsValue)
{
    const MadeUpVersionResource resource(L"1.2.3Comments", 5);
    EXPECT_EQ(GetFileVersionString("C:\any.dll", "FileVersion"), "1.2.3");
}

TEST(GetFileVersionString, ReadsNotPastTheResourceWhateverLengthAValueClaims)
{
    const MadeUpVersionResource resource(L"1.2.3", 1000);
    EXPECT_EQ(GetFileVersionString("C:\any.dll", "FileVersion"), "1.2.3");
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
