// SPDX-License-Identifier: MIT
#include "recorder/RecordingReader.h"

#include "RecordingSamples.h"
#include "recorder/RecordingForms.h"
#include "recorder/RecordingWriter.h"
#include "support/RandomSeed.h"

#include <gmock/gmock.h>

#include <random>

namespace {

constexpr char first[] = "notification recording 1\n";

std::string Written(const Recording& recording)
{
    std::string text = RecordingText(recording.header);
    for (const RecordedBatch& batch : recording.batches) text += RecordingText(batch);
    return text;
}

/// "LINE: what is wrong", or empty for a recording that can be read.
std::wstring ErrorOf(const std::string& text)
{
    try {
        ReadRecording(text);
        return {};
    } catch (const RecordingError& error) {
        return std::to_wstring(error.line) + L": " + error.message;
    }
}

RecordedEntry ReadEntry(const std::string& line)
{
    const Recording recording = ReadRecording(first + ("batch 0\nchange 0\ninfo 2 0\n" + line) + "\nend\n");
    return recording.batches.at(0).info->entries.at(0);
}

TEST(RecordingReader, ReadsTheHeader)
{
    const RecordingHeader header = ReadRecording("notification recording 1\n"
                                                 "printer \"L \\\"1\\\"\"\n"
                                                 "driver \"D\"\n"
                                                 "system \"S\"\n"
                                                 "begun 2024-02-29 23:05:59.007\n"
                                                 "filter 0x100\n"
                                                 "fields printer STATUS 0x30\n"
                                                 "fields job STATUS 13\n")
                                       .header;
    EXPECT_EQ(header.printer, L"L \"1\"");
    EXPECT_EQ(header.driver, L"D");
    EXPECT_EQ(header.system, L"S");
    EXPECT_EQ(DateText(header.begun), L"2024-02-29 23:05:59.007");
    EXPECT_EQ(header.filter, 0x100u);
    EXPECT_THAT(header.printerFields, ::testing::ElementsAre(PRINTER_NOTIFY_FIELD_STATUS, 0x30));
    EXPECT_THAT(header.jobFields, ::testing::ElementsAre(JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_DOCUMENT));
}

TEST(RecordingReader, ReadsARecordingOfNothing)
{
    const Recording recording = ReadRecording(first);
    EXPECT_TRUE(recording.batches.empty());
    EXPECT_EQ(recording.header.filter, 0u);
}

TEST(RecordingReader, ReadsBatchesWithAndWithoutABlock)
{
    const Recording recording = ReadRecording(first + std::string("batch 0.5\nchange 0x800\nend\n"
                                                                  "batch 1 refresh\nchange 0\ninfo 2 1\nend\n"));
    ASSERT_EQ(recording.batches.size(), 2u);
    EXPECT_EQ(recording.batches[0], (RecordedBatch{500000, false, PRINTER_CHANGE_WRITE_JOB, std::nullopt}));
    EXPECT_EQ(recording.batches[1], (RecordedBatch{
                                        1000000, true, 0, RecordedInfo{2, 1, {}}
    }));
}

TEST(RecordingReader, TakesCommentsBlankLinesAndEitherLineEnd)
{
    const Recording recording = ReadRecording("\xEF\xBB\xBF; a file\r\n\r\nnotification recording 1 ; the first\r\n"
                                              "  batch\t0 ; here\r\nchange 0\ninfo 2 0\n\n"
                                              "job 1 DOCUMENT string \"a ; b\" ; c \"\nend");
    ASSERT_EQ(recording.batches.size(), 1u);
    EXPECT_EQ(recording.batches[0].info->entries.at(0), JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"a ; b", 6})));
}

TEST(RecordingReader, TakesEntriesOfAnyKindForAnyField)
{
    EXPECT_EQ(ReadEntry("job 1 STATUS string \"x\""), JobEntry(1, JOB_NOTIFY_FIELD_STATUS, BlockOf({L"x", 2})));
    EXPECT_EQ(ReadEntry("job 1 DOCUMENT number 7"), JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, NotifyNumbers{7, 0}));
    EXPECT_EQ(ReadEntry("job 1 DOCUMENT null"), JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, NotifyBlock()));
    EXPECT_EQ(ReadEntry("9 1 4 number 7 8 reserved 3"), (RecordedEntry{
                                                            9, 4, 3, 1, NotifyNumbers{7, 8}
    }));
}

