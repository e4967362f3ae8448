// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "support/com/Connection.h"

#include <ocidl.h>
#include <wrl/client.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// What sinks were told, as lines like "queue: OnJobError(job 7, printer status)", in the order in which it happened.
class EventLog {
public:
    void Add(const std::string& line);

    /// All lines so far; the log is empty afterwards.
    std::vector<std::string> Take();

    /// Waits until there are so many lines; false if that takes too long.
    bool WaitFor(size_t count) const;

private:
    mutable std::mutex _lock;
    std::vector<std::string> _lines;
};

/// The names of the events of one interface, by dispatch identifier.
std::string JobEventName(DISPID id);
std::string PrinterEventName(DISPID id);

/// A client's sink for job or printer events, which writes down what it is told and then does what the test says.
///
/// Ownership: counted. Threads: any.
class EventSink final : public IDispatch {
public:
    using Names = std::string (*)(DISPID id);

    /// `name` stands in front of its lines.
    static Microsoft::WRL::ComPtr<EventSink> Create(EventLog& log, std::string name, Names names = JobEventName);

    EventSink(const EventSink&) = delete;
    EventSink& operator=(const EventSink&) = delete;

    /// Runs in each call, after the line was written; gives what the sink answers. Set it before the sink is connected.
    std::function<HRESULT(DISPID id, DISPPARAMS* parameters)> onInvoke;

    /// Sinks that exist.
    static int Living() noexcept { return living; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override;

private:
    EventSink(EventLog& log, std::string name, Names names);
    virtual ~EventSink();

    static inline std::atomic<int> living{0};

    EventLog& _log;
    const std::string _name;
    const Names _names;
    std::atomic<ULONG> _references{1};
};
