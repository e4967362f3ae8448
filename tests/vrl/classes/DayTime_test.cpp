// SPDX-License-Identifier: MIT
#include "vrl/classes/DayTime.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// A zone that is so many minutes behind UTC; daylight saving, if it has any, is an hour from April to September.
TIME_ZONE_INFORMATION zone;
SYSTEMTIME now;

class DayTimeTest : public ::testing::Test {
protected:
    DayTimeTest()
    {
        SetZone(0);
        SetDate(2024, 1);
    }

    static void SetZone(long bias, bool hasDaylightSaving = false)
    {
        zone = {};
        zone.Bias = bias;
        if (!hasDaylightSaving) return;
        zone.DaylightBias = -60;
        zone.DaylightDate = {0, 4, 0, 1, 2, 0, 0, 0};
        zone.StandardDate = {0, 10, 0, 1, 2, 0, 0, 0};
    }

    static void SetDate(WORD year, WORD month) { now = {year, month, 1, 15, 12, 0, 0, 0}; }

    static long Parsed(const char* text) { return ParseDayTime(OString(text)); }

    static std::string Formatted(DWORD minutes) { return FormatDayTime(minutes).nstring(); }

private:
    ImportHook<decltype(::GetTimeZoneInformation)> _zone{"GetTimeZoneInformation",
                                                         [](TIME_ZONE_INFORMATION* given) -> DWORD {
                                                             *given = zone;
                                                             return TIME_ZONE_ID_STANDARD;
                                                         }};
    ImportHook<decltype(::GetSystemTime)> _systemTime{"GetSystemTime", [](SYSTEMTIME* given) { *given = now; }};
    ImportHook<decltype(::GetLocalTime)> _localTime{"GetLocalTime", [](SYSTEMTIME* given) { *given = now; }};
};

// ---- texts ----

struct TextRow {
    const wchar_t* text;
    long minutes;
};

constexpr long At(long hour, long minute)
{
    return hour * 60 + minute;
}

constexpr long bad = noDayTime;
constexpr long cleared = clearedDayTime;
constexpr long accepted = 0x7FFFFFFF; ///< an hour or a minute that the platform's conversion may take as it likes

