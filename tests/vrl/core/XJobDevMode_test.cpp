// SPDX-License-Identifier: MIT
#include "vrl/core/XJobDevMode.h"

#include "support/GuardedText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace {

DEVMODEW FullDevMode(DWORD fields)
{
    DEVMODEW devMode{};
    devMode.dmSize = sizeof devMode;
    devMode.dmFields = fields;
    devMode.dmOrientation = 2;
    devMode.dmPaperSize = 300;
    devMode.dmPaperLength = -5;
    devMode.dmPaperWidth = 1040;
    devMode.dmCopies = 7;
    std::wmemcpy(devMode.dmFormName, L"Label 104 x 200 mm", 19);
    return devMode;
}

constexpr DWORD allFields =
    DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_COPIES | DM_FORMNAME | DM_COLOR;

TEST(XJobDevMode, TakesEveryFieldThatIsNamed)
{
    const XJobDevMode devMode(FullDevMode(allFields));
    EXPECT_EQ(devMode.fields, allFields);
    EXPECT_EQ(devMode.orientation, 2);
    EXPECT_EQ(devMode.paperSize, 300);
    EXPECT_EQ(devMode.paperLength, -5);
    EXPECT_EQ(devMode.rawPaperLength, -5);
    EXPECT_EQ(devMode.paperWidth, 1040);
    EXPECT_EQ(devMode.rawPaperWidth, 1040);
    EXPECT_EQ(devMode.copies, 7);
    EXPECT_EQ(std::wstring(devMode.formName, 16), L"Label 104 x 200 ");
}

/// The fields as one text, so that those that must stay 0 are seen.
std::string Shown(const XJobDevMode& devMode)
{
    std::string text;
    for (const long value :
         {long{devMode.orientation}, long{devMode.paperSize}, devMode.paperLength, long{devMode.rawPaperLength},
          devMode.paperWidth, long{devMode.rawPaperWidth}, long{devMode.copies}, long{devMode.formName[0]}}) {
        text += std::to_string(value) + " ";
    }
    return text;
}

TEST(XJobDevMode, LeavesFieldsThatAreNotNamedAt0)
{
    static constexpr struct {
        DWORD field;
        const char* shown;
    } rows[] = {
        {0,              "0 0 0 0 0 0 0 0 "      },
        {DM_ORIENTATION, "2 0 0 0 0 0 0 0 "      },
        {DM_PAPERSIZE,   "0 300 0 0 0 0 0 0 "    },
        {DM_PAPERLENGTH, "0 0 -5 -5 0 0 0 0 "    },
        {DM_PAPERWIDTH,  "0 0 0 0 1040 1040 0 0 "},
        {DM_COPIES,      "0 0 0 0 0 0 7 0 "      },
        {DM_FORMNAME,    "0 0 0 0 0 0 0 76 "     },
    };
    for (const auto& row : rows) {
        const XJobDevMode devMode(FullDevMode(row.field));
        EXPECT_EQ(Shown(devMode), row.shown) << row.field;
        EXPECT_EQ(devMode.fields, row.field);
    }
}

TEST(XJobDevMode, NamedFieldsPastTheEndOfAShortDeviceModeAreZero)
{
    const DEVMODEW full = FullDevMode(allFields);
    for (size_t size = offsetof(DEVMODEW, dmFields); size <= sizeof full; size += sizeof(WORD)) {
        DEVMODEW part = full;
        part.dmSize = static_cast<WORD>(size);
        const GuardedText memory(std::string_view(reinterpret_cast<const char*>(&part), size));
        const XJobDevMode devMode(*reinterpret_cast<const DEVMODEW*>(memory.Get()));
        const bool reachesCopies = size >= offsetof(DEVMODEW, dmCopies) + sizeof(short);
        EXPECT_EQ(devMode.copies, reachesCopies ? 7 : 0) << size;
    }
}

TEST(XJobDevMode, DeviceModeWithoutASizeHasNothing)
{
    DEVMODEW devMode = FullDevMode(allFields);
    devMode.dmSize = 0;
    EXPECT_EQ(XJobDevMode(devMode).fields, 0u);
    EXPECT_EQ(Shown(XJobDevMode(devMode)), "0 0 0 0 0 0 0 0 ");
}

} // namespace
