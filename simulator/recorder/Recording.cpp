// SPDX-License-Identifier: MIT
#include "recorder/Recording.h"

#include "recorder/KnownFields.h"

namespace {

RecordedEntry CopyEntry(const PRINTER_NOTIFY_INFO_DATA& entry)
{
    RecordedEntry copy = {entry.Type, entry.Field, entry.Reserved, entry.Id, {}};
    if (KindOf(entry.Type, entry.Field, entry.Reserved) == NotifyData::Number) {
        copy.data = NotifyNumbers{entry.NotifyData.adwData[0], entry.NotifyData.adwData[1]};
    } else {
        const auto* const first = static_cast<const BYTE*>(entry.NotifyData.Data.pBuf);
        copy.data = first ? NotifyBlock(std::in_place, first, first + entry.NotifyData.Data.cbBuf) : NotifyBlock();
    }
    return copy;
}

} // namespace

RecordedBatch CopyBatch(DWORD change, const PRINTER_NOTIFY_INFO* info)
{
    RecordedBatch batch;
    batch.change = change;
    if (!info) return batch;
    batch.info.emplace(RecordedInfo{info->Version, info->Flags, {}});
    for (DWORD index = 0; index < info->Count; ++index) batch.info->entries.push_back(CopyEntry(info->aData[index]));
    return batch;
}
