// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/MethodGuard.h"
#include "vrl/frame/Module.h"

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

/// An enumerator of the platform's kind over a list that was complete when it was made.
///
/// `Policy` names the kind: the types `Interface` and `Item` (what goes out), `Value` (what is kept) and two functions
/// that throw nothing: `static HRESULT CopyOut(const Value&, Item*)`, which gives the caller a copy or reference of his
/// own, and `static void Clear(Item*)`, which takes it back and empties the item when the call cannot be finished.
/// Threading: any thread. The lock is not held while items are copied, which may be foreign code.
template <class Policy>
class SnapshotEnumerator : public Policy::Interface {
public:
    using Interface = typename Policy::Interface;
    using Item = typename Policy::Item;
    using Values = std::vector<typename Policy::Value>;

    /// Gives a new enumerator at the start of `values`, with one reference. Throws std::bad_alloc.
    static Microsoft::WRL::ComPtr<Interface> Create(Values values)
    {
        return Create(std::make_shared<const Values>(std::move(values)), 0);
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object) return E_POINTER;
        const bool known = iid == IID_IUnknown || iid == __uuidof(Interface);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++_references; }

    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --_references;
        if (left == 0) delete this;
        return left;
    }

    STDMETHODIMP Next(ULONG count, Item* items, ULONG* fetched) noexcept override
    {
        if (fetched) *fetched = 0;
        if (!items || (!fetched && count != 1)) return E_POINTER;
        const auto [first, given] = Advance(count);
        for (ULONG done = 0; done < given; ++done) {
            const HRESULT result = Policy::CopyOut((*_values)[first + done], &items[done]);
            if (FAILED(result)) return TakeBack(items, done, first, result);
        }
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }

    STDMETHODIMP Skip(ULONG count) noexcept override { return Advance(count).count == count ? S_OK : S_FALSE; }

    STDMETHODIMP Reset() noexcept override
    {
        OLockGuard guard(_lock);
        _position = 0;
        return S_OK;
    }

    STDMETHODIMP Clone(Interface** clone) noexcept override
    {
        if (!clone) return E_POINTER;
        *clone = nullptr;
        return Contain([&] { *clone = Create(_values, Advance(0).first).Detach(); });
    }

private:
    SnapshotEnumerator(std::shared_ptr<const Values> values, size_t position)
        : _values(std::move(values)), _position(position)
    {
        Module::AddObject();
    }
    virtual ~SnapshotEnumerator() { Module::RemoveObject(); }

    static Microsoft::WRL::ComPtr<Interface> Create(std::shared_ptr<const Values> values, size_t position)
    {
        return Adopt<Interface>(new SnapshotEnumerator(std::move(values), position));
    }

    struct Range {
        size_t first;
        ULONG count;
    };

    /// Takes the next `count` values, or as many as there are, for the calling thread.
    Range Advance(ULONG count) noexcept
    {
        OLockGuard guard(_lock);
        const size_t left = _values->size() - _position;
        const Range range{_position, count <= left ? count : static_cast<ULONG>(left)};
        _position += range.count;
        return range;
    }

    HRESULT TakeBack(Item* items, ULONG done, size_t first, HRESULT result) noexcept
    {
        for (ULONG i = 0; i < done; ++i) Policy::Clear(&items[i]);
        OLockGuard guard(_lock);
        _position = first;
        return result;
    }

    const std::shared_ptr<const Values> _values;
    OCriticalSection _lock;
    size_t _position GUARDED_BY(_lock);
    std::atomic<ULONG> _references{1};
};