/// One recording with an entry of every form.
Recording EveryForm()
{
    std::vector<RecordedEntry> entries;
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_STATUS, NotifyNumbers{0x18, 5}));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"\"\\\n\xD83D", 5})));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"", 1})));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, BlockOf(L"ab")));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, BlockOf({L"a\0b", 4})));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DOCUMENT, threeBytes));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_SUBMITTED, leapDay));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_SUBMITTED, threeBytes));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DEVMODE, threeBytes));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DEVMODE, NotifyBlock()));
    entries.push_back(JobEntry(1, JOB_NOTIFY_FIELD_DEVMODE, NotifyBlock(std::in_place)));
    entries.push_back(PrinterEntry(PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, threeBytes));
    entries.push_back(PrinterEntry(PRINTER_NOTIFY_FIELD_STATUS, threeBytes));
    entries.push_back(RecordedEntry{7, 0xFFFF, 2, 3, BlockOf({L"x", 2})});
    entries.push_back(RecordedEntry{
        JOB_NOTIFY_TYPE, JOB_NOTIFY_FIELD_PRIORITY, 0xFFFFFFFF, 2, NotifyNumbers{1, 0}
    });

    Recording recording;
    recording.batches.push_back(RecordedBatch{0, false, PRINTER_CHANGE_WRITE_JOB, std::nullopt});
    recording.batches.push_back(BatchOf(entries));
    recording.batches.back().microseconds = 1234567;
    recording.batches.push_back(RecordedBatch{
        1234567, true, 0xFFFFFFFF, RecordedInfo{3, PRINTER_NOTIFY_INFO_DISCARDED, {}}
    });
    return recording;
}

TEST(RecordingReader, ReadsBackWhatWasWritten)
{
    const Recording recording = EveryForm();
    EXPECT_EQ(ReadRecording(Written(recording)).batches, recording.batches);
}

TEST(RecordingReader, ReadsBackWhatWasWrittenOfRandomEntries)
{
    std::mt19937_64 random(RandomSeed());
    const auto below = [&random](uint64_t limit) { return random() % limit; };
    std::vector<RecordedEntry> entries;
    for (int round = 0; round < 2000; ++round) {
        RecordedEntry entry;
        entry.type = static_cast<WORD>(below(3));
        entry.field = static_cast<WORD>(below(0x20));
        entry.reserved = static_cast<DWORD>(below(7));
        entry.id = static_cast<DWORD>(random());
        if (KindOf(entry.type, entry.field, entry.reserved) == NotifyData::Number) {
            entry.data = NotifyNumbers{static_cast<DWORD>(random()), static_cast<DWORD>(below(2))};
        } else {
            std::vector<BYTE> bytes(below(24));
            for (BYTE& byte : bytes) byte = static_cast<BYTE>(below(4) ? below(128) : below(256));
            entry.data = NotifyBlock(bytes);
        }
        entries.push_back(entry);
    }
    const RecordedBatch batch = BatchOf(entries);
    EXPECT_EQ(ReadRecording(first + RecordingText(batch)).batches.at(0), batch);
}

/// What is wrong with a recording that goes on like this after its first line.
std::wstring ErrorIn(const std::string& rest)
{
    return ErrorOf(first + rest);
}

/// Whatever is wrong, the reader names the line.
TEST(RecordingReader, NamesTheLineThatIsMalformed)
{
    EXPECT_EQ(ErrorIn("pages 3\n"), L"2: neither a batch nor a line of the header: pages");
    EXPECT_EQ(ErrorIn("\n\nprinter\n"), L"4: missing: a text in quotes");
    EXPECT_EQ(ErrorIn("printer Label\n"), L"2: not a text in quotes: Label");
    EXPECT_EQ(ErrorIn("printer \"Label\n"), L"2: the closing quote is missing");
    EXPECT_EQ(ErrorIn("printer \"\\x\"\n"), L"2: not a text in quotes: \"\\x\"");
    EXPECT_EQ(ErrorIn("printer \"a\" \"b\"\n"), L"2: more than expected: \"b\"");
    EXPECT_EQ(ErrorIn("begun 2024-02-30 00:00:00.000\n"), L"2: not a time of day after a date: 00:00:00.000");
    EXPECT_EQ(ErrorIn("begun 2024-02-29\n"), L"2: missing: a time of day after a date");
    EXPECT_EQ(ErrorIn("filter\n"), L"2: missing: a number");
    EXPECT_EQ(ErrorIn("filter all\n"), L"2: not a number: all");
    EXPECT_EQ(ErrorIn("fields\n"), L"2: missing: \"printer\", \"job\" or a type's number");
    EXPECT_EQ(ErrorIn("fields job NAME\n"), L"2: not a field's name or number: NAME");
    EXPECT_EQ(ErrorIn("fields job 65536\n"), L"2: not a field's name or number: 65536");
    EXPECT_EQ(ErrorIn("printer \"\xC4\"\n"), L"2: not a text in UTF-8");
    EXPECT_EQ(ErrorIn("batch\n"), L"2: missing: a time in seconds");
    EXPECT_EQ(ErrorIn("batch soon\n"), L"2: not a time in seconds: soon");
    EXPECT_EQ(ErrorIn("batch 1 again\n"), L"2: more than expected: again");
    EXPECT_EQ(ErrorIn("batch 1\n"), L"3: the last batch has no end");
    EXPECT_EQ(ErrorIn("batch 1\nend\n"), L"3: a batch begins with its change");
    EXPECT_EQ(ErrorIn("batch 1\nchange\n"), L"3: missing: a number");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\nchange 1\n"), L"4: an entry before info");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\ninfo\n"), L"4: missing: a version");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\ninfo 2\n"), L"4: missing: flags");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\ninfo 2 0\ninfo 2 0\n"), L"5: a second info");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\njob 1 STATUS number 1\n"), L"4: an entry before info");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\nend now\n"), L"4: more than expected: now");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\nend\nprinter \"x\"\n"), L"5: the header ends with the first batch");
    EXPECT_EQ(ErrorIn("batch 2\nchange 1\nend\nbatch 1.9\n"), L"5: earlier than the batch before");
    EXPECT_EQ(ErrorIn("batch 1\nchange 1\nend\nend\n"), L"5: neither a batch nor a line of the header: end");
}

