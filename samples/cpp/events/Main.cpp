// SPDX-License-Identifier: MIT

// Prints a printer's odometer and its events, while a second thread changes the printer and prints on it.
//
//     events PRINTER FILE
//
// Ends once the odometer has moved. Exit code 0, or 2 for a call that failed.

#include "cpp/EventSink.h"

#include <thread>

namespace {

using Microsoft::WRL::ComPtr;

constexpr int callFailed = 2;
constexpr DWORD patienceMs = 30000;

constexpr const char* eventNames[] = {
    "",
    "OnPrinterNameChanged",
    "OnShareNameChanged",
    "OnPortNameChanged",
    "OnCommentChanged",
    "OnLocationChanged",
    "OnPriorityChanged",
    "OnStartTimeChanged",
    "OnUntilTimeChanged",
    "OnStatusChanged",
    "OnOdometerChanged",
};

enum : DISPID { onCommentChanged = 4, onLocationChanged = 5, onStatusChanged = 9, onOdometerChanged = 10 };

std::wstring OdometerOf(IPrinter& printer)
{
    ComPtr<IPrinterStatus> status;
    unsigned long pages = 0;
    float distance = 0;
    if (FAILED(printer.get_Status(&status)) || FAILED(status->get_OdometerPages(&pages)) ||
        FAILED(status->get_OdometerDistance(&distance)))
        return {};
    wchar_t text[64];
    std::swprintf(text, std::size(text), L"%lu pages, %.1f mm", pages, static_cast<double>(distance));
    return text;
}

void PrintLine(const char* what, const std::wstring& value)
{
    PrintTime();
    std::printf("%-20s  %ls\n", what, value.c_str());
    std::fflush(stdout);
}

/// Prints what it is told, with the new value read from the printer that comes with the event.
class PrinterPrinter final : public EventSink<_IPrinterEvents> {
public:
    /// Set once the odometer has moved.
    HANDLE Moved() const noexcept { return _moved; }

private:
    ~PrinterPrinter() override { ::CloseHandle(_moved); }

    HRESULT OnEvent(DISPID event, std::span<const VARIANT> arguments) override
    {
        if (event < 1 || event >= static_cast<DISPID>(std::size(eventNames))) return DISP_E_MEMBERNOTFOUND;
        const auto printer = ObjectIn<IPrinter>(arguments.back());
        PrintLine(eventNames[event], printer ? NewValue(event, *printer.Get()) : L"");
        if (event == onOdometerChanged) ::SetEvent(_moved);
        return S_OK;
    }

    static std::wstring NewValue(DISPID event, IPrinter& printer)
    {
        ComPtr<IPrinterStatus> status;
        if (FAILED(printer.get_Status(&status))) return {};
        switch (event) {
        case onCommentChanged:
            return TextOf(&printer, &IPrinter::get_Comment);
        case onLocationChanged:
            return TextOf(&printer, &IPrinter::get_Location);
        case onStatusChanged:
            return TextOf(status.Get(), &IPrinterStatus::get_Text);
        case onOdometerChanged:
            return OdometerOf(printer);
        default:
            return {};
        }
    }

    const HANDLE _moved = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

HRESULT OpenPrinterObject(const wchar_t* name, ComPtr<IPrinter>& printer)
{
    const HRESULT result = ::CoCreateInstance(__uuidof(Printer), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&printer));
    return FAILED(result) ? result : printer->Initialize(_bstr_t(name));
}

/// Somebody else at work on the same printer.
void ChangeAndPrint(const wchar_t* printerName, const wchar_t* fileName)
{
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    {
        ComPtr<IPrinter> printer;
        if (SUCCEEDED(OpenPrinterObject(printerName, printer))) {
            printer->put_Comment(_bstr_t(L"New labels, 100 x 60 mm"));
            printer->put_Location(_bstr_t(L"Gate 7, upper shelf"));
            printer->SendFile(_bstr_t(fileName), _bstr_t(L"Shipping label"));
        }
    }
    ::CoUninitialize();
}

int Failed(const char* what, HRESULT result)
{
    PrintFailure(what, result);
    return callFailed;
}

int ShowEvents(const wchar_t* printerName, const wchar_t* fileName)
{
    ComPtr<IPrinter> printer;
    const HRESULT result = OpenPrinterObject(printerName, printer);
    if (FAILED(result)) return Failed("Initialize", result);
    PrintLine("Odometer", OdometerOf(*printer.Get()));

    ComPtr<PrinterPrinter> sink;
    *sink.GetAddressOf() = new PrinterPrinter;
    const Connection<_IPrinterEvents> connection(printer.Get(), sink.Get());
    if (FAILED(connection.Result())) return Failed("Advise", connection.Result());

    const std::jthread other(ChangeAndPrint, printerName, fileName);
    if (::WaitForSingleObject(sink->Moved(), patienceMs) == WAIT_OBJECT_0) return 0;
    std::fputs("The odometer has not moved.\n", stderr);
    return callFailed;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    if (count != 3) {
        std::fputs("usage: events PRINTER FILE\n", stderr);
        return callFailed;
    }
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const int result = ShowEvents(words[1], words[2]);
    ::CoUninitialize();
    return result;
}
