// SPDX-License-Identifier: MIT
#include "recorder/KnownFields.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

TEST(KnownFields, FollowEachOtherWithoutAGapInBothTypes)
{
    WORD type = PRINTER_NOTIFY_TYPE;
    WORD expected = 0;
    for (const KnownField& row : KnownFields()) {
        if (row.type != type) {
            EXPECT_EQ(expected, notifyFieldFriendlyName + 1);
            type = row.type;
            expected = 0;
        }
        EXPECT_EQ(row.field, expected++);
    }
    EXPECT_EQ(type, JOB_NOTIFY_TYPE);
    EXPECT_EQ(expected, JOB_NOTIFY_FIELD_BYTES_PRINTED + 1);
}

TEST(KnownFields, AreFoundByNumberAndByNameWithinTheirType)
{
    for (const KnownField& row : KnownFields()) {
        EXPECT_EQ(FindKnownField(row.type, row.field), &row);
        EXPECT_EQ(FindKnownField(row.type, row.name), &row);
    }
    EXPECT_EQ(FindKnownField(JOB_NOTIFY_TYPE, L"DOCUMENT")->field, JOB_NOTIFY_FIELD_DOCUMENT);
    EXPECT_EQ(FindKnownField(PRINTER_NOTIFY_TYPE, L"DOCUMENT"), nullptr);
    EXPECT_EQ(FindKnownField(JOB_NOTIFY_TYPE, WORD{JOB_NOTIFY_FIELD_BYTES_PRINTED + 1}), nullptr);
    EXPECT_EQ(FindKnownField(2, WORD{0}), nullptr);
}

/// The documentation's tables of fields that are not supported.
TEST(KnownFields, KnowWhichAreNeverReported)
{
    std::vector<std::wstring> silent;
    for (const KnownField& row : KnownFields())
        if (!row.reported) silent.emplace_back((row.type == JOB_NOTIFY_TYPE ? L"job " : L"") + std::wstring(row.name));
    EXPECT_THAT(silent, ::testing::ElementsAre(L"SERVER_NAME", L"STATUS_STRING", L"TOTAL_PAGES", L"PAGES_PRINTED",
                                               L"TOTAL_BYTES", L"BYTES_PRINTED", L"job SECURITY_DESCRIPTOR"));
}

TEST(KnownFields, TellTheKindOfData)
{
    const auto count = [](NotifyData data) { return std::ranges::count(KnownFields(), data, &KnownField::data); };
    EXPECT_EQ(count(NotifyData::DevMode), 2);
    EXPECT_EQ(count(NotifyData::SystemTime), 1);
    EXPECT_EQ(count(NotifyData::SecurityDescriptor), 2);
    EXPECT_EQ(count(NotifyData::Number), 12 + 10);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_SUBMITTED, 1), NotifyData::SystemTime);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_STATUS, 2), NotifyData::Number);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_DOCUMENT, 1), NotifyData::String);
}

TEST(KnownFields, TakeTheKindOfAnUnknownFieldFromItsEntry)
{
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, 0x30, 2), NotifyData::String);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, 0x30, 5), NotifyData::SecurityDescriptor);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, 0x30, 0), NotifyData::Number);
    EXPECT_EQ(KindOf(JOB_NOTIFY_TYPE, 0x30, 6), NotifyData::Number);
}

} // namespace
