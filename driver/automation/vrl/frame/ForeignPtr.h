// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/MethodGuard.h"

#include <unknwn.h>

#include <utility>

/// One reference on an object that is not ours: a sink, or what a client gave as an argument.
///
/// Counting such an object runs foreign code, also in destructors, where nothing may be thrown. What it raises there
/// ends there: an object that can't be counted is not taken, one that can't be given back is forgotten. Calls through
/// `->` are the caller's to contain. Ownership: one reference; moves only. Threading: as the object.
template <class T>
class ForeignPtr {
public:
    ForeignPtr() noexcept = default;
    ForeignPtr(ForeignPtr&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
    ForeignPtr& operator=(ForeignPtr&& other) noexcept
    {
        if (this != &other) {
            Reset();
            _object = std::exchange(other._object, nullptr);
        }
        return *this;
    }
    ForeignPtr(const ForeignPtr&) = delete;
    ForeignPtr& operator=(const ForeignPtr&) = delete;
    ~ForeignPtr() { Reset(); }

    /// Takes over one reference that the caller has on `object`, which may be null.
    static ForeignPtr Own(T* object) noexcept
    {
        ForeignPtr owner;
        owner._object = object;
        return owner;
    }

    /// One more reference on `object`, which may be null.
    static ForeignPtr Share(T* object) noexcept
    {
        ForeignPtr shared;
        if (object && SUCCEEDED(Contain([&] { object->AddRef(); }))) shared._object = object;
        return shared;
    }

    /// What `object`, which may be null, gives for `iid`; null if it refuses or raises.
    static ForeignPtr Query(IUnknown* object, REFIID iid) noexcept
    {
        void* found = nullptr;
        ForeignPtr queried;
        if (!object) return queried;
        const HRESULT result = Contain([&] { return object->QueryInterface(iid, &found); });
        if (SUCCEEDED(result)) queried._object = static_cast<T*>(found);
        return queried;
    }

    ForeignPtr Copy() const noexcept { return Share(_object); }

    /// Hands the reference to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(_object, nullptr); }

    void Reset() noexcept
    {
        if (T* const old = std::exchange(_object, nullptr)) Contain([&] { old->Release(); });
    }

    explicit operator bool() const noexcept { return _object != nullptr; }
    T* Get() const noexcept { return _object; }
    T* operator->() const noexcept { return _object; }

private:
    T* _object = nullptr;
};
