// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/Platform.h"
#include "vrl/frame/EventArguments.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <memory>
#include <vector>

class ReferenceList;

/// An object with sinks as the notification thread sees it: something that can be named in an event, and that calls its
/// own sinks. `EventSource` implements it for the automation classes.
///
/// Ownership: lists of sink owners (`ReferenceList`) keep nobody alive. A sink owner knows the lists that it stands in
///            and leaves them before it dies.
/// Threading: any thread. A list's lock comes before the object's own.
class SinkOwner {
public:
    SinkOwner(const SinkOwner&) = delete;
    SinkOwner& operator=(const SinkOwner&) = delete;

    /// The object's dual interface with one more reference. Null if its last reference has gone: it is about to die.
    virtual Microsoft::WRL::ComPtr<IDispatch> Identity() noexcept = 0;

    /// The fire step: calls `Invoke` of every connected sink, in slot order, and gives the result of the last call.
    /// A sink's failure, and whatever it raises, is its own affair. The object's lock is not held over a call.
    virtual HRESULT Fire(DISPID eventId, const EventArguments& arguments) noexcept = 0;

    /// Called by a list, under its lock, before this object stands in it and after it no longer does.
    /// `EnteredList` throws std::bad_alloc.
    void EnteredList(std::weak_ptr<ReferenceList> list);
    void LeftList(const ReferenceList& list) noexcept;

    /// Stands in a list, or stood in one that has died since.
    bool IsListed() const noexcept;

    /// Takes this object out of every list. Returns when no walk over one of them is under way on another thread.
    void LeaveLists() noexcept;

protected:
    /// `objectLock` is the object's own lock.
    explicit SinkOwner(OCriticalSection& objectLock) noexcept : _objectLock(objectLock) {}
    ~SinkOwner() = default;

    OCriticalSection& _objectLock;

private:
    std::vector<std::weak_ptr<ReferenceList>> _lists GUARDED_BY(_objectLock);
};
