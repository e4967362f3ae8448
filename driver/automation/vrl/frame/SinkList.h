// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/ForeignPtr.h"

#include <oaidl.h>

#include <vector>

/// The connected sinks of one object, in slots: a slot that a sink has left stays, empty, until another takes it.
///
/// Ownership: one reference on each sink. Threading: none; the object that owns it holds its lock.
class SinkList {
public:
    struct Connection {
        DWORD cookie = 0;
        ForeignPtr<IDispatch> sink;
    };

    /// Takes `sink` over into the first empty slot; `*cookie` is its number for `Remove`, never 0 and not soon used
    /// again. After a failure both are as they were.
    HRESULT Add(ForeignPtr<IDispatch>& sink, DWORD* cookie) noexcept;

    /// Empties the slot of `cookie` and gives its sink; null if there is none of that number.
    ForeignPtr<IDispatch> Remove(DWORD cookie) noexcept;

    size_t SlotCount() const noexcept { return _slots.size(); }

    /// The sink in a slot, null for an empty slot or one past the end.
    ForeignPtr<IDispatch> SinkAt(size_t slot) const noexcept;

    /// The filled slots in their order. Throws std::bad_alloc.
    std::vector<Connection> Connections() const;

private:
    Connection& FreeSlot();

    std::vector<Connection> _slots;
    DWORD _lastCookie = 0;
};
