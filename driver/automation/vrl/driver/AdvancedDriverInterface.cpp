// SPDX-License-Identifier: MIT
#include "vrl/driver/AdvancedDriverInterface.h"

#include "foundation/Assert.h"
#include "foundation/failures/SehTranslator.h"
#include "foundation/threads/TickCount.h"
#include "vrl/driver/PortMonitor.h"
#include "vrl/driver/QrmlAnswers.h"
#include "vrl/driver/QrmlRequests.h"
#include "vrl/driver/StatusFlags.h"

#include <memory>
#include <utility>

namespace {

constexpr const wchar_t* monitorFileName = L"kvnetmon.d64";
constexpr DWORD bidirectionalAgeMs = 1000;

Qrml::Answer BytesOf(const OTypedArray<unsigned char>& bytes)
{
    return {bytes.GetData(), static_cast<size_t>(bytes.GetSize())};
}

OString TextOf(std::string_view text)
{
    OString result;
    result.AssignN(text.data(), static_cast<int>(text.size()));
    return result;
}

bool ReadBidirectional(HANDLE printer)
{
    DWORD dwSizeNeeded = 0;
    ::GetPrinterW(printer, 2, nullptr, 0, &dwSizeNeeded);
    DEBUG_ASSERT(dwSizeNeeded);
    if (dwSizeNeeded == 0) return false;

    const SpoolerBuffer info(dwSizeNeeded);
    const bool rc = info && ::GetPrinterW(printer, 2, info.Data(), info.Size(), &dwSizeNeeded);
    DEBUG_ASSERT(rc);
    return rc && (info.As<PRINTER_INFO_2W>()->Attributes & PRINTER_ATTRIBUTE_ENABLE_BIDI) != 0;
}

} // namespace

/// The driver's own handle of the printer, open across all calls.
class AdvancedDriverInterface::DriverHandle {
public:
    DriverHandle(const InterfaceModule& module, void* handle) noexcept : _module(module), _handle(handle) {}
    DriverHandle(const DriverHandle&) = delete;
    DriverHandle& operator=(const DriverHandle&) = delete;
    ~DriverHandle()
    {
        RunContained([this] { _module.Close(_handle); });
    }

    bool Import(const OString& fileName, unsigned long mask) const
    {
        return _module.Import(_handle, fileName.wstring(), mask);
    }
    bool Export(const OString& fileName, unsigned long mask) const
    {
        return _module.Export(_handle, fileName.wstring(), mask);
    }
    bool Reset(unsigned long mask) const { return _module.Reset(_handle, mask); }
    void SaveDriverSettings() const { _module.Save(_handle); }

private:
    const InterfaceModule& _module;
    void* _handle;
};

AdvancedDriverInterface::AdvancedDriverInterface() = default;

AdvancedDriverInterface::~AdvancedDriverInterface()
{
    CloseDriverHandle();
}

// ---- status ----

OString AdvancedDriverInterface::GetStatusText()
{
    const std::optional<std::string> text = AskState(Qrml::statusTextRequest);
    return text ? TextOf(*text) : BasicDriverInterface::GetStatusText();
}

int AdvancedDriverInterface::GetStatusSeverity()
{
    const std::optional<std::string> severity = AskState(Qrml::statusSeverityRequest);
    return severity ? Qrml::ReadNumber(*severity) : BasicDriverInterface::GetStatusSeverity();
}

unsigned long AdvancedDriverInterface::GetStatusFlags2()
{
    const std::optional<std::string> flags = AskState(Qrml::statusFlags2Request);
    return flags ? Qrml::ReadFlags(*flags) : BasicDriverInterface::GetStatusFlags2();
}

OString AdvancedDriverInterface::GetJobStatusText(unsigned long jobId)
{
    OTypedArray<unsigned char> answer;
    if (SendRequest(Qrml::JobStateRequest(jobId).c_str(), answer) == 0) return OString();
    return TextOf(Qrml::ReadText(BytesOf(answer)));
}

bool AdvancedDriverInterface::TestStatusFlag(int condition)
{
    if (condition < firstExtendedCondition) return BasicDriverInterface::TestStatusFlag(condition);
    return TestExtendedWord(GetStatusFlags2(), condition);
}

bool AdvancedDriverInterface::IsBidirectional()
{
    const DWORD now = TickCount();
    const DWORD lastCheck = _lastBidirectionalCheck;
    if (lastCheck != 0 && now - lastCheck <= bidirectionalAgeMs) return _bidirectional;

    _lastBidirectionalCheck = now;
    const bool bidirectional = _hPrinter && ReadBidirectional(_hPrinter);
    _bidirectional = bidirectional;
    return bidirectional;
}

bool AdvancedDriverInterface::IsPortBidirectional()
{
    return AskPort(Qrml::portBidirectionalRequest);
}

bool AdvancedDriverInterface::IsPortDisconnected()
{
    return AskPort(Qrml::portDisconnectedRequest);
}

