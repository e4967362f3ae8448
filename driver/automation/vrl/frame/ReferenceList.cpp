// SPDX-License-Identifier: MIT
#include "vrl/frame/ReferenceList.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"

bool ReferenceList::Add(SinkOwner& object)
{
    OLockGuard guard(_lock);
    if (_objects.Find(&object) >= 0) return false;
    TRACE("%s", _addedTrace);
    _objects.Add(&object);
    try {
        object.EnteredList(weak_from_this());
    } catch (...) {
        _objects.RemoveAt(_objects.GetSize() - 1);
        throw;
    }
    return true;
}

void ReferenceList::Remove(SinkOwner& object) noexcept
{
    OLockGuard guard(_lock);
    bool bFound = false;
    for (int i = _objects.GetSize() - 1; i >= 0; --i) {
        if (_objects.GetAt(i) != &object) continue;
        DEBUG_ASSERT(!bFound);
        bFound = true;
        TRACE("%s", _removedTrace);
        _objects.RemoveAt(i);
        if (i < _next) --_next;
    }
    object.LeftList(*this);
}
