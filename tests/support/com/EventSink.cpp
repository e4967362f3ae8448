// SPDX-License-Identifier: MIT
#include "support/com/EventSink.h"

#include "foundation/text/OString.h"
#include "support/Eventually.h"
#include "support/com/BstrText.h"

#include <winspool.h>

#include "vrl/Vorlane.h"

#include <utility>

using Microsoft::WRL::ComPtr;

namespace {

template <size_t count>
std::string NameOf(DISPID id, const char* const (&names)[count])
{
    const bool known = id >= 1 && static_cast<size_t>(id) <= count;
    return known ? names[id - 1] : "event " + std::to_string(id);
}

template <class Interface>
ComPtr<Interface> As(IDispatch* object)
{
    ComPtr<Interface> wanted;
    ComPtr<IDispatch>(object).As(&wanted);
    return wanted;
}

std::string Narrow(BSTR text)
{
    return OString(TextOf(text).c_str()).nstring();
}

std::string DescribeObject(IDispatch* object)
{
    if (!object) return "null";
    if (const auto job = As<IPrintJob>(object)) {
        long jobId = -1;
        job->get_JobId(&jobId);
        return "job " + std::to_string(jobId);
    }
    if (const auto status = As<IPrintJobStatus>(object)) {
        OwnedBstr text;
        status->get_Text(text.Receive());
        return "status '" + Narrow(text.Get()) + "'";
    }
    if (As<IPrinterStatus>(object)) return "printer status";
    if (const auto printer = As<IPrinter>(object)) {
        OwnedBstr name;
        printer->get_Name(name.Receive());
        return "printer " + Narrow(name.Get());
    }
    return "an object";
}

std::string Describe(const VARIANT& value)
{
    switch (value.vt) {
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_BSTR:
        return "'" + Narrow(value.bstrVal) + "'";
    case VT_DISPATCH:
        return DescribeObject(value.pdispVal);
    default:
        return "type " + std::to_string(value.vt);
    }
}

} // namespace

void EventLog::Add(const std::string& line)
{
    const std::lock_guard guard(_lock);
    _lines.push_back(line);
}

std::vector<std::string> EventLog::Take()
{
    const std::lock_guard guard(_lock);
    return std::exchange(_lines, {});
}

bool EventLog::WaitFor(size_t count) const
{
    return Eventually([&] {
        const std::lock_guard guard(_lock);
        return _lines.size() >= count;
    });
}

std::string JobEventName(DISPID id)
{
    static constexpr const char* names[] = {
        "OnJobStarted",
        "OnJobPaused",
        "OnJobResumed",
        "OnJobCancelled",
        "OnJobSent",
        "OnJobPrinted",
        "OnJobCompleted",
        "OnJobError",
        "OnJobFinalized",
        "OnJobStatusChanged",
        "OnJobTotalPagesChanged",
        "OnJobPagesPrintedChanged",
        "OnJobPriorityChanged",
        "OnJobPositionChanged",
        "OnJobNew",
    };
    return NameOf(id, names);
}

std::string PrinterEventName(DISPID id)
{
    static constexpr const char* names[] = {
        "OnPrinterNameChanged", "OnShareNameChanged", "OnPortNameChanged",  "OnCommentChanged", "OnLocationChanged",
        "OnPriorityChanged",    "OnStartTimeChanged", "OnUntilTimeChanged", "OnStatusChanged",  "OnOdometerChanged",
    };
    return NameOf(id, names);
}

ComPtr<EventSink> EventSink::Create(EventLog& log, std::string name, Names names)
{
    ComPtr<EventSink> sink;
    *sink.GetAddressOf() = new EventSink(log, std::move(name), names); // it is made with one reference
    return sink;
}

EventSink::EventSink(EventLog& log, std::string name, Names names) : _log(log), _name(std::move(name)), _names(names)
{
    ++living;
}

EventSink::~EventSink()
{
    --living;
}

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object)
{
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(_IPrinterEvents) ||
                       iid == __uuidof(_IPrintQueueEvents) || iid == __uuidof(_IPrintJobEvents);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) EventSink::Release()
{
    const ULONG left = --_references;
    if (left == 0) delete this;
    return left;
}

STDMETHODIMP EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*)
{
    std::string line = _name + ": " + _names(id) + "(";
    for (UINT i = parameters->cArgs; i > 0; --i) {
        line += (i < parameters->cArgs ? ", " : "") + Describe(parameters->rgvarg[i - 1]);
    }
    _log.Add(line + ")");
    return onInvoke ? onInvoke(id, parameters) : S_OK;
}
