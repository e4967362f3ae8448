// SPDX-License-Identifier: MIT
#include "vrl/frame/SinkList.h"

#include <algorithm>
#include <new>
#include <utility>

HRESULT SinkList::Add(ForeignPtr<IDispatch>& sink, DWORD* cookie) noexcept
try {
    Connection& slot = FreeSlot();
    if (++_lastCookie == 0) ++_lastCookie;
    slot = {_lastCookie, std::move(sink)};
    *cookie = slot.cookie;
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

ForeignPtr<IDispatch> SinkList::Remove(DWORD cookie) noexcept
{
    const auto slot = std::find_if(_slots.begin(), _slots.end(),
                                   [cookie](const Connection& one) { return one.sink && one.cookie == cookie; });
    return slot == _slots.end() ? ForeignPtr<IDispatch>() : std::move(slot->sink);
}

ForeignPtr<IDispatch> SinkList::SinkAt(size_t slot) const noexcept
{
    return slot < _slots.size() ? _slots[slot].sink.Copy() : ForeignPtr<IDispatch>();
}

std::vector<SinkList::Connection> SinkList::Connections() const
{
    std::vector<Connection> filled;
    for (const Connection& one : _slots) {
        if (auto sink = one.sink.Copy()) filled.push_back({one.cookie, std::move(sink)});
    }
    return filled;
}

SinkList::Connection& SinkList::FreeSlot()
{
    const auto slot = std::find_if(_slots.begin(), _slots.end(), [](const Connection& one) { return !one.sink; });
    return slot == _slots.end() ? _slots.emplace_back() : *slot;
}
