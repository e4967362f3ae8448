// SPDX-License-Identifier: MIT
#include "foundation/files/PathParts.h"

#include <gtest/gtest.h>

namespace {

TEST(PathParts, APathIsCutAtItsLastSeparator)
{
    static constexpr struct {
        const char* path;
        const char* folder;
        const char* file;
    } rows[] = {
        {"C:\\Windows\\system32\\a.dll", "C:\\Windows\\system32", "a.dll"           },
        {"C:\\a.dll",                    "C:",                    "a.dll"           },
        {"C:\\Windows\\",                "C:\\Windows",           ""                },
        {"\\a",                          "",                      "a"               },
        {"\\",                           "",                      ""                },
        {"a.dll",                        "",                      "a.dll"           },
        {"C:/Windows/a.dll",             "",                      "C:/Windows/a.dll"}, // a slash doesn't count
        {"",                             "",                      ""                },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetFolderPart(row.path), row.folder) << row.path;
        EXPECT_EQ(GetFilePart(row.path), row.file) << row.path;
    }
}

TEST(PathParts, ATrailByteIsNoSeparator)
{
    OString path;
    path.SetCodePage(932);
    path = "C:\\\x83\x5C\\\x95\x5C"; // two characters whose second byte is that of '\'
    EXPECT_EQ(GetFolderPart(path), L"C:\\\u30BD");
    EXPECT_EQ(GetFilePart(path), L"\u8868");
}

} // namespace
