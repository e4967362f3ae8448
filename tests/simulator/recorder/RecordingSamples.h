// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/KnownFields.h"
#include "recorder/Recording.h"

#include <string_view>

/// Entries and batches to write and to read back.

inline NotifyBlock BlockOf(std::wstring_view characters)
{
    const auto* const first = reinterpret_cast<const BYTE*>(characters.data());
    return NotifyBlock(std::in_place, first, first + characters.size() * sizeof(wchar_t));
}

/// An entry of a job, with the usual Reserved.
inline RecordedEntry JobEntry(DWORD id, WORD field, decltype(RecordedEntry::data) data)
{
    const KnownField* const known = FindKnownField(JOB_NOTIFY_TYPE, field);
    return {JOB_NOTIFY_TYPE, field, known ? static_cast<DWORD>(known->data) : 0, id, std::move(data)};
}

inline RecordedEntry PrinterEntry(WORD field, decltype(RecordedEntry::data) data)
{
    const KnownField* const known = FindKnownField(PRINTER_NOTIFY_TYPE, field);
    return {PRINTER_NOTIFY_TYPE, field, known ? static_cast<DWORD>(known->data) : 0, 0, std::move(data)};
}

/// 2024-02-29 23:05:59.007 as a SYSTEMTIME.
inline const NotifyBlock leapDay = std::vector<BYTE>{0xE8, 7, 2, 0, 4, 0, 29, 0, 23, 0, 5, 0, 59, 0, 7, 0};
inline const NotifyBlock threeBytes = std::vector<BYTE>{1, 2, 0xAB};

/// A batch of these entries, at the time 0.
inline RecordedBatch BatchOf(std::vector<RecordedEntry> entries)
{
    RecordedBatch batch;
    batch.info = RecordedInfo{2, 0, std::move(entries)};
    return batch;
}
