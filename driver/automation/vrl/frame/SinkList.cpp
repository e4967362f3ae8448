// SPDX-License-Identifier: MIT
#include "vrl/frame/SinkList.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

using Microsoft::WRL::ComPtr;

HRESULT SinkList::Add(ComPtr<IDispatch> sink, DWORD* cookie) noexcept
try {
    Connection& slot = FreeSlot();
    if (++_lastCookie == 0) ++_lastCookie;
    slot = {_lastCookie, std::move(sink)};
    *cookie = slot.cookie;
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

ComPtr<IDispatch> SinkList::Remove(DWORD cookie) noexcept
{
    const auto slot = std::find_if(_slots.begin(), _slots.end(),
                                   [cookie](const Connection& one) { return one.sink && one.cookie == cookie; });
    return slot == _slots.end() ? nullptr : std::move(slot->sink);
}

ComPtr<IDispatch> SinkList::SinkAt(size_t slot) const noexcept
{
    return slot < _slots.size() ? _slots[slot].sink : nullptr;
}

std::vector<SinkList::Connection> SinkList::Connections() const
{
    std::vector<Connection> filled;
    std::copy_if(_slots.begin(), _slots.end(), std::back_inserter(filled),
                 [](const Connection& one) { return one.sink != nullptr; });
    return filled;
}

SinkList::Connection& SinkList::FreeSlot()
{
    const auto slot =
        std::find_if(_slots.begin(), _slots.end(), [](const Connection& one) { return one.sink == nullptr; });
    return slot == _slots.end() ? _slots.emplace_back() : *slot;
}
