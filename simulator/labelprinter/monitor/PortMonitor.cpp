// SPDX-License-Identifier: MIT
/// What a printer driver asks of its port monitor.

#include "labelprinter/LabelPrinterControl.h"
#include "labelprinter/monitor/DeviceAnswers.h"
#include "labelprinter/monitor/Responses.h"

#include <new>

extern "C" {

/// Non-zero if the request was answered. `response`, if not null, becomes the handle of the answer, to be freed.
DWORD SendQRMLRequest(const wchar_t* printerName, const char* request, void** response) noexcept
try {
    if (response) *response = nullptr;
    LabelPrinterMonitorMood mood{};
    if (!request || ::LabelPrinterBeginRequest(printerName, &mood) != ERROR_SUCCESS || mood.fails) return 0;
    if (mood.delayMs > 0) ::Sleep(mood.delayMs);

    std::optional<std::string> answer = AnswerRequest(printerName, request);
    if (!answer) return 0;
    if (response) *response = Responses::Instance().Add(std::move(*answer));
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

LONG HTTPResponse_Size(void* response) noexcept
try {
    return static_cast<LONG>(Responses::Instance().Get(response).size());
} catch (const std::bad_alloc&) {
    return 0;
}

/// `buffer` has room for as many bytes as the answer has.
void HTTPResponse_Data(void* response, void* buffer) noexcept
try {
    const std::string answer = Responses::Instance().Get(response);
    answer.copy(static_cast<char*>(buffer), answer.size());
} catch (const std::bad_alloc&) {
    // Nothing is copied: the caller sees what was in the buffer.
}

void HTTPResponse_Free(void* response) noexcept
{
    Responses::Instance().Remove(response);
}

} // extern "C"
