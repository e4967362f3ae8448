// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyBlocks.h"

#include "spooler/SpoolerConstants.h"

#include <algorithm>

namespace {

constexpr BYTE freedByte = 0xDD; // so that a client that reads on is noticed

size_t RoundUp(size_t size)
{
    constexpr size_t alignment = alignof(void*);
    return (size + alignment - 1) / alignment * alignment;
}

size_t HeaderSize(size_t entries)
{
    return offsetof(PRINTER_NOTIFY_INFO, aData) + std::max<size_t>(entries, 1) * sizeof(PRINTER_NOTIFY_INFO_DATA);
}

size_t SizeOf(const Batch& batch)
{
    size_t size = RoundUp(HeaderSize(batch.entries.size()));
    for (const BatchEntry& entry : batch.entries) size += RoundUp(entry.value.bytes.size());
    return size;
}

} // namespace

PRINTER_NOTIFY_INFO* NotifyBlocks::GiveOut(const Batch& batch)
{
    const size_t size = SizeOf(batch);
    auto memory = std::make_unique<BYTE[]>(size);
    auto* const info = reinterpret_cast<PRINTER_NOTIFY_INFO*>(memory.get());
    info->Version = batch.version;
    info->Flags = batch.flags;
    info->Count = static_cast<DWORD>(batch.entries.size());

    BYTE* tail = memory.get() + RoundUp(HeaderSize(batch.entries.size()));
    PRINTER_NOTIFY_INFO_DATA* data = info->aData;
    for (const BatchEntry& entry : batch.entries) {
        const NotifyValue& value = entry.value;
        data->Type = entry.type;
        data->Field = entry.field;
        data->Reserved = value.dataType;
        data->Id = entry.id;
        data->NotifyData.adwData[0] = value.number;
        data->NotifyData.adwData[1] = value.second;
        if (!value.bytes.empty()) {
            data->NotifyData.Data.cbBuf = static_cast<DWORD>(value.bytes.size());
            data->NotifyData.Data.pBuf = tail;
            std::ranges::copy(value.bytes, tail);
            tail += RoundUp(value.bytes.size());
        }
        ++data;
    }
    _blocks.emplace(info, Block{std::move(memory), size});
    return info;
}

bool NotifyBlocks::Free(const void* block)
{
    return FreeFrom(_blocks, block) || FreeFrom(_forgotten, block);
}

void NotifyBlocks::Forget()
{
    _forgotten.merge(_blocks);
    _blocks.clear();
}

bool NotifyBlocks::FreeFrom(Blocks& blocks, const void* block)
{
    const auto found = blocks.find(block);
    if (found == blocks.end()) return false;
    std::fill_n(found->second.memory.get(), found->second.size, freedByte);
    blocks.erase(found);
    return true;
}