// clang-format off
const TextRow textRows[] = {
    {L"", cleared},
    {L" ", At(0, 0)},
    {L"  ", At(0, 0)},
    {L".", At(0, 0)},
    {L"..", At(0, 0)},
    {L" . ", At(0, 0)},
    {L"0", At(0, 0)},
    {L"1", At(1, 0)},
    {L"2", At(2, 0)},
    {L"3", At(3, 0)},
    {L"4", At(4, 0)},
    {L"5", At(5, 0)},
    {L"6", At(6, 0)},
    {L"7", At(7, 0)},
    {L"8", At(8, 0)},
    {L"9", At(9, 0)},
    {L"10", At(10, 0)},
    {L"11", At(11, 0)},
    {L"12", At(12, 0)},
    {L"13", At(13, 0)},
    {L"17", At(17, 0)},
    {L"20", At(20, 0)},
    {L"22", At(22, 0)},
    {L"23", At(23, 0)},
    {L"24", accepted},
    {L"25", bad},
    {L"26", bad},
    {L"30", bad},
    {L"50", bad},
    {L"99", bad},
    {L"100", bad},
    {L"240", bad},
    {L"999", bad},
    {L"1000", bad},
    {L"00", At(0, 0)},
    {L"01", At(1, 0)},
    {L"07", At(7, 0)},
    {L"08", At(8, 0)},
    {L"09", At(9, 0)},
    {L"000", At(0, 0)},
    {L"008", At(8, 0)},
    {L"0008", At(8, 0)},
    {L"024", accepted},
    {L"025", bad},
    {L"0000000012", At(12, 0)},
    {L"99999999999", bad},
    {L"4294967296", bad},
    {L"4294967297", bad},
    {L"0:0", At(0, 0)},
    {L"0:00", At(0, 0)},
    {L"00:00", At(0, 0)},
    {L"0:1", At(0, 1)},
    {L"0:01", At(0, 1)},
    {L"0:59", At(0, 59)},
    {L"0:60", accepted},
    {L"0:61", bad},
    {L"0:99", bad},
    {L"0:100", bad},
    {L"1:0", At(1, 0)},
    {L"1:1", At(1, 1)},
    {L"1:2", At(1, 2)},
    {L"1:30", At(1, 30)},
    {L"2:15", At(2, 15)},
    {L"7:45", At(7, 45)},
    {L"8:00", At(8, 0)},
    {L"8:05", At(8, 5)},
    {L"8:5", At(8, 5)},
    {L"08:05", At(8, 5)},
    {L"8:30", At(8, 30)},
    {L"08:30", At(8, 30)},
    {L"9:09", At(9, 9)},
    {L"12:00", At(12, 0)},
    {L"12:01", At(12, 1)},
    {L"12:30", At(12, 30)},
    {L"12:59", At(12, 59)},
    {L"13:00", At(13, 0)},
    {L"13:37", At(13, 37)},
    {L"15:15", At(15, 15)},
    {L"18:59", At(18, 59)},
    {L"19:00", At(19, 0)},
    {L"20:20", At(20, 20)},
    {L"23:59", At(23, 59)},
    {L"23:60", accepted},
    {L"23:61", bad},
    {L"24:00", accepted},
    {L"24:01", accepted},
    {L"24:60", accepted},
    {L"24:61", bad},
    {L"25:00", bad},
    {L"1:000", At(1, 0)},
    {L"1:005", At(1, 5)},
    {L"1:060", accepted},
    {L"1:061", bad},
    {L"001:001", At(1, 1)},
    {L"1:2:3", At(1, 2)},
    {L"1:2:", At(1, 2)},
    {L"1:2:junk", At(1, 2)},
    {L"1:2:99", At(1, 2)},
    {L"1:2:-1", At(1, 2)},
    {L"1:2: ", At(1, 2)},
    {L"::", At(0, 0)},
    {L"1::", At(1, 0)},
    {L"1::3", At(1, 0)},
    {L":2:3", At(0, 2)},
    {L"23:59:59", At(23, 59)},
    {L"24:00:00", accepted},
    {L"8:30:00", At(8, 30)},
    {L"8:30:15", At(8, 30)},
    {L"8:30:61", At(8, 30)},
    {L"8:30:x", At(8, 30)},
    {L"1:2:3:4", bad},
    {L":::", bad},
    {L"1:2:3:", bad},
    {L"1:::", bad},
    {L"8:30:00:000", bad},
    {L"1:2:3:4:5", bad},
    {L"::::", bad},
    {L":", At(0, 0)},
    {L":0", At(0, 0)},
    {L":1", At(0, 1)},
    {L":30", At(0, 30)},
    {L":59", At(0, 59)},
    {L":60", accepted},
    {L":61", bad},
    {L"1:", At(1, 0)},
    {L"12:", At(12, 0)},
    {L"24:", accepted},
    {L"25:", bad},
    {L" :30", At(0, 30)},
    {L"8: ", At(8, 0)},
    {L" 8 : 30 ", At(8, 30)},
    {L"8am", At(8, 0)},
    {L"8AM", At(8, 0)},
    {L"8Am", At(8, 0)},
    {L"8aM", At(8, 0)},
    {L"8 am", At(8, 0)},
    {L"8 AM", At(8, 0)},
    {L"8 a.m.", At(8, 0)},
    {L"8 A.M.", At(8, 0)},
    {L"8a.m.", At(8, 0)},
    {L"8am.", At(8, 0)},
    {L"8 a m", At(8, 0)},
    {L"8 a. m.", At(8, 0)},
    {L"08am", At(8, 0)},
    {L"8:00am", At(8, 0)},
    {L"8:15 am", At(8, 15)},
    {L"8:15am", At(8, 15)},
    {L"8:15 a.m.", At(8, 15)},
    {L"0am", At(0, 0)},
    {L"0 am", At(0, 0)},
    {L"00:00am", At(0, 0)},
    {L"12am", At(12, 0)},
    {L"12 AM", At(12, 0)},
    {L"12:00 am", At(12, 0)},
    {L"12:30 a.m.", At(12, 30)},
    {L"12:60am", accepted},
    {L"11:59am", At(11, 59)},
    {L"13am", bad},
    {L"13 am", bad},
    {L"13:00am", bad},
    {L"24am", bad},
    {L"8pm", At(20, 0)},
    {L"8PM", At(20, 0)},
    {L"8 pm", At(20, 0)},
    {L"8 p.m.", At(20, 0)},
    {L"8 P.M.", At(20, 0)},
    {L"8:30pm", At(20, 30)},
    {L"8:30 pm", At(20, 30)},
    {L"8:30 p.m.", At(20, 30)},
    {L"08:30PM", At(20, 30)},
    {L"0pm", At(12, 0)},
    {L"0:30pm", At(12, 30)},
    {L"1pm", At(13, 0)},
    {L"1:05pm", At(13, 5)},
    {L"11:59pm", At(23, 59)},
    {L"12pm", accepted},
    {L"12 PM", accepted},
    {L"12:00 pm", accepted},
    {L"12:30 p.m.", accepted},
    {L"12:60pm", accepted},
    {L"13pm", bad},
    {L"13 PM", bad},
    {L"23pm", bad},
    {L"20:00pm", bad},
    {L"am", At(0, 0)},
    {L"AM", At(0, 0)},
    {L"a.m.", At(0, 0)},
    {L"pm", At(12, 0)},
    {L"PM", At(12, 0)},
    {L"p.m.", At(12, 0)},
    {L" pm", At(12, 0)},
    {L"am8", At(0, 0)},
    {L"pm8", At(12, 0)},
    {L"am pm", At(0, 0)},
    {L"pm am", bad},
    {L"ampm", At(0, 0)},
    {L"8ampm", At(8, 0)},
    {L"8pmam", bad},
    {L"8 am pm", At(8, 0)},
    {L"8 pm am", bad},
    {L"8amx", At(8, 0)},
    {L"8 am tomorrow", At(8, 0)},
    {L"8pmx", At(20, 0)},
    {L"8 pm sharp", At(20, 0)},
    {L"8am:30", At(8, 0)},
    {L"8:am", At(8, 0)},
    {L"8:pm", At(20, 0)},
    {L":am", At(0, 0)},
    {L":30pm", At(12, 30)},
    {L"8:30am:15", At(8, 30)},
    {L"1:2:3pm", At(13, 2)},
    {L"1:2:3:4pm", bad},
    {L"2.30", bad},
    {L"2.30 pm", bad},
    {L"2.30pm", bad},
    {L"14.30", bad},
    {L"1.5", At(15, 0)},
    {L".8", At(8, 0)},
    {L"8.", At(8, 0)},
    {L"8.:30", At(8, 30)},
    {L"8:.30", At(8, 30)},
    {L"8:3.0", At(8, 30)},
    {L"1 2", At(12, 0)},
    {L"1 2:3 0", At(12, 30)},
    {L"2 3:5 9", At(23, 59)},
    {L"2 5", bad},
    {L"1 0 pm", At(22, 0)},
    {L"x", At(0, 0)},
    {L"x5", At(0, 0)},
    {L"x23", At(0, 0)},
    {L"x24", At(0, 0)},
    {L"x:", At(0, 0)},
    {L"x:x", At(0, 0)},
    {L"x5:y7", At(0, 0)},
    {L"5:y", At(5, 0)},
    {L"5:y7", At(5, 0)},
    {L"5:y60", At(5, 0)},
    {L"-", At(0, 0)},
    {L"-5", bad},
    {L"-0", At(0, 0)},
    {L"-1:00", bad},
    {L"+5", At(5, 0)},
    {L"+5:30", At(5, 30)},
    {L"5:+30", At(5, 30)},
    {L"5:-1", bad},
    {L"5:-0", At(5, 0)},
    {L"a", At(0, 0)},
    {L"A", At(0, 0)},
    {L"m", At(0, 0)},
    {L"p", At(0, 0)},
    {L"h8", At(0, 0)},
    {L"#12", At(0, 0)},
    {L"(8", At(0, 0)},
    {L"/8", At(0, 0)},
    {L"\t8", At(8, 0)},
    {L"\t08:\t30", At(8, 30)},
    {L"1x", bad},
    {L"12x", bad},
    {L"8h", bad},
    {L"8h30", bad},
    {L"8-30", bad},
    {L"8/30", bad},
    {L"8,30", bad},
    {L"8;30", bad},
    {L"8:3x", bad},
    {L"8:30x", bad},
    {L"8:30 x", bad},
    {L"8:x3x", bad},
    {L"--5", bad},
    {L"+-5", bad},
    {L"5-", bad},
    {L"0x10", bad},
    {L"1e1", bad},
    {L"8:30h", bad},
    {L"eight", bad},
    {L"noon", bad},
    {L"midnight", bad},
    {L"now", bad},
    {L"8 o'clock", bad},
    {L"8:30 uhr", bad},
    {L"\u00BD", At(0, 0)},
    {L"8\u00BD", bad},
    {L"1\uFF12", bad},
    {L"8:3\uFF10", bad},
    {L"noon pm", bad},
    {L"nam", At(0, 0)},
    {L"8 bam", bad},
    {L"8bpm", bad},
    {L"8:30 AM EST", At(8, 30)},
    {L"T08:30", At(0, 30)},
    {L"2024-01-01 08:30", bad},
    {L"08:30Z", bad},
    {L"08:30+01:00", bad},
    {L"8:30\n", bad},
    {L"8\n", bad},
    {L"\n8", At(8, 0)},
    {L"8\r\n", bad},
    {L"8\u00A08", bad},
    {L"8:30\u00A0pm", bad},
    {L"AMAM", At(0, 0)},
    {L"8:30AMAM", At(8, 30)},
    {L"PMPM", At(12, 0)},
    {L"0:0AM", At(0, 0)},
    {L"0:0PM", At(12, 0)},
    {L"12:0PM", accepted},
    {L"12:1AM", At(12, 1)},
    {L"1:59 P M", At(13, 59)},
    {L"10:10:10 PM", At(22, 10)},
    {L"10:10:10:10 PM", bad},
};
// clang-format on
static_assert(std::size(textRows) > 200);

