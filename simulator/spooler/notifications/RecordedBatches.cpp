// SPDX-License-Identifier: MIT
#include "spooler/notifications/RecordedBatches.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

NotifyValue ValueOf(const RecordedEntry& entry)
{
    NotifyValue value;
    value.dataType = entry.reserved;
    if (const auto* const numbers = std::get_if<NotifyNumbers>(&entry.data)) {
        value.number = (*numbers)[0];
        value.second = (*numbers)[1];
    } else {
        value.bytes = std::get<NotifyBlock>(entry.data).value_or(Bytes());
    }
    return value;
}

/// The batch as it was recorded.
Batch WholeBatch(const RecordedBatch& recorded)
{
    Batch batch;
    batch.change = recorded.change;
    if (!recorded.info) return batch;
    batch.withBlock = true;
    batch.version = recorded.info->version;
    batch.flags = recorded.info->flags;
    for (const RecordedEntry& entry : recorded.info->entries)
        batch.entries.push_back({entry.type, entry.field, entry.id, ValueOf(entry)});
    return batch;
}

bool Contains(const std::vector<WORD>& fields, WORD field)
{
    return std::ranges::find(fields, field) != fields.end();
}

/// The recorder had asked for the field. A recording that doesn't tell had asked for everything.
bool WasAskedFor(const RecordingHeader& header, const BatchEntry& entry)
{
    const auto& fields = entry.type == PRINTER_NOTIFY_TYPE ? header.printerFields : header.jobFields;
    const bool known = entry.type == PRINTER_NOTIFY_TYPE || entry.type == JOB_NOTIFY_TYPE;
    return known && (fields.empty() || Contains(fields, entry.field));
}

/// What the client hears of the whole batch.
Batch Heard(const Batch& whole, const NotifyRequest& request, const RecordingHeader& header)
{
    const DWORD askedFor = header.filter ? header.filter : 0xFFFFFFFF;
    Batch batch;
    batch.change = whole.change & (request.Filter() | ~askedFor);
    batch.version = whole.version;
    batch.flags = whole.flags;
    std::ranges::copy_if(whole.entries, std::back_inserter(batch.entries), [&](const BatchEntry& entry) {
        return Contains(request.Fields(entry.type), entry.field) || !WasAskedFor(header, entry);
    });
    batch.withBlock = whole.withBlock && request.WantsFields() &&
                      (!batch.entries.empty() || batch.flags != 0 || whole.entries.empty());
    if (!batch.withBlock) batch.entries.clear();
    return batch;
}

} // namespace

std::vector<Batch> BatchesFor(const NotifyRequest& request, const Recording& recording)
{
    std::vector<Batch> batches;
    std::vector<std::shared_ptr<const Batch>> unheard;
    for (const RecordedBatch& recorded : recording.batches) {
        const auto whole = std::make_shared<const Batch>(WholeBatch(recorded));
        unheard.push_back(whole);
        Batch batch = Heard(*whole, request, recording.header);
        batch.microseconds = recorded.microseconds;
        batch.answersRefresh = recorded.refresh && request.WantsFields();
        const bool hasNothing = batch.change == 0 && !batch.withBlock;
        const bool hadSomething = whole->change != 0 || whole->withBlock;
        if (hasNothing && hadSomething && !batch.answersRefresh) continue;
        batch.recorded = std::exchange(unheard, {});
        batches.push_back(std::move(batch));
    }
    return batches;
}
