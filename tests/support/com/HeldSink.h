// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "support/com/EventSink.h"

#include <string>
#include <utility>

/// A sink that stands still in each event until the test lets it go on, which then holds for good.
class HeldSink {
public:
    HeldSink(EventLog& log, std::string name) : _sink(EventSink::Create(log, std::move(name)))
    {
        _sink->onInvoke = [this](DISPID, DISPPARAMS*) {
            ::SetEvent(_entered.Get());
            ::WaitForSingleObject(_goOn.Get(), patienceMs);
            return S_OK;
        };
    }
    HeldSink(const HeldSink&) = delete;
    HeldSink& operator=(const HeldSink&) = delete;
    ~HeldSink() { GoOn(); }

    IUnknown* Get() const { return _sink.Get(); }

    /// Waits until it is called; false if that takes too long.
    bool WaitUntilCalled() const { return ::WaitForSingleObject(_entered.Get(), patienceMs) == WAIT_OBJECT_0; }

    void GoOn() const { ::SetEvent(_goOn.Get()); }

    /// Gives back the test's reference.
    void Forget() { _sink.Reset(); }

private:
    static constexpr DWORD patienceMs = 30000;

    Microsoft::WRL::ComPtr<EventSink> _sink;
    OWaitHandle _entered{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    OWaitHandle _goOn{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};