TEST_F(DayTimeTest, TextsAreTimesOrNot)
{
    for (const TextRow& row : textRows) {
        const long minutes = ParseDayTime(OString(row.text));
        if (row.minutes == accepted) {
            EXPECT_TRUE(minutes >= 0 && minutes <= 1440) << OString(row.text).nstring() << " gave " << minutes;
        } else {
            EXPECT_EQ(minutes, row.minutes) << OString(row.text).nstring();
        }
    }
}

TEST_F(DayTimeTest, NarrowAndWideTextsAreReadAlike)
{
    EXPECT_EQ(ParseDayTime(OString("8:30 p.m.")), At(20, 30));
    EXPECT_EQ(ParseDayTime(OString(L"8:30 p.m.")), At(20, 30));
}

TEST_F(DayTimeTest, GivenTextIsLeftAlone)
{
    const OString text(" 8.00 pm ");
    ParseDayTime(text);
    EXPECT_EQ(text, " 8.00 pm ");
}

// ---- zones ----

TEST_F(DayTimeTest, TextsAreInLocalTimeAndMinutesInUtc)
{
    SetZone(300); // New York
    EXPECT_EQ(Parsed("8:30"), At(13, 30));
    EXPECT_EQ(Formatted(At(13, 30)), "08:30");
    SetZone(-330); // Kolkata
    EXPECT_EQ(Parsed("8:30"), At(3, 0));
    EXPECT_EQ(Formatted(At(3, 0)), "08:30");
}