/// The value of a state as the device tells it; nothing if it isn't to be asked or gives none that counts.
std::optional<std::string> AdvancedDriverInterface::AskState(const char* request)
{
    if (!IsBidirectional()) return std::nullopt;
    OTypedArray<unsigned char> answer;
    if (SendRequest(request, answer) == 0) return std::nullopt;
    return std::optional<std::string>(Qrml::ReadStateValue(BytesOf(answer)));
}

bool AdvancedDriverInterface::AskPort(const char* request)
{
    OTypedArray<unsigned char> answer;
    return SendRequest(request, answer) != 0 && Qrml::ReadPortCondition(BytesOf(answer));
}

// ---- device queries ----

bool AdvancedDriverInterface::StartDeviceQuery(const OTypedArray<unsigned char>& payload, const OString& key,
                                               long sendTimeout, long receiveStartTimeout, long receiveIntervalTimeout)
{
    const Qrml::QueryTimeouts timeouts{sendTimeout, receiveStartTimeout, receiveIntervalTimeout};
    return PostRequest(Qrml::QueryStartRequest(key.nstring(), BytesOf(payload), timeouts).c_str()) != 0;
}

int AdvancedDriverInterface::GetDeviceQueryStatus(const OString& key)
{
    OTypedArray<unsigned char> answer;
    if (SendRequest(Qrml::QueryStatusRequest(key.nstring()).c_str(), answer) == 0) return 0;
    return Qrml::ReadNumber(Qrml::ReadText(BytesOf(answer)));
}

bool AdvancedDriverInterface::GetDeviceQueryResponse(const OString& key, OTypedArray<unsigned char>& response)
{
    OTypedArray<unsigned char> answer;
    const DWORD result = SendRequest(Qrml::QueryResponseRequest(key.nstring()).c_str(), answer);
    response.Copy(answer);
    return result != 0;
}

// ---- the port monitor ----

DWORD AdvancedDriverInterface::SendRequest(const char* request, OTypedArray<unsigned char>& answer)
{
    return PortMonitor(GetMonitorModulePath()).Send(_printerName, request, answer);
}

DWORD AdvancedDriverInterface::PostRequest(const char* request)
{
    return PortMonitor(GetMonitorModulePath()).Post(_printerName, request);
}

/// The monitor is looked for in the driver's own folder.
OString AdvancedDriverInterface::GetMonitorModulePath()
{
    const OString driverPath(static_cast<const wchar_t*>(GetDriverInfo()->pDriverPath));
    const int backslash = driverPath.ReverseFind(L'\\');
    // Deliberate: without a folder the driver itself is taken for the monitor.
    return backslash < 0 ? driverPath : driverPath.Left(backslash + 1) + monitorFileName;
}

DRIVER_INFO_3W* AdvancedDriverInterface::GetDriverInfo()
{
    const SpoolerBuffer* info = _di.Get();
    if (!info) info = Refresh_DriverInfo();
    return info->As<DRIVER_INFO_3W>();
}

SpoolerBuffer* AdvancedDriverInterface::Refresh_DriverInfo()
{
    SpoolerBuffer info = ReadSized([this](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::GetPrinterDriverW(_hPrinter, nullptr, 3, buffer, size, needed);
    });
    // Deliberate: a bare text and no member of the exception family, so that the caller is told "Unspecified error".
    if (!info) throw L"Refresh_DriverInfo() Failed."; // NOLINT(misc-throw-by-value-catch-by-reference)
    return _di.Keep(std::make_unique<SpoolerBuffer>(std::move(info)));
}

// ---- the interface module ----

bool AdvancedDriverInterface::ImportSettings(const OString& fileName, unsigned long mask)
{
    const DriverHandle* const driver = OpenDriverHandle();
    if (!driver || !driver->Import(fileName, mask)) return false;
    driver->SaveDriverSettings();
    return true;
}

bool AdvancedDriverInterface::ExportSettings(const OString& fileName, unsigned long mask)
{
    const DriverHandle* const driver = OpenDriverHandle();
    return driver && driver->Export(fileName, mask);
}

bool AdvancedDriverInterface::ResetSettings(unsigned long mask)
{
    const DriverHandle* const driver = OpenDriverHandle();
    if (!driver || !driver->Reset(mask)) return false;
    driver->SaveDriverSettings();
    return true;
}

/// Null if the printer's data names no module that can be loaded; the next call tries again.
InterfaceModule* AdvancedDriverInterface::LoadInterfaceModule()
{
    if (InterfaceModule* const loaded = _interfaceModule.Get()) return loaded;

    InterfacePath path;
    if (!ReadInterfacePath(_hPrinter, path)) return nullptr;
    auto module = std::make_unique<InterfaceModule>(path.data());
    return *module ? _interfaceModule.Keep(std::move(module)) : nullptr;
}

AdvancedDriverInterface::DriverHandle* AdvancedDriverInterface::OpenDriverHandle()
{
    if (DriverHandle* const open = _driverHandle.Get()) return open;
    const InterfaceModule* const module = LoadInterfaceModule();
    void* const handle = module ? module->Open(_hPrinter) : nullptr;
    return handle ? _driverHandle.Keep(std::make_unique<DriverHandle>(*module, handle)) : nullptr;
}

void AdvancedDriverInterface::CloseDriverHandle() noexcept
{
    _driverHandle.Clear();
}
