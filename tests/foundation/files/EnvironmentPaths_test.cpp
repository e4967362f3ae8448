// SPDX-License-Identifier: MIT
#include "foundation/files/EnvironmentPaths.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

/// An environment variable that gets its old value back.
class Variable {
public:
    explicit Variable(const wchar_t* name) : _name(name)
    {
        wchar_t value[1024];
        const DWORD length = ::GetEnvironmentVariableW(name, value, 1024);
        if (length > 0) _before = std::wstring(value, length);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { Set(_before ? _before->c_str() : nullptr); }

    void Set(const wchar_t* value) const { ::SetEnvironmentVariableW(_name, value); }

private:
    const wchar_t* _name;
    std::optional<std::wstring> _before;
};

class EnvironmentPathsTest : public ::testing::Test {
protected:
    EnvironmentPathsTest()
    {
        profile.Set(L"C:\\users\\Ada");
        allProfiles.Set(L"C:\\ProgramData");
        programs.Set(L"C:\\Program Files");
        root.Set(L"D:\\windows");
        drive.Set(L"D:");
    }

    static OString Collapsed(OString path)
    {
        CollapseEnvironmentPaths(path);
        return path;
    }

    static OString Expanded(OString path)
    {
        ExpandEnvironmentPaths(path);
        return path;
    }

    Variable profile{L"USERPROFILE"};
    Variable allProfiles{L"ALLUSERSPROFILE"};
    Variable programs{L"ProgramFiles"};
    Variable root{L"SystemRoot"};
    Variable drive{L"SystemDrive"};
    Variable own{L"VORLANE_TEST"};
};

TEST_F(EnvironmentPathsTest, ValuesCollapseToTheirNames)
{
    static constexpr struct {
        const char* path;
        const char* collapsed;
    } rows[] = {
        {"C:\\users\\Ada\\label.lbl", "%USERPROFILE%\\label.lbl"},
        {"C:\\ProgramData\\x",        "%ALLUSERSPROFILE%\\x"    },
        {"C:\\Program Files\\x",      "%ProgramFiles%\\x"       },
        {"D:\\windows\\x",            "%SystemRoot%\\x"         },
        {"D:\\x",                     "%SystemDrive%\\x"        },
        {"C:\\x",                     "C:\\x"                   },
        {"",                          ""                        },
    };
    for (const auto& row : rows) EXPECT_EQ(Collapsed(row.path), row.collapsed) << row.path;
}

TEST_F(EnvironmentPathsTest, ValuesAreFoundInAnyCaseOfTheirASCIILetters)
{
    EXPECT_EQ(Collapsed("c:\\USERS\\aDA\\x"), "%USERPROFILE%\\x");
    profile.Set(L"C:\\users\\\u00C9va");
    EXPECT_EQ(Collapsed(L"c:\\users\\\u00C9VA"), "%USERPROFILE%");
    EXPECT_EQ(Collapsed(L"c:\\users\\\u00E9va"), L"c:\\users\\\u00E9va");
}

TEST_F(EnvironmentPathsTest, EachOccurrenceCollapsesWhereverItStands)
{
    EXPECT_EQ(Collapsed("D:\\a;d:\\b;xD:"), "%SystemDrive%\\a;%SystemDrive%\\b;x%SystemDrive%");
    EXPECT_EQ(Collapsed("C:\\Program Files (x86)"), "%ProgramFiles% (x86)");
}

TEST_F(EnvironmentPathsTest, VariablesAreTriedInTheirOrder)
{
    profile.Set(L"C:\\one");
    allProfiles.Set(L"C:\\one");
    EXPECT_EQ(Collapsed("C:\\one"), "%USERPROFILE%");

    profile.Set(nullptr);
    programs.Set(L"C:\\one");
    EXPECT_EQ(Collapsed("C:\\one"), "%ALLUSERSPROFILE%");

    allProfiles.Set(nullptr);
    root.Set(L"C:\\one");
    EXPECT_EQ(Collapsed("C:\\one"), "%ProgramFiles%");

    programs.Set(nullptr);
    drive.Set(L"C:\\one");
    EXPECT_EQ(Collapsed("C:\\one"), "%SystemRoot%");
}

TEST_F(EnvironmentPathsTest, WhatWasPutInIsNotSearchedAgainForTheSameValue)
{
    profile.Set(L"user");
    EXPECT_EQ(Collapsed("user"), "%USERPROFILE%");
}

TEST_F(EnvironmentPathsTest, AVariableThatIsNotSetIsLeftOut)
{
    drive.Set(nullptr);
    EXPECT_EQ(Collapsed("D:\\x"), "D:\\x");
}

TEST_F(EnvironmentPathsTest, AValueOf260CharactersIsLeftOut)
{
    const std::wstring longest(259, L'x');
    profile.Set(longest.c_str());
    EXPECT_EQ(Collapsed(longest.c_str()), "%USERPROFILE%");

    const std::wstring tooLong(260, L'x');
    profile.Set(tooLong.c_str());
    EXPECT_EQ(Collapsed(tooLong.c_str()), tooLong.c_str());
}

TEST_F(EnvironmentPathsTest, NamesExpandToTheirValues)
{
    EXPECT_EQ(Expanded("%USERPROFILE%\\x;%systemdrive%"), "C:\\users\\Ada\\x;D:");
    EXPECT_EQ(Expanded("%NO_SUCH_VARIABLE%\\100%"), "%NO_SUCH_VARIABLE%\\100%");
    EXPECT_EQ(Expanded(""), "");
}

TEST_F(EnvironmentPathsTest, ExpansionHasNoLimitOfLength)
{
    for (const size_t length : {258, 259, 260, 261, 262, 5000}) {
        own.Set(std::wstring(length, L'y').c_str());
        EXPECT_EQ(Expanded("%VORLANE_TEST%x"), (std::wstring(length, L'y') + L"x").c_str()) << length;
    }
}

TEST_F(EnvironmentPathsTest, CollapsingAndExpandingArePartners)
{
    const OString path(L"C:\\users\\Ada\\\u0141\u00F3d\u017A.lbl");
    EXPECT_EQ(Expanded(Collapsed(path)), path);
}

} // namespace
