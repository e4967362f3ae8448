// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>

/// An object that is made when it is first needed, by whichever thread comes first, without a lock.
///
/// Ownership: what is kept. Threading: `Get` and `Keep` from any thread, the rest from one.
template <class T>
class OLazy {
public:
    OLazy() noexcept = default;
    OLazy(const OLazy&) = delete;
    OLazy& operator=(const OLazy&) = delete;
    ~OLazy() { Clear(); }

    /// Null if nothing is kept yet.
    T* Get() const noexcept { return _object.load(); }

    /// Keeps `made` and gives it. If another thread was faster, its object stays and is given, and `made` is destroyed.
    T* Keep(std::unique_ptr<T> made) noexcept
    {
        T* kept = nullptr;
        return _object.compare_exchange_strong(kept, made.get()) ? made.release() : kept;
    }

    /// Destroys what is kept.
    void Clear() noexcept { std::unique_ptr<T>(_object.exchange(nullptr)); }

private:
    std::atomic<T*> _object{nullptr};
};
