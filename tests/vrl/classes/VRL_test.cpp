// SPDX-License-Identifier: MIT
#include "vrl/classes/VRL.h"

#include "support/ImportHook.h"
#include "support/com/Answer.h"
#include "support/com/BstrText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Microsoft::WRL::ComPtr;

/// A version resource of the test's own in place of the module's.
class VRLTest : public ::testing::Test {
protected:
    VRLTest()
    {
        asked.clear();
        hasVersion = true;
        EXPECT_EQ(CreateInstance(vrl.GetAddressOf()), S_OK);
    }

    std::wstring Text(HRESULT (STDMETHODCALLTYPE IVRL::*get)(BSTR*))
    {
        OwnedBstr text;
        EXPECT_EQ(AnswerOf((vrl.Get()->*get)(text.Receive())), succeeded);
        EXPECT_TRUE(text) << "an empty text is a text";
        return TextOf(text.Get());
    }

    static inline std::wstring asked; ///< name of the last text asked for
    static inline bool hasVersion;
    static inline const wchar_t* value;
    ComPtr<VRL> vrl;

private:
    ImportHook<decltype(::GetFileVersionInfoSizeW)> _size{
        "GetFileVersionInfoSizeW", [](const wchar_t*, DWORD*) -> DWORD { return hasVersion ? 16 : 0; }};
    ImportHook<decltype(::GetFileVersionInfoW)> _info{
        "GetFileVersionInfoW", [](const wchar_t*, DWORD, DWORD, void*) -> WINBOOL { return TRUE; }};
    ImportHook<decltype(::VerQueryValueW)> _query{
        "VerQueryValueW", [](const void*, const wchar_t* path, void** text, UINT* length) -> WINBOOL {
            asked = path;
            static wchar_t answer[16];
            if (!value || asked.find(L"000004B0") == std::wstring::npos) return FALSE;
            *text = ::lstrcpyW(answer, value);
            *length = static_cast<UINT>(::lstrlenW(value) + 1);
            return TRUE;
        }};
};

TEST_F(VRLTest, GivesVersionAndPlatformOfTheModule)
{
    value = L"7.1";
    EXPECT_EQ(Text(&IVRL::get_Version), L"7.1");
    EXPECT_EQ(asked, L"\\StringFileInfo\\000004B0\\ProductVersion");
    value = L"x64";
    EXPECT_EQ(Text(&IVRL::get_Platform), L"x64");
    EXPECT_EQ(asked, L"\\StringFileInfo\\000004B0\\Platform");
}

TEST_F(VRLTest, GivesAnEmptyTextForWhatTheVersionLacks)
{
    value = nullptr;
    EXPECT_EQ(Text(&IVRL::get_Platform), L"");
}

TEST_F(VRLTest, GivesEmptyTextsForAModuleWithoutAVersion)
{
    value = L"7.1";
    hasVersion = false;
    EXPECT_EQ(Text(&IVRL::get_Version), L"");
    EXPECT_EQ(Text(&IVRL::get_Platform), L"");
}

TEST_F(VRLTest, GivesEmptyTextsIfThereIsNoSuchModule)
{
    static std::wstring loaded;
    hasVersion = false;
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t* name) -> HMODULE {
        loaded = name;
        return nullptr;
    });
    EXPECT_EQ(Text(&IVRL::get_Version), L"");
    EXPECT_EQ(loaded, L"Vorlane.dll");
}

TEST_F(VRLTest, WithoutAPlaceToGoFailsAndTellsNobody)
{
    value = L"7.1";
    AnswerOf(S_OK); // what other tests have left
    const Answer silent{E_FAIL, ""};
    EXPECT_EQ(AnswerOf(vrl->get_Version(nullptr)), silent);
    EXPECT_EQ(AnswerOf(vrl->get_Platform(nullptr)), silent);
}

} // namespace
