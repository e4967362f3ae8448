// SPDX-License-Identifier: MIT
#include "vrl/classes/DayTime.h"

#include "foundation/ImportedFunction.h"
#include "foundation/text/OStringArray.h"

#include <utility>

namespace {

constexpr DWORD minutesPerHour = 60;
constexpr DWORD minutesPerDay = 1440;

struct HourAndMinute {
    int hour = 0;
    int minute = 0;
};

enum class HalfOfDay { None, Am, Pm };

/// Finds "AM", or else "PM", and cuts the text in front of it.
HalfOfDay CutHalfOfDay(OString& text)
{
    for (const auto& [word, half] : {
             std::pair{L"AM", HalfOfDay::Am},
             std::pair{L"PM", HalfOfDay::Pm}
    }) {
        const int place = text.Find(word);
        if (place < 0) continue;
        text = text.Left(place);
        return half;
    }
    return HalfOfDay::None;
}

/// Deliberate: the first character is never looked at, so "x5" is a number and reads as 0.
bool LooksLikeNumber(const OString& part)
{
    const wchar_t* const characters = part.wstring();
    for (int i = part.Length() - 1; i >= 1; --i) {
        if (characters[i] < L'0' || characters[i] > L'9') return false;
    }
    return true;
}

/// The number at that place; 0 if there is no such part. False if it is none.
bool ReadPart(const OStringArray& parts, int index, int& number)
{
    if (index >= parts.GetSize()) return true;
    number = parts.GetAt(index).ToInt();
    return LooksLikeNumber(parts.GetAt(index));
}

/// The time of the platform's conversion, whose result is not looked at: an hour of 24 comes out as it likes.
HourAndMinute TimeOf(const SYSTEMTIME& time)
{
    return {time.wHour, time.wMinute};
}

SYSTEMTIME At(SYSTEMTIME day, const HourAndMinute& time)
{
    day.wHour = static_cast<WORD>(time.hour);
    day.wMinute = static_cast<WORD>(time.minute);
    return day;
}

SYSTEMTIME Today(void(WINAPI* read)(SYSTEMTIME*))
{
    SYSTEMTIME today{};
    read(&today);
    return today;
}

HourAndMinute ToLocal(const HourAndMinute& utc)
{
    TIME_ZONE_INFORMATION zone{};
    ::GetTimeZoneInformation(&zone);
    const SYSTEMTIME given = At(Today(::GetSystemTime), utc);
    SYSTEMTIME local{};
    ::SystemTimeToTzSpecificLocalTime(&zone, &given, &local);
    return TimeOf(local);
}

/// For systems that convert in one direction only: back through a zone that is mirrored.
HourAndMinute ToUtcByMirroredZone(TIME_ZONE_INFORMATION zone, const HourAndMinute& local)
{
    zone.Bias = -zone.Bias;
    zone.StandardBias = -zone.StandardBias;
    zone.DaylightBias = -zone.DaylightBias;
    const SYSTEMTIME given = At(Today(::GetSystemTime), local);
    SYSTEMTIME utc{};
    ::SystemTimeToTzSpecificLocalTime(&zone, &given, &utc);
    return TimeOf(utc);
}

HourAndMinute ToUtc(const HourAndMinute& local)
{
    TIME_ZONE_INFORMATION zone{};
    ::GetTimeZoneInformation(&zone);
    using Convert = decltype(::TzSpecificLocalTimeToSystemTime);
    const auto convert =
        ImportedFunction<Convert>(::GetModuleHandleW(L"kernel32.dll"), "TzSpecificLocalTimeToSystemTime");
    if (!convert) return ToUtcByMirroredZone(zone, local);
    const SYSTEMTIME given = At(Today(::GetLocalTime), local);
    SYSTEMTIME utc{};
    convert(&zone, &given, &utc);
    return TimeOf(utc);
}

} // namespace

long ParseDayTime(const OString& given)
{
    if (given.IsEmpty()) return clearedDayTime;
    OString text(given.wstring());
    text.Remove(L' ');
    text.Remove(L'.'); // Deliberate: also where it stands between hour and minute
    text.MakeUpper();
    const HalfOfDay half = CutHalfOfDay(text);

    constexpr int mostParts = 3; // Deliberate: the third is not looked at
    OStringArray parts;
    parts.Split(text.wstring(), L":");
    HourAndMinute time;
    if (parts.GetSize() > mostParts || !ReadPart(parts, 0, time.hour) || !ReadPart(parts, 1, time.minute)) {
        return noDayTime;
    }
    const int lastHour = half == HalfOfDay::None ? 24 : 12;
    constexpr int lastMinute = 60;
    if (time.hour < 0 || time.hour > lastHour || time.minute < 0 || time.minute > lastMinute) return noDayTime;

    if (half == HalfOfDay::Pm) time.hour += 12; // Deliberate: 12 PM too, and 12 AM stays 12
    const HourAndMinute utc = ToUtc(time);
    return utc.hour * static_cast<long>(minutesPerHour) + utc.minute;
}

OString FormatDayTime(DWORD minutes)
{
    if (minutes > minutesPerDay) return OString();
    const HourAndMinute local =
        ToLocal({static_cast<int>(minutes / minutesPerHour), static_cast<int>(minutes % minutesPerHour)});
    OString text;
    text.Format(L"%02d:%02d", local.hour, local.minute);
    return text;
}
