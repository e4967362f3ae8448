// SPDX-License-Identifier: MIT
#include "recorder/RecordingWriter.h"

#include "RecordingSamples.h"

#include <gmock/gmock.h>

namespace {

TEST(RecordingWriter, WritesTheHeader)
{
    RecordingHeader header;
    header.printer = L"\u00C4 \"1\"";
    header.driver = L"Label 203 dpi";
    header.system = L"Windows 10.0.19045";
    header.begun = {2024, 2, 4, 29, 23, 5, 59, 7};
    header.filter = PRINTER_CHANGE_ALL;
    header.printerFields = {PRINTER_NOTIFY_FIELD_STATUS, 0x30};
    header.jobFields = {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_DOCUMENT};
    EXPECT_EQ(RecordingText(header), "notification recording 1\n"
                                     "printer \"\xC3\x84 \\\"1\\\"\"\n"
                                     "driver \"Label 203 dpi\"\n"
                                     "system \"Windows 10.0.19045\"\n"
                                     "begun 2024-02-29 23:05:59.007\n"
                                     "filter 0x7777FFFF\n"
                                     "fields printer STATUS 0x00000030\n"
                                     "fields job STATUS DOCUMENT\n");
}

TEST(RecordingWriter, LeavesOutOfTheHeaderWhatIsNotKnown)
{
    EXPECT_EQ(RecordingText(RecordingHeader{}), "notification recording 1\n");
}

TEST(RecordingWriter, WritesABatchWithoutABlock)
{
    RecordedBatch batch;
    batch.microseconds = 1500000;
    batch.change = PRINTER_CHANGE_WRITE_JOB;
    EXPECT_EQ(RecordingText(batch), "\n"
                                    "batch 1.500000\n"
                                    "change 0x00000800 ; write job\n"
                                    "end\n");
}

TEST(RecordingWriter, TellsARefreshAndLostChanges)
{
    RecordedBatch batch;
    batch.refresh = true;
    batch.info = RecordedInfo{2, PRINTER_NOTIFY_INFO_DISCARDED, {}};
    EXPECT_EQ(RecordingText(batch), "\n"
                                    "batch 0.000000 refresh\n"
                                    "change 0x00000000\n"
                                    "info 2 0x00000001 ; discarded\n"
                                    "end\n");
}

/// The lines of one entry.
std::string TextOf(const RecordedEntry& entry)
{
    const std::string before = "\nbatch 0.000000\nchange 0x00000000\ninfo 2 0x00000000\n";
    const std::string after = "end\n";
    const std::string text = RecordingText(BatchOf({entry}));
    EXPECT_THAT(text, ::testing::AllOf(::testing::StartsWith(before), ::testing::EndsWith(after)));
    return text.substr(before.size(), text.size() - before.size() - after.size());
}

std::string TextOf(WORD jobField, decltype(RecordedEntry::data) data)
{
    return TextOf(JobEntry(12, jobField, std::move(data)));
}

TEST(RecordingWriter, TellsTheWordsOfBits)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_STATUS, NotifyNumbers{0x18, 0}),
              "job 12 STATUS number 0x00000018 ; spooling, printing\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_STATUS, NotifyNumbers{0, 0}), "job 12 STATUS number 0x00000000\n");
    EXPECT_EQ(TextOf(PrinterEntry(PRINTER_NOTIFY_FIELD_STATUS, NotifyNumbers{1, 0})),
              "printer 0 STATUS number 0x00000001 ; paused\n");
    EXPECT_EQ(TextOf(PrinterEntry(PRINTER_NOTIFY_FIELD_ATTRIBUTES, NotifyNumbers{0x48, 0})),
              "printer 0 ATTRIBUTES number 0x00000048 ; shared, local\n");
}

TEST(RecordingWriter, WritesPlainNumbersAsDecimals)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_TOTAL_PAGES, NotifyNumbers{12, 34}), "job 12 TOTAL_PAGES number 12 34\n");
    EXPECT_EQ(TextOf(PrinterEntry(PRINTER_NOTIFY_FIELD_CJOBS, NotifyNumbers{3, 0})), "printer 0 CJOBS number 3\n");
}

TEST(RecordingWriter, QuotesTexts)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"a\nb", 4})), "job 12 DOCUMENT string \"a\\nb\"\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DOCUMENT, BlockOf(L"ab")), "job 12 DOCUMENT string \"ab\" unterminated\n");
}

TEST(RecordingWriter, WritesTimesAsDates)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_SUBMITTED, leapDay), "job 12 SUBMITTED systemtime 2024-02-29 23:05:59.007\n");
}

TEST(RecordingWriter, WritesDeviceModesAndDescriptorsAsBytes)
{
    EXPECT_EQ(TextOf(PrinterEntry(PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, threeBytes)),
              "printer 0 SECURITY_DESCRIPTOR security 0102AB\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DEVMODE, threeBytes),
              "; too few bytes for a device mode\njob 12 DEVMODE devmode 0102AB\n");
}

TEST(RecordingWriter, WritesNullAndEmptyBlocksAsSuch)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DEVMODE, NotifyBlock()), "job 12 DEVMODE null\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DOCUMENT, NotifyBlock(std::in_place)), "job 12 DOCUMENT empty\n");
}

TEST(RecordingWriter, WritesWhatDoesNotFitItsFieldAsPlainBytes)
{
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"a\0b", 4})), "job 12 DOCUMENT bytes 6100000062000000\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_DOCUMENT, threeBytes), "job 12 DOCUMENT bytes 0102AB\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_SUBMITTED, threeBytes), "job 12 SUBMITTED bytes 0102AB\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_SUBMITTED, NotifyBlock(std::vector<BYTE>(16))),
              "job 12 SUBMITTED bytes 00000000000000000000000000000000\n");
    EXPECT_EQ(TextOf(JOB_NOTIFY_FIELD_STATUS, threeBytes), "job 12 STATUS bytes 0102AB\n");
}

TEST(RecordingWriter, NamesUnknownTypesAndFieldsByTheirNumbers)
{
    EXPECT_EQ(TextOf(0x30, NotifyNumbers{5, 0}), "job 12 0x00000030 number 5\n");
    EXPECT_EQ(TextOf(RecordedEntry{7, 1, 2, 3, BlockOf({L"x", 2})}),
              "0x00000007 3 0x00000001 string \"x\" reserved 2\n");
}

TEST(RecordingWriter, TellsAReservedThatIsNotTheUsual)
{
    RecordedEntry entry = JobEntry(2, JOB_NOTIFY_FIELD_STATUS, NotifyNumbers{8, 0});
    entry.reserved = 0;
    EXPECT_EQ(TextOf(entry), "job 2 STATUS number 0x00000008 reserved 0 ; spooling\n");
}

} // namespace
