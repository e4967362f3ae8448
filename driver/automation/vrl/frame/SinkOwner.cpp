// SPDX-License-Identifier: MIT
#include "vrl/frame/SinkOwner.h"

#include "foundation/OLockGuard.h"
#include "vrl/frame/ReferenceList.h"

#include <utility>

void SinkOwner::EnteredList(std::weak_ptr<ReferenceList> list)
{
    OLockGuard guard(_objectLock);
    _lists.push_back(std::move(list));
}

void SinkOwner::LeftList(const ReferenceList& list) noexcept
{
    OLockGuard guard(_objectLock);
    std::erase_if(_lists, [&](const auto& entered) { return entered.lock().get() == &list; });
}

bool SinkOwner::IsListed() const noexcept
{
    OLockGuard guard(_objectLock);
    return !_lists.empty();
}

void SinkOwner::LeaveLists() noexcept
{
    std::vector<std::weak_ptr<ReferenceList>> lists;
    {
        OLockGuard guard(_objectLock);
        lists.swap(_lists);
    }
    for (const auto& entered : lists) {
        if (const auto list = entered.lock()) list->Remove(*this); // not under the object's lock, which comes later
    }
}
