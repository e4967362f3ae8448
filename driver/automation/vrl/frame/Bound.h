// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"

#include <memory>
#include <utility>

/// What an automation object is bound to: read by any number of members while another thread binds the object again.
///
/// `Binding` owns what it stands for, such as one count on a printer. It is true if it stands for anything, and `*`
/// gives the object that members ask. A member works on a `Hold` of its own, taken once, so that what it asks lives
/// until the member is through, whatever is bound meanwhile. A hold changes no count of the binding itself. Threading:
/// any thread. Only the pointer is copied or exchanged under the object's lock; what was bound before is let go of
/// outside of it, by whoever held it last.
template <class Binding>
class Bound {
public:
    using Hold = std::shared_ptr<const Binding>;

    /// `objectLock` is the lock of the object that this is a field of.
    explicit Bound(OCriticalSection& objectLock) noexcept : _lock(objectLock) {}
    Bound(const Bound&) = delete;
    Bound& operator=(const Bound&) = delete;

    /// What is bound now; null if nothing is.
    Hold Get() const noexcept
    {
        OLockGuard guard(_lock);
        return _hold;
    }

    /// What is bound now. Throws `NotInitialized` if nothing is.
    template <class NotInitialized>
    Hold Check() const
    {
        Hold hold = Get();
        if (!hold || !*hold) throw NotInitialized();
        return hold;
    }

    /// Binds to `binding` in place of what was bound before. Throws std::bad_alloc; then nothing has changed.
    void Set(Binding binding) { Exchange(std::make_shared<const Binding>(std::move(binding))); }

    /// Lets go of what is bound.
    void Clear() noexcept { Exchange(nullptr); }

private:
    void Exchange(Hold hold) noexcept // the old one goes with the argument, after the lock
    {
        OLockGuard guard(_lock);
        _hold.swap(hold);
    }

    OCriticalSection& _lock;
    Hold _hold GUARDED_BY(_lock);
};
