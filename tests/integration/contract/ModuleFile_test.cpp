// SPDX-License-Identifier: MIT
#include "support/product/ProductModule.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// The loaded module read as the file that it came from.
class ModuleFile {
public:
    std::vector<std::string> ImportedModules() const
    {
        std::vector<std::string> names;
        const auto* import = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
        for (; import->Name != 0; ++import) names.push_back(Upper(At<char>(import->Name)));
        return names;
    }

    std::vector<std::string> ExportedNames() const
    {
        std::vector<std::string> exported;
        const auto* exports = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        const auto* names = At<DWORD>(exports->AddressOfNames);
        for (DWORD i = 0; i < exports->NumberOfNames; ++i) exported.push_back(At<char>(names[i]));
        return exported;
    }

    std::string Contents() const
    {
        std::ifstream file(std::filesystem::path(_product.Path()), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::wstring VersionText(const wchar_t* name) const
    {
        std::vector<BYTE> block(::GetFileVersionInfoSizeW(_product.Path().c_str(), nullptr));
        EXPECT_TRUE(::GetFileVersionInfoW(_product.Path().c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
        void* text = nullptr;
        UINT length = 0;
        const std::wstring path = std::wstring(L"\\StringFileInfo\\000004B0\\") + name;
        EXPECT_TRUE(::VerQueryValueW(block.data(), path.c_str(), &text, &length));
        return text ? static_cast<const wchar_t*>(text) : L"";
    }

private:
    template <typename T>
    const T* At(DWORD offset) const
    {
        return reinterpret_cast<const T*>(reinterpret_cast<const char*>(_product.Handle()) + offset);
    }

    template <typename T>
    const T* Directory(size_t index) const
    {
        const auto* headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
        return At<T>(headers->OptionalHeader.DataDirectory[index].VirtualAddress);
    }

    static std::string Upper(std::string text)
    {
        std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        return text;
    }

    ProductModule _product;
};

TEST(ModuleFile, ImportsOnlyWhatEveryWindowsHas)
{
    const auto everyWindowsHas =
        ::testing::AnyOf("ADVAPI32.DLL", "KERNEL32.DLL", "MSVCRT.DLL", "NETAPI32.DLL", "OLE32.DLL", "OLEAUT32.DLL",
                         "RPCRT4.DLL", "USER32.DLL", "VERSION.DLL", "WINSPOOL.DRV");
    EXPECT_THAT(ModuleFile().ImportedModules(), Each(everyWindowsHas));
}

TEST(ModuleFile, ExportsTheFourEntriesOfAServer)
{
    EXPECT_THAT(ModuleFile().ExportedNames(),
                ElementsAre("DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"));
}

TEST(ModuleFile, TellsItsVersionAndPlatform)
{
    EXPECT_EQ(ModuleFile().VersionText(L"ProductVersion"), L"" VORLANE_VERSION);
    EXPECT_EQ(ModuleFile().VersionText(L"FileVersion"), L"" VORLANE_VERSION);
    EXPECT_EQ(ModuleFile().VersionText(L"Platform"), L"x64");
    EXPECT_EQ(ModuleFile().VersionText(L"OriginalFilename"), L"Vorlane.dll");
}

#ifdef NDEBUG
TEST(ModuleFile, NamesTheFileBesideItThatHasItsSymbols)
{
    const ProductModule product;
    EXPECT_THAT(ModuleFile().Contents(), HasSubstr("Vorlane.dll.debug"));
    EXPECT_TRUE(std::filesystem::exists(product.Path() + L".debug"));
}

TEST(ModuleFile, HasNoSymbolsItself)
{
    EXPECT_THAT(ModuleFile().Contents(), Not(HasSubstr(".debug_info")));
}
#endif

} // namespace
