// SPDX-License-Identifier: MIT
#include "support/TemporaryFile.h"

#include "foundation/OHandle.h"
#include "foundation/Platform.h"

#include <gtest/gtest.h>

namespace {

void Write(const OString& path, const std::vector<BYTE>& content)
{
    const OFileHandle file(
        ::CreateFileW(path.wstring(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    EXPECT_TRUE(::WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    EXPECT_EQ(written, content.size());
}

} // namespace

TemporaryFile::TemporaryFile(const std::vector<BYTE>& content)
{
    wchar_t folder[MAX_PATH];
    wchar_t path[MAX_PATH];
    EXPECT_NE(::GetTempPathW(MAX_PATH, folder), 0u);
    EXPECT_NE(::GetTempFileNameW(folder, L"vrl", 0, path), 0u);
    const OString whole(path);
    const int backslash = whole.ReverseFind(L'\\');
    _folder = whole.Left(backslash);
    _name = whole.Mid(backslash + 1);
    Write(whole, content);
}

TemporaryFile::~TemporaryFile()
{
    ::DeleteFileW(Path().wstring());
}

WorkingFolder::WorkingFolder(const OString& folder)
{
    wchar_t before[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, before);
    _before = before;
    ::SetCurrentDirectoryW(folder.wstring());
}

WorkingFolder::~WorkingFolder()
{
    ::SetCurrentDirectoryW(_before.wstring());
}
