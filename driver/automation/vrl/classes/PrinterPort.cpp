// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterPort.h"

#include "vrl/classes/QueryBytes.h"
#include "vrl/classes/QueryResponse.h"
#include "vrl/driver/AdvancedDriverInterface.h"

#include <comutil.h>
#include <wrl/client.h>

namespace {

constexpr DWORD pollIntervalMs = 50;
constexpr int keyTokenBytes = 8;

/// What a query status of the port monitor means.
enum QueryStatus : int {
    QueryStatusStarted = 0,
    QueryStatusRunning = 1,
    QueryStatusAnswered = 2,
    QueryStatusFailed = 3,
    QueryStatusBroken = 4,
};

bool IsPending(int status)
{
    return status == QueryStatusStarted || status == QueryStatusRunning;
}

bool IsFailed(int status)
{
    return status == QueryStatusFailed || status == QueryStatusBroken;
}

/// What a question asks, read through the interface of whatever object the caller has.
struct Question {
    explicit Question(IQueryCommand& command)
    {
        _variant_t binary;
        command.get_Binary(&binary);
        command.get_SendTimeout(&sendTimeout);
        command.get_ReceiveStartTimeout(&receiveStartTimeout);
        command.get_ReceiveIntervalTimeout(&receiveIntervalTimeout);
        if (!ReadByteArray(binary, payload)) throw InvalidArgument_E();
    }

    OTypedArray<unsigned char> payload;
    long sendTimeout = 0;
    long receiveStartTimeout = 0;
    long receiveIntervalTimeout = 0;
};

OString ComputerName()
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = std::size(name);
    return ::GetComputerNameW(name, &size) ? OString(name) : OString();
}

/// A condition that only an advanced driver knows.
template <class Condition>
bool AskPort(const PrinterDriverRef& driver, Condition condition)
{
    if (!driver.xPrinter->HasAdvancedDriver()) throw FeatureNotSupported_E();
    auto* const advanced = dynamic_cast<AdvancedDriverInterface*>(driver.driver);
    return advanced && (advanced->*condition)();
}

} // namespace

HRESULT PrinterPort::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterPort::Initialize", [&] { return BindToPrinter(_driver, printer); });
}

// ---- the port ----

STDMETHODIMP PrinterPort::get_Name(BSTR* retName) noexcept
{
    return ReadPortText("PrinterPort::get_Name", retName, &PORT_INFO_2W::pPortName);
}

STDMETHODIMP PrinterPort::get_Description(BSTR* retDescription) noexcept
{
    return Guard("PrinterPort::get_Description", [&] {
        CheckOut(retDescription);
        *retDescription = nullptr;
        const auto bound = CheckBound();
        const auto port = FindPort(*bound->xPrinter);
        if (!port) throw InvalidPort_E();
        GiveValue(retDescription, OString(static_cast<const wchar_t*>(port->current->pDescription)));
    });
}

STDMETHODIMP PrinterPort::get_MonitorName(BSTR* retMonitorName) noexcept
{
    return ReadPortText("PrinterPort::get_MonitorName", retMonitorName, &PORT_INFO_2W::pMonitorName);
}

STDMETHODIMP PrinterPort::get_Bidirectional(VARIANT_BOOL* retBidirectional) noexcept
{
    return Get(
        "PrinterPort::get_Bidirectional", Checks::OutThenBound, retBidirectional,
        [](const PrinterDriverRef& driver) { return AskPort(driver, &AdvancedDriverInterface::IsPortBidirectional); });
}

STDMETHODIMP PrinterPort::get_Disconnected(VARIANT_BOOL* retDisconnected) noexcept
{
    return Get(
        "PrinterPort::get_Disconnected", Checks::OutThenBound, retDisconnected,
        [](const PrinterDriverRef& driver) { return AskPort(driver, &AdvancedDriverInterface::IsPortDisconnected); });
}

/// Deliberate: an unknown port is a failure without a text here, unlike for the description.
HRESULT PrinterPort::ReadPortText(const char* function, BSTR* out, wchar_t* PORT_INFO_2W::*field) noexcept
{
    return Guard(function, [&] {
        CheckOut(out);
        *out = nullptr;
        const auto bound = CheckBound();
        const auto port = FindPort(*bound->xPrinter);
        if (!port) return E_FAIL;
        GiveValue(out, OString(static_cast<const wchar_t*>(port->current->*field)));
        return S_OK;
    });
}

