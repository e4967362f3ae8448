// SPDX-License-Identifier: MIT
#include "vrl/driver/PortMonitor.h"

#include "foundation/OGuardedBlock.h"
#include "foundation/failures/SehTranslator.h"

#include <cstring>
#include <new>
#include <utility>

namespace {

using SendRequestFunction = DWORD(const wchar_t* printerName, const char* request, void** response);
using SizeFunction = LONG(void* response);
using DataFunction = void(void* response, void* buffer);
using FreeFunction = void(void* response);

SendRequestFunction* FindSendRequest(const DriverModule& module) noexcept
{
    return module.Find<SendRequestFunction>("SendQRMLRequest");
}

/// What the monitor exports.
struct MonitorFunctions {
    explicit MonitorFunctions(const DriverModule& module) noexcept
        : sendRequest(FindSendRequest(module)), size(module.Find<SizeFunction>("HTTPResponse_Size")),
          data(module.Find<DataFunction>("HTTPResponse_Data")), free(module.Find<FreeFunction>("HTTPResponse_Free"))
    {
    }

    bool AreComplete() const noexcept { return sendRequest && size && data && free; }

    SendRequestFunction* sendRequest;
    SizeFunction* size;
    DataFunction* data;
    FreeFunction* free;
};

/// The monitor's handle of one answer, in a place of its own that the monitor fills.
class Response {
public:
    explicit Response(FreeFunction* free) noexcept : _free(free), _place(sizeof(void*)) {}
    Response(const Response&) = delete;
    Response& operator=(const Response&) = delete;

    /// Gives back what a crash has left.
    ~Response()
    {
        if (HasPlace() && Get()) RunContained([this] { Free(); });
    }

    bool HasPlace() const noexcept { return static_cast<bool>(_place); }
    void** Place() const noexcept { return reinterpret_cast<void**>(_place.Data()); }
    void* Get() const noexcept { return *Place(); }

    void Free()
    {
        if (void* const response = std::exchange(*Place(), nullptr)) _free(response);
    }

private:
    FreeFunction* _free;
    OGuardedBlock _place;
};

/// False without memory for an answer of that size.
bool ReadAnswer(const MonitorFunctions& monitor, void* response, OTypedArray<unsigned char>& answer)
try {
    const LONG size = monitor.size(response);
    if (size <= 0) return true;
    answer.SetSize(size);
    const OGuardedBlock block(static_cast<size_t>(size));
    if (!block) return false;
    monitor.data(response, block.Data());
    std::memcpy(answer.GetData(), block.Data(), static_cast<size_t>(size));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

} // namespace

DWORD PortMonitor::Post(const OString& printerName, const char* request) const
{
    SendRequestFunction* const sendRequest = FindSendRequest(_module);
    return sendRequest ? sendRequest(printerName.wstring(), request, nullptr) : 0;
}

DWORD PortMonitor::Send(const OString& printerName, const char* request, OTypedArray<unsigned char>& answer) const
{
    const MonitorFunctions monitor(_module);
    if (!monitor.AreComplete()) return 0;
    Response response(monitor.free);
    if (!response.HasPlace()) return 0;

    DWORD result = monitor.sendRequest(printerName.wstring(), request, response.Place());
    if (result != 0 && response.Get() && !ReadAnswer(monitor, response.Get(), answer)) result = 0;
    response.Free();
    return result;
}