/// What is wrong with a recording that has this entry in its fifth line.
std::wstring ErrorInEntry(const std::string& line)
{
    return ErrorIn("batch 0\nchange 0\ninfo 2 0\n" + line + "\nend\n");
}

TEST(RecordingReader, NamesTheLineOfAMalformedEntry)
{
    EXPECT_EQ(ErrorInEntry("task 1 STATUS number 1"), L"5: not \"printer\", \"job\" or a type's number: task");
    EXPECT_EQ(ErrorInEntry("job"), L"5: missing: a number");
    EXPECT_EQ(ErrorInEntry("job one STATUS number 1"), L"5: not a number: one");
    EXPECT_EQ(ErrorInEntry("job 1 COMMENT string \"x\""), L"5: not a field's name or number: COMMENT");
    EXPECT_EQ(ErrorInEntry("job 1 STATUS"), L"5: missing: the kind of data");
    EXPECT_EQ(ErrorInEntry("job 1 STATUS float 1"), L"5: unknown kind of data: float");
    EXPECT_EQ(ErrorInEntry("job 1 STATUS number"), L"5: missing: a number");
    EXPECT_EQ(ErrorInEntry("job 1 STATUS number 1 two"), L"5: not a number: two");
    EXPECT_EQ(ErrorInEntry("job 1 STATUS number 1 2 3"), L"5: more than expected: 3");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT string x"), L"5: not a text in quotes: x");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT string \"x\" ended"), L"5: more than expected: ended");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT bytes 123"), L"5: not hexadecimal bytes: 123");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT bytes"), L"5: missing: hexadecimal bytes");
    EXPECT_EQ(ErrorInEntry("job 1 SUBMITTED systemtime"), L"5: missing: a date");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT null reserved"), L"5: missing: a number");
    EXPECT_EQ(ErrorInEntry("job 1 DOCUMENT null reserved 1 2"), L"5: more than expected: 2");
}

TEST(RecordingReader, ReadsNothingThatIsNoRecording)
{
    EXPECT_EQ(ErrorOf(""), L"1: a recording begins with: notification recording 1");
    EXPECT_EQ(ErrorOf("\n; nothing\n"), L"3: a recording begins with: notification recording 1");
    EXPECT_EQ(ErrorOf("[printer Label]\n"), L"1: a recording begins with: notification recording 1");
    EXPECT_EQ(ErrorOf("notification recording 2\n"), L"1: a recording begins with: notification recording 1");
    EXPECT_EQ(ErrorOf("notification recording 1 2\n"), L"1: more than expected: 2");
}

/// A file that was cut anywhere, or damaged in one place, is read or refused; it never does harm.
TEST(RecordingReader, SurvivesDamagedFiles)
{
    const std::string whole = Written(EveryForm());
    for (size_t length = 0; length < whole.size(); ++length) ErrorOf(whole.substr(0, length));

    std::mt19937_64 random(RandomSeed());
    for (int round = 0; round < 5000; ++round) {
        std::string damaged = whole;
        damaged[random() % damaged.size()] = static_cast<char>(random());
        ErrorOf(damaged);
    }
}

} // namespace