/// Null if the printer's port isn't in the list, or the list can't be read.
std::shared_ptr<const PrinterPort::PortList> PrinterPort::FindPort(const XPrinter& xPrinter)
{
    if (auto known = GetPorts()) {
        if (known->current) return known;
        SetPorts(nullptr);
        return nullptr;
    }
    auto list = std::make_shared<PortList>();
    DWORD count = 0;
    list->ports = ReadSized([&](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::EnumPortsW(nullptr, 2, buffer, size, needed, &count);
    });
    if (!list->ports) return nullptr;

    const OString name = xPrinter.GetPortName();
    bool found = false;
    for (DWORD index = 0; index < count && !found; ++index) {
        // Deliberate: without a match the last port stays, and the next call finds that.
        list->current = list->ports.As<PORT_INFO_2W>() + index;
        found = OString(static_cast<const wchar_t*>(list->current->pPortName)).Compare(name) == 0;
    }
    SetPorts(list);
    return found ? list : nullptr;
}

std::shared_ptr<const PrinterPort::PortList> PrinterPort::GetPorts() noexcept
{
    OLockGuard guard(_lock);
    return _ports;
}

void PrinterPort::SetPorts(std::shared_ptr<const PortList> ports) noexcept
{
    OLockGuard guard(_lock);
    _ports.swap(ports);
}

// ---- questions to the device ----

STDMETHODIMP PrinterPort::StartQuery(IQueryCommand* argCommand, long* retQueryNumber) noexcept
{
    return Guard("PrinterPort::StartQuery", [&] {
        CheckOut(retQueryNumber);
        if (!argCommand) throw InvalidArgument_E();
        const auto bound = CheckAdvanced();

        const long number = _nextQueryNumber;
        *retQueryNumber = number;
        const Question question(*argCommand);
        const bool started =
            bound->driver->StartDeviceQuery(question.payload, MakeQueryKey(number), question.sendTimeout,
                                            question.receiveStartTimeout, question.receiveIntervalTimeout);
        if (!started) throw PrinterQueryFailure_E();
        // Deliberate: two threads that share this object can get the same number.
        ++_nextQueryNumber;
    });
}

STDMETHODIMP PrinterPort::WaitForQuery(long argQueryNumber) noexcept
{
    return Guard("PrinterPort::WaitForQuery", [&] {
        const auto bound = CheckAdvanced();
        for (;;) {
            const int status = bound->driver->GetDeviceQueryStatus(MakeQueryKey(argQueryNumber));
            if (status == QueryStatusAnswered) return S_OK;
            if (!IsPending(status)) return S_FALSE;
            ::Sleep(pollIntervalMs); // Deliberate: without limit, also if the monitor has gone
        }
    });
}

STDMETHODIMP PrinterPort::GetQueryResponse(long argQueryNumber, IQueryResponse** retResponse) noexcept
{
    return Guard("PrinterPort::GetQueryResponse", [&] {
        CheckOut(retResponse);
        *retResponse = nullptr;
        const auto bound = CheckAdvanced();
        Microsoft::WRL::ComPtr<QueryResponse> response;
        const HRESULT result = CreateInstance(response.GetAddressOf());
        if (FAILED(result)) throw VRException(result, "CreateInstance failed: QueryResponse");

        const OString key = MakeQueryKey(argQueryNumber);
        const int status = bound->driver->GetDeviceQueryStatus(key);
        if (IsPending(status)) response->SetPending();
        if (IsFailed(status)) response->SetFailed();
        if (status == QueryStatusAnswered) {
            OTypedArray<unsigned char> bytes;
            bound->driver->GetDeviceQueryResponse(key, bytes);
            response->SetResponded(bytes);
        }
        *retResponse = response.Detach();
    });
}

Bound<PrinterDriverRef>::Hold PrinterPort::CheckAdvanced() const
{
    auto bound = CheckBound();
    if (!bound->xPrinter->HasAdvancedDriver()) throw FeatureNotSupported_E();
    return bound;
}

/// The computer's name, a token of this kind of object, and the number. The token is the same for all objects of the
/// process: what they have in common is their first bytes.
OString PrinterPort::MakeQueryKey(long number) const
{
    OString token;
    token.SetHex(static_cast<const void*>(this), keyTokenBytes);
    return ComputerName() + "." + token + "." + OString(number);
}