TEST_F(DayTimeTest, TimesGoOverMidnight)
{
    SetZone(300);
    EXPECT_EQ(Parsed("23:00"), At(4, 0));
    EXPECT_EQ(Formatted(At(4, 0)), "23:00");
    SetZone(-60);
    EXPECT_EQ(Parsed("0:30"), At(23, 30));
    EXPECT_EQ(Formatted(At(23, 30)), "00:30");
}

TEST_F(DayTimeTest, DateOfTodayDecidesWhetherDaylightSavingCounts)
{
    SetZone(-60, true);
    EXPECT_EQ(Parsed("8:30"), At(7, 30));
    EXPECT_EQ(Formatted(At(7, 30)), "08:30");
    SetDate(2024, 7);
    EXPECT_EQ(Parsed("8:30"), At(6, 30));
    EXPECT_EQ(Formatted(At(6, 30)), "08:30");
}

TEST_F(DayTimeTest, ClearedTimeIsShownAsTheLocalFormOfMidnight)
{
    SetZone(-60);
    EXPECT_EQ(Formatted(0), "01:00");
}

TEST_F(DayTimeTest, SystemThatConvertsInOneDirectionOnlyIsServedByAMirroredZone)
{
    static decltype(&::GetProcAddress) original;
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress", [](HMODULE module, LPCSTR name) -> FARPROC {
        const bool lacking = HIWORD(name) && std::string(name) == "TzSpecificLocalTimeToSystemTime";
        return lacking ? nullptr : original(module, name);
    });
    original = hook.Original();
    SetZone(300);
    EXPECT_EQ(Parsed("8:30"), At(13, 30));
    SetZone(-60, true);
    EXPECT_EQ(Parsed("8:30"), At(7, 30));
    SetDate(2024, 7);
    EXPECT_EQ(Parsed("8:30"), At(6, 30));
}

// ---- the way out ----

TEST_F(DayTimeTest, HourAndMinuteHaveTwoDigits)
{
    EXPECT_EQ(Formatted(0), "00:00");
    EXPECT_EQ(Formatted(1), "00:01");
    EXPECT_EQ(Formatted(60), "01:00");
    EXPECT_EQ(Formatted(599), "09:59");
    EXPECT_EQ(Formatted(1439), "23:59");
}

TEST_F(DayTimeTest, NoTimeOfTheDayIsAnEmptyText)
{
    EXPECT_NE(Formatted(1440), ""); // hour 24, whatever the platform makes of it
    EXPECT_EQ(Formatted(1441), "");
    EXPECT_EQ(Formatted(0xFFFFFFFF), "");
    EXPECT_EQ(Formatted(0xCDCDCDCD), "");
}

} // namespace
