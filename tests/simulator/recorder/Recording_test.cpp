// SPDX-License-Identifier: MIT
#include "recorder/Recording.h"

#include <gmock/gmock.h>

namespace {

/// A notification block with room for three entries.
struct Block {
    PRINTER_NOTIFY_INFO info = {2, 0, 0, {}};
    PRINTER_NOTIFY_INFO_DATA more[2] = {};

    PRINTER_NOTIFY_INFO_DATA& Add(WORD type, WORD field, DWORD id)
    {
        PRINTER_NOTIFY_INFO_DATA* const entries = info.aData; // goes on in `more`
        PRINTER_NOTIFY_INFO_DATA& entry = entries[info.Count++];
        entry.Type = type;
        entry.Field = field;
        entry.Id = id;
        return entry;
    }
};

TEST(Recording, KeepsABatchWithoutABlock)
{
    const RecordedBatch batch = CopyBatch(PRINTER_CHANGE_WRITE_JOB, nullptr);
    EXPECT_EQ(batch.change, DWORD{PRINTER_CHANGE_WRITE_JOB});
    EXPECT_FALSE(batch.info);
}

TEST(Recording, KeepsVersionAndFlags)
{
    Block block;
    block.info.Flags = PRINTER_NOTIFY_INFO_DISCARDED;
    const RecordedBatch batch = CopyBatch(0, &block.info);
    ASSERT_TRUE(batch.info);
    EXPECT_EQ(batch.info->version, 2u);
    EXPECT_EQ(batch.info->flags, DWORD{PRINTER_NOTIFY_INFO_DISCARDED});
    EXPECT_TRUE(batch.info->entries.empty());
}

TEST(Recording, CopiesNumbersAndBlocksByTheirFields)
{
    Block block;
    PRINTER_NOTIFY_INFO_DATA& status = block.Add(JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_STATUS, 7);
    status.Reserved = 1;
    status.NotifyData.adwData[0] = JOB_STATUS_SPOOLING;
    status.NotifyData.adwData[1] = 9;
    PRINTER_NOTIFY_INFO_DATA& document = block.Add(JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_DOCUMENT, 7);
    wchar_t text[] = L"abc";
    document.NotifyData.Data = {sizeof text, text};
    PRINTER_NOTIFY_INFO_DATA& security = block.Add(PRINTER_NOTIFY_TYPE, PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, 0);
    security.NotifyData.Data = {12, nullptr};

    const RecordedBatch batch = CopyBatch(PRINTER_CHANGE_ADD_JOB, &block.info);
    text[0] = L'x'; // the batch has a copy
    const NotifyBlock abc = std::vector<BYTE>{'a', 0, 'b', 0, 'c', 0, 0, 0};
    EXPECT_THAT(batch.info->entries,
                ::testing::ElementsAre(
                    RecordedEntry{
                        JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_STATUS, 1, 7, NotifyNumbers{JOB_STATUS_SPOOLING, 9}
    },
                    RecordedEntry{JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_DOCUMENT, 0, 7, abc},
                    RecordedEntry{PRINTER_NOTIFY_TYPE, PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, 0, 0, NotifyBlock()}));
}

TEST(Recording, CopiesAnUnknownFieldAsItsReservedTells)
{
    Block block;
    BYTE bytes[] = {1, 2, 3};
    PRINTER_NOTIFY_INFO_DATA& told = block.Add(JOB_NOTIFY_TYPE, 0x30, 1);
    told.Reserved = 3;
    told.NotifyData.Data = {sizeof bytes, bytes};
    PRINTER_NOTIFY_INFO_DATA& untold = block.Add(5, 0x30, 1);
    untold.NotifyData.adwData[0] = 4;

    const RecordedBatch batch = CopyBatch(0, &block.info);
    EXPECT_EQ(batch.info->entries[0].data, (decltype(RecordedEntry::data){NotifyBlock({1, 2, 3})}));
    EXPECT_EQ(batch.info->entries[1].data, (decltype(RecordedEntry::data){
                                               NotifyNumbers{4, 0}
    }));
}

} // namespace
