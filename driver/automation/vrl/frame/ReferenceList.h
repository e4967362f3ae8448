// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"
#include "foundation/arrays/OPointerArray.h"
#include "vrl/frame/SinkOwner.h"

#include <memory>
#include <utility>

/// The objects of one kind that have sinks on one printer or job, in the order in which they came.
///
/// Ownership: keeps no object alive; an object leaves before it dies. Made with std::make_shared, so that an object can
///            leave while the list's owner dies on another thread.
/// Threading: any thread, under the list's lock, which is recursive: a sink that is called on a walk may add or remove
///            objects. It comes before the lock of any object.
class ReferenceList : public std::enable_shared_from_this<ReferenceList> {
public:
    /// Both are trace lines, texts that live as long as the process. Throws std::bad_alloc.
    ReferenceList(const char* addedTrace, const char* removedTrace)
        : _addedTrace(addedTrace), _removedTrace(removedTrace)
    {
    }
    ReferenceList(const ReferenceList&) = delete;
    ReferenceList& operator=(const ReferenceList&) = delete;

    /// False, and nothing done, for an object that is there. Throws std::bad_alloc; then the object is not there.
    bool Add(SinkOwner& object);

    /// Does nothing for an object that isn't there.
    void Remove(SinkOwner& object) noexcept;

    /// Deliberate: read without the lock; whoever asks does not mind an answer that is just becoming old.
    bool IsEmpty() const noexcept NO_THREAD_SAFETY_ANALYSIS { return _objects.IsEmpty(); }

    /// The list's lock, held for a scope on one thread.
    // The analysis can't follow a scope that a function gives, so this class is not part of it.
    class Scope {
    public:
        explicit Scope(ReferenceList& list) NO_THREAD_SAFETY_ANALYSIS : _list(list), _guard(list._lock) {}

        /// Calls `visit(SinkOwner&, IDispatch* identity)` for each object in order. An object whose last reference has
        /// gone is passed over. A visit may add and remove objects: each is visited once as long as it is there.
        /// What `visit` throws ends the walk.
        template <class Visit>
        void ForEach(Visit&& visit) NO_THREAD_SAFETY_ANALYSIS
        {
            for (_list._next = 0; _list._next < _list._objects.GetSize();) {
                SinkOwner& object = *_list._objects.GetAt(_list._next++);
                if (const auto identity = object.Identity()) visit(object, identity.Get());
            }
        }

    private:
        ReferenceList& _list;
        OLockGuard _guard;
    };

private:
    OCriticalSection _lock;
    OPointerArray<SinkOwner> _objects GUARDED_BY(_lock);
    int _next GUARDED_BY(_lock) = 0; // where a walk goes on; only one thread walks a list, and never inside a walk
    const char* const _addedTrace;
    const char* const _removedTrace;
};
