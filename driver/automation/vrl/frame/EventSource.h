// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OLockGuard.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/SinkCall.h"
#include "vrl/frame/SinkList.h"
#include "vrl/frame/SinkOwner.h"
#include "vrl/frame/SnapshotEnumerator.h"

#include <olectl.h>
#include <wrl/client.h>

#include <atomic>
#include <utility>
#include <vector>

/// What goes out of an enumerator over interface pointers.
template <class Enumerator, class Pointed>
struct PointerPolicy {
    using Interface = Enumerator;
    using Item = Pointed*;
    using Value = Microsoft::WRL::ComPtr<Pointed>;
    static HRESULT CopyOut(const Value& value, Item* item) noexcept { return value.CopyTo(item); }
    static void Clear(Item* item) noexcept
    {
        (*item)->Release();
        *item = nullptr;
    }
};

/// What goes out of an enumerator over connections.
struct ConnectionPolicy {
    using Interface = IEnumConnections;
    using Item = CONNECTDATA;
    using Value = SinkList::Connection;
    static HRESULT CopyOut(const Value& value, Item* item) noexcept
    {
        item->dwCookie = value.cookie;
        item->pUnk = nullptr;
        return Contain([&] { return value.sink->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&item->pUnk)); });
    }
    static void Clear(Item* item) noexcept
    {
        Contain([&] { item->pUnk->Release(); });
        *item = {};
    }
};

/// Makes `Class`, an automation object, the source of the events `Events`: a container with one connection point, whose
/// sinks `Fire` calls.
///
/// `Class` has two operations that run before the ordinary step: `HRESULT FirstSinkConnecting()` when `Advise` takes
/// the count of connected sinks from 0 to 1, a failure ending the `Advise`, and `void LastSinkGone()` when `Unadvise`
/// takes it from 1 to 0. They enter the object in the list of those who hear the events, and take it out.
/// Threading: any thread; the sink list is read and changed under the object's own lock.
template <class Class, class Events>
class EventSource : public SinkOwner {
public:
    /// One more interface of the object, in its own class so that the object has its reference count only once.
    IConnectionPointContainer* ConnectionPointContainer() noexcept { return &_container; }

    // SinkOwner

    Microsoft::WRL::ComPtr<IDispatch> Identity() noexcept final
    {
        return Adopt<IDispatch>(Self().AddRefIfAlive() ? &Self() : nullptr);
    }

    HRESULT Fire(DISPID eventId, const EventArguments& arguments) noexcept final
    {
        HRESULT result = S_OK;
        const size_t slots = SlotCount();
        for (size_t slot = 0; slot < slots; ++slot) {
            const auto sink = SinkAt(slot);
            if (!sink) continue;
            result = CallSink(sink, eventId, arguments);
            CheckSinkResult(result);
        }
        return result;
    }

    /// For an object whose last reference has gone: takes it out of every list and lets go of its sinks, which may call
    /// it once more. No sink can be connected afterwards.
    void Disconnect() noexcept
    {
        _disconnected = true;
        LeaveLists();
        SinkList gone;
        OLockGuard guard(_objectLock); // unlocked before the sinks are released: they are foreign code
        std::swap(gone, _sinks);
    }

protected:
    EventSource() noexcept : SinkOwner(Self().ObjectLock()), _container(*this), _point(*this) {}
    ~EventSource() = default;

    /// Looks at what a sink answered to an event.
    virtual void CheckSinkResult(HRESULT hr) const noexcept = 0;

    bool IsConnected() const noexcept { return _connectionCount > 0; }

private:
    class Container final : public IConnectionPointContainer {
    public:
        explicit Container(EventSource& source) noexcept : _source(source) {}

        STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
        {
            return _source.Self().QueryInterface(iid, object);
        }
        STDMETHODIMP_(ULONG) AddRef() noexcept override { return _source.Self().AddRef(); }
        STDMETHODIMP_(ULONG) Release() noexcept override { return _source.Self().Release(); }

        STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** enumerator) noexcept override
        {
            if (!enumerator) return E_POINTER;
            *enumerator = nullptr;
            using Points = SnapshotEnumerator<PointerPolicy<IEnumConnectionPoints, IConnectionPoint>>;
            return Contain([&] {
                *enumerator = Points::Create({Microsoft::WRL::ComPtr<IConnectionPoint>(&_source._point)}).Detach();
            });
        }

        STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override
        {
            if (!point) return E_POINTER;
            *point = nullptr;
            if (iid != __uuidof(Events)) return CONNECT_E_NOCONNECTION;
            *point = &_source._point;
            (*point)->AddRef();
            return S_OK;
        }

    private:
        EventSource& _source;
    };

    /// The connection point lives in the object and shares its reference count.
    class ConnectionPoint final : public IConnectionPoint {
    public:
        explicit ConnectionPoint(EventSource& source) noexcept : _source(source) {}

        STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
        {
            if (!object) return E_POINTER;
            const bool known = iid == IID_IUnknown || iid == IID_IConnectionPoint;
            *object = known ? static_cast<IConnectionPoint*>(this) : nullptr;
            if (!known) return E_NOINTERFACE;
            AddRef();
            return S_OK;
        }
        STDMETHODIMP_(ULONG) AddRef() noexcept override { return _source.Self().AddRef(); }
        STDMETHODIMP_(ULONG) Release() noexcept override { return _source.Self().Release(); }

        STDMETHODIMP GetConnectionInterface(IID* iid) noexcept override
        {
            if (!iid) return E_POINTER;
            *iid = __uuidof(Events);
            return S_OK;
        }

        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override
        {
            if (!container) return E_POINTER;
            *container = _source.ConnectionPointContainer();
            (*container)->AddRef();
            return S_OK;
        }

        STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override { return _source.Advise(sink, cookie); }
        STDMETHODIMP Unadvise(DWORD cookie) noexcept override { return _source.Unadvise(cookie); }

        STDMETHODIMP EnumConnections(IEnumConnections** enumerator) noexcept override
        {
            if (!enumerator) return E_POINTER;
            *enumerator = nullptr;
            return Contain(
                [&] { *enumerator = SnapshotEnumerator<ConnectionPolicy>::Create(_source.Connections()).Detach(); });
        }

    private:
        EventSource& _source;
    };

    Class& Self() noexcept { return static_cast<Class&>(*this); }

    size_t SlotCount() noexcept
    {
        OLockGuard guard(_objectLock);
        return _sinks.SlotCount();
    }

    std::vector<SinkList::Connection> Connections()
    {
        OLockGuard guard(_objectLock);
        return _sinks.Connections();
    }

    ForeignPtr<IDispatch> SinkAt(size_t slot) noexcept
    {
        OLockGuard guard(_objectLock);
        return _sinks.SinkAt(slot);
    }

    /// The count of connected sinks has gone up to `count`: is this the first, or does the first still wait for its
    /// list?
    bool IsFirstSink(LONG count) const noexcept { return count == 1 || (count > 1 && !IsListed()); }

    HRESULT Advise(IUnknown* sink, DWORD* cookie) noexcept
    {
        if (cookie) *cookie = 0;
        if (_disconnected) return CONNECT_E_CANNOTCONNECT;
        if (IsFirstSink(++_connectionCount)) {
            const HRESULT result = Self().FirstSinkConnecting();
            if (FAILED(result)) {
                --_connectionCount;
                return result;
            }
        }
        if (!sink || !cookie) return E_POINTER;

        auto events = ForeignPtr<IDispatch>::Query(sink, __uuidof(Events));
        if (!events) return CONNECT_E_CANNOTCONNECT;
        OLockGuard guard(_objectLock);
        return _sinks.Add(events, cookie); // a sink that is not taken goes after the lock: it is foreign code
    }

    HRESULT Unadvise(DWORD cookie) noexcept
    {
        if (_connectionCount-- == 1) Self().LastSinkGone();
        ForeignPtr<IDispatch> gone; // released after the lock: it is foreign code
        OLockGuard guard(_objectLock);
        gone = _sinks.Remove(cookie);
        return gone ? S_OK : CONNECT_E_NOCONNECTION;
    }

    SinkList _sinks GUARDED_BY(_objectLock);
    std::atomic<LONG> _connectionCount{0}; // whether or not the ordinary step succeeds
    std::atomic<bool> _disconnected{false};
    Container _container;
    ConnectionPoint _point;
};
