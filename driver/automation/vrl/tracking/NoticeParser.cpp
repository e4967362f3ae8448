// SPDX-License-Identifier: MIT
#include "vrl/tracking/NoticeParser.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"
#include "vrl/core/JobEventID.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XPrinter.h"
#include "vrl/frame/VRException.h"
#include "vrl/tracking/PrinterNotificationsHandler.h"

#include <algorithm>
#include <array>

namespace {

/// Deliberate: a time of the spooler's notices is moved by the daylight bias; the time of a job's first load is not.
DWORD AdjustedTime(DWORD minutes)
{
    constexpr DWORD minutesPerDay = 1440;
    TIME_ZONE_INFORMATION zone{};
    if (::GetTimeZoneInformation(&zone) != TIME_ZONE_ID_DAYLIGHT) return minutes;
    return (minutes + static_cast<DWORD>(zone.DaylightBias) + minutesPerDay) % minutesPerDay;
}

DWORD AsItStands(DWORD value)
{
    return value;
}

/// A field of a job that is kept as a number.
struct NumberField {
    static constexpr int noEvent = 0;

    WORD field;
    const char* name; ///< in the trace
    DWORD (*adjust)(DWORD value);
    DWORD (XJob::*get)() const;
    void (XJob::*set)(DWORD value);
    int event; ///< told with the old and the new number
};

// clang-format off
constexpr std::array numberFields{
    NumberField{JOB_NOTIFY_FIELD_PRIORITY,      "Job Priority",   AsItStands,   &XJob::GetPriority,     &XJob::SetPriority,     JobEventID_OnJobPriorityChanged},
    NumberField{JOB_NOTIFY_FIELD_POSITION,      "Job Position",   AsItStands,   &XJob::GetPosition,     &XJob::SetPosition,     JobEventID_OnJobPositionChanged},
    NumberField{JOB_NOTIFY_FIELD_START_TIME,    "Job Start Time", AdjustedTime, &XJob::GetStartTime,    &XJob::SetStartTime,    NumberField::noEvent},
    NumberField{JOB_NOTIFY_FIELD_UNTIL_TIME,    "Job Until Time", AdjustedTime, &XJob::GetUntilTime,    &XJob::SetUntilTime,    NumberField::noEvent},
    NumberField{JOB_NOTIFY_FIELD_TOTAL_PAGES,   "Total Pages",    AsItStands,   &XJob::GetTotalPages,   &XJob::SetTotalPages,   JobEventID_OnJobTotalPagesChanged},
    NumberField{JOB_NOTIFY_FIELD_PAGES_PRINTED, "Pages Printed",  AsItStands,   &XJob::GetPagesPrinted, &XJob::SetPagesPrinted, JobEventID_OnJobPagesPrintedChanged},
    NumberField{JOB_NOTIFY_FIELD_TOTAL_BYTES,   "Total Bytes",    AsItStands,   &XJob::GetSize,         &XJob::SetSize,         NumberField::noEvent},
};
// clang-format on

} // namespace

void NoticeParser::Parse(const PRINTER_NOTIFY_INFO& info)
{
    for (DWORD i = 0; i < info.Count; ++i) ParseEntry(info.aData[i]);
}

void NoticeParser::ParseEntry(const PRINTER_NOTIFY_INFO_DATA& entry)
{
    if (entry.Type == PRINTER_NOTIFY_TYPE) {
        if (_printer.HasPrinterReferences()) _printerNotices.HandleField(entry);
    } else if (entry.Type == JOB_NOTIFY_TYPE) {
        ParseJobEntry(entry);
    } else {
        DEBUG_ASSERT(false);
    }
}

void NoticeParser::ParseJobEntry(const PRINTER_NOTIFY_INFO_DATA& entry)
{
    if (!_currentJob || entry.Id != _currentID) {
        _currentJob.Release();
        _currentJob = XJobRef::Acquire(_printer, entry.Id);
        _currentID = entry.Id;
    }
    try {
        TakeField(entry);
    } catch (const InvalidJob_E& failure) {
        TRACE("jobID = %d \t%s: field %d dropped\n", static_cast<int>(entry.Id), failure.GetText(), entry.Field);
    }
}

void NoticeParser::TakeField(const PRINTER_NOTIFY_INFO_DATA& entry)
{
    switch (entry.Field) {
    case JOB_NOTIFY_FIELD_STATUS:
        TakeStatus(entry.NotifyData.adwData[0]);
        break;
    case JOB_NOTIFY_FIELD_DEVMODE:
        TakeDevMode(entry.NotifyData.Data.pBuf);
        break;
    default:
        TakeNumber(entry.Field, entry.NotifyData.adwData[0]);
    }
}

void NoticeParser::TakeStatus(DWORD winStatus)
{
    TRACE("jobID = %d \tJOB_NOTIFY_FIELD_STATUS \twNotifyField = 0x%04x\n", static_cast<int>(_currentID),
          static_cast<unsigned>(winStatus));
    OTypedArray<int> raised;
    _currentJob->UpdateStatus(winStatus, raised);
    for (int i = 0; i < raised.GetSize(); ++i) _events.emplace_back(_currentID, raised.GetAt(i));
}

void NoticeParser::TakeDevMode(const void* devMode)
{
    if (devMode) _currentJob->SetDevMode(*static_cast<const DEVMODEW*>(devMode));
}

/// Fields without a row are ignored.
void NoticeParser::TakeNumber(WORD field, DWORD value)
{
    const auto* const row = std::ranges::find(numberFields, field, &NumberField::field);
    if (row == numberFields.end()) return;

    TRACE("jobID = %d \t%s = %d\n", static_cast<int>(_currentID), row->name, static_cast<int>(value));
    const bool pagesPrinted = field == JOB_NOTIFY_FIELD_PAGES_PRINTED;
    if (pagesPrinted) _printer.UpdateOdometer(_currentID, *_currentJob, value);

    const DWORD newValue = row->adjust(value);
    const DWORD oldValue = ((*_currentJob).*row->get)();
    if (newValue == oldValue) return;
    ((*_currentJob).*row->set)(newValue);
    if (row->event != NumberField::noEvent) _events.emplace_back(_currentID, row->event, oldValue, newValue);
    if (pagesPrinted && _printer.HasPrinterReferences()) _printerNotices.CheckOdometer(_printer.GetOdometer());
}
