// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <ocidl.h>
#include <winspool.h>
#include <wrl/client.h>

#include "vrl/Vorlane.h"

/// The connection of a sink to an object with events; taken away at the end of the scope.
class Connection {
public:
    Connection() = default;

    Connection(IUnknown* source, REFIID events, IUnknown* sink)
    {
        Microsoft::WRL::ComPtr<IConnectionPointContainer> container;
        _result = source->QueryInterface(IID_PPV_ARGS(&container));
        if (SUCCEEDED(_result)) _result = container->FindConnectionPoint(events, &_point);
        if (SUCCEEDED(_result)) _result = _point->Advise(sink, &_cookie);
        if (FAILED(_result)) _point.Reset();
    }

    Connection(Connection&& other) noexcept = default;

    Connection& operator=(Connection&& other) noexcept
    {
        if (this == &other) return *this;
        Close();
        _point.Swap(other._point); // a move would only copy
        _cookie = other._cookie;
        _result = other._result;
        return *this;
    }

    ~Connection() { Close(); }

    HRESULT Result() const noexcept { return _result; }

    void Close()
    {
        if (_point) _point->Unadvise(_cookie);
        _point.Reset();
    }

    /// Forgets the connection, as a client does that never unadvises.
    void Forget() { _point.Reset(); }

private:
    Microsoft::WRL::ComPtr<IConnectionPoint> _point;
    DWORD _cookie = 0;
    HRESULT _result = E_UNEXPECTED;
};

/// Connects a sink to the events of an object.
inline Connection Connect(IPrinter& source, IUnknown* sink)
{
    return {&source, __uuidof(_IPrinterEvents), sink};
}
inline Connection Connect(IPrintQueue& source, IUnknown* sink)
{
    return {&source, __uuidof(_IPrintQueueEvents), sink};
}
inline Connection Connect(IPrintJob& source, IUnknown* sink)
{
    return {&source, __uuidof(_IPrintJobEvents), sink};
}
