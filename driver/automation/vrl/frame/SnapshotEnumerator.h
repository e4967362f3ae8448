// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/Module.h"

#include "foundation/Platform.h"

#include <atomic>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <wrl/client.h>

/// An enumerator of the platform's kind over a list that was complete when it was made.
///
/// `Policy` names the kind: the types `Interface` and `Item` (what goes out), `Value` (what is kept, freely copied) and
/// `static HRESULT CopyOut(const Value&, Item*)`, which gives the caller his own copy or reference, and
/// `static void Clear(Item*)`, which takes it back when the call cannot be finished.
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
        if (!items || (!fetched && count != 1)) return E_POINTER;
        ULONG done = 0;
        for (; done < count && _position < _values->size(); ++done, ++_position) {
            const HRESULT result = Policy::CopyOut((*_values)[_position], &items[done]);
            if (FAILED(result)) return TakeBack(items, done, fetched, result);
        }
        if (fetched) *fetched = done;
        return done == count ? S_OK : S_FALSE;
    }

    STDMETHODIMP Skip(ULONG count) noexcept override
    {
        const size_t left = _values->size() - _position;
        const bool enough = count <= left;
        _position += enough ? count : left;
        return enough ? S_OK : S_FALSE;
    }

    STDMETHODIMP Reset() noexcept override
    {
        _position = 0;
        return S_OK;
    }

    STDMETHODIMP Clone(Interface** clone) noexcept override
    try {
        if (!clone) return E_POINTER;
        *clone = Create(_values, _position).Detach();
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }

private:
    SnapshotEnumerator(std::shared_ptr<const Values> values, size_t position) noexcept
        : _values(std::move(values)), _position(position)
    {
        Module::AddObject();
    }
    virtual ~SnapshotEnumerator() { Module::RemoveObject(); }

    static Microsoft::WRL::ComPtr<Interface> Create(std::shared_ptr<const Values> values, size_t position)
    {
        Microsoft::WRL::ComPtr<Interface> enumerator;
        // Not Attach, which counts once more in the library of this compiler.
        *enumerator.GetAddressOf() = new SnapshotEnumerator(std::move(values), position);
        return enumerator;
    }

    HRESULT TakeBack(Item* items, ULONG done, ULONG* fetched, HRESULT result) noexcept
    {
        _position -= done;
        for (ULONG i = 0; i < done; ++i) Policy::Clear(&items[i]);
        if (fetched) *fetched = 0;
        return result;
    }

    std::shared_ptr<const Values> _values;
    size_t _position;
    std::atomic<ULONG> _references{1};
};
