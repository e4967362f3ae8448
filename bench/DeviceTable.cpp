// SPDX-License-Identifier: MIT
#include "bench/DeviceTable.h"

#include "bench/BoundPrinter.h"
#include "bench/Measurement.h"
#include "bench/RawMonitor.h"
#include "bench/SimulatedWorld.h"
#include "support/product/LabelPrinterSetup.h"

#include <comutil.h>

#include <cstdio>
#include <stdexcept>

namespace {

using Microsoft::WRL::ComPtr;
using Action = std::function<void()>;

constexpr const wchar_t* printerName = L"Label";
constexpr int requestsInABatch = 100;

constexpr const char* askFlags =
    "<state name='Monitoring Supported' action='get' />;<state name='Status Flags 2' action='get' />&#00;";
constexpr const char* askText =
    "<state name='Monitoring Supported' action='get' />;<state name='Status' action='get' />&#00;";
constexpr const char* startQuery =
    "<query id='bench' name='VRL Query'><request id='1' name='VRL Request'>?head</request></query>";
constexpr const char* askQueryStatus = "<request query='bench' id='1' get='status' />";
constexpr const char* askQueryResponse = "<request query='bench' id='1' get='response' />";

void Require(bool ok, const char* what)
{
    if (!ok) throw std::runtime_error(std::string(what) + ": not as it should be");
}

/// The simulated world with one label printer, which answers at once.
class LabelWorld {
public:
    LabelWorld()
    {
        FillWorld(0);
        ::LabelPrinterReset();
        SpoolerPrinter printer;
        printer.printerName = printerName;
        printer.driverName = L"Label Driver";
        Require(::SpoolerAddPrinter(printer) == ERROR_SUCCESS, "the printer");
        Require(SetUpLabelPrinter(printerName) == ERROR_SUCCESS, "the label printer");
    }
    LabelWorld(const LabelWorld&) = delete;
    LabelWorld& operator=(const LabelWorld&) = delete;
    ~LabelWorld() { ::LabelPrinterReset(); }
};

/// A client of the device, through the product.
class Client {
public:
    Client()
    {
        const auto printer = BoundPrinter(_product, printerName);
        printer->get_Status(&_status);
        printer->get_Port(&_port);
        _product.CreateInstance(__uuidof(QueryCommand), IID_PPV_ARGS(&_command));
        _command->put_Text(_bstr_t(L"?head"));
    }

    void ReadHeadOpen() const
    {
        VARIANT_BOOL open = VARIANT_TRUE;
        _status->get_HeadOpen(&open);
        Require(open == VARIANT_FALSE, "Status.HeadOpen");
    }

    void ReadText() const
    {
        _bstr_t text;
        _status->get_Text(text.GetAddress());
        Require(text == _bstr_t(L"Ready"), "Status.Text");
    }

    void Query() const
    {
        long number = 0;
        _port->StartQuery(_command.Get(), &number);
        _port->WaitForQuery(number);
        ComPtr<IQueryResponse> response;
        _port->GetQueryResponse(number, &response);
        _bstr_t text;
        if (response) response->get_Text(text.GetAddress());
        Require(text == _bstr_t(L"head = closed\r\n"), "the query");
    }

private:
    const ProductModule _product;
    ComPtr<IPrinterStatus> _status;
    ComPtr<IPrinterPort> _port;
    ComPtr<IQueryCommand> _command;
};

/// The requests that the product makes of a query: start, wait, is it answered, the answer.
void QueryRaw(const RawMonitor& monitor)
{
    monitor.Post(startQuery);
    Require(monitor.Ask(askQueryStatus).starts_with("2"), "the bare query");
    Require(monitor.Ask(askQueryStatus).starts_with("2"), "the bare query");
    Require(monitor.Ask(askQueryResponse) == "head = closed\r\n", "the bare query");
}

BenchCase Repeated(const Action& once)
{
    return {[&once](int calls) {
                for (int i = 0; i < calls; ++i) once();
                ::SpoolerClearLog();
            },
            requestsInABatch};
}

DWORD RequestsOf(const Action& action)
{
    const DWORD before = ::LabelPrinterRequests(printerName);
    action();
    return ::LabelPrinterRequests(printerName) - before;
}

void PrintRow(const char* name, const Action& raw, const Action& member)
{
    const DWORD requests = RequestsOf(raw);
    Require(RequestsOf(member) == requests, name);
    const std::vector<Samples> samples = MeasureTogether({Repeated(raw), Repeated(member)});
    std::printf("| %s | %lu | %.1f us | %.1f us (%.2f) | %.0f ns |\n", name, requests, Median(samples[0]) / 1000,
                Median(samples[1]) / 1000, Median(samples[1]) / Median(samples[0]),
                MedianDifference(samples[1], samples[0]));
    std::fflush(stdout);
}

} // namespace

void PrintDeviceTable()
{
    const LabelWorld world;
    const Client client;
    const RawMonitor monitor(printerName);
    std::printf("\n| Asking the device | requests | bare loads and calls | vtable | the product adds "
                "|\n|---|---|---|---|---|\n");
    PrintRow(
        "`Status.HeadOpen`", [&] { monitor.Ask(askFlags); }, [&] { client.ReadHeadOpen(); });
    PrintRow(
        "`Status.Text`", [&] { monitor.Ask(askText); }, [&] { client.ReadText(); });
    PrintRow(
        "`StartQuery` to `QueryResponse.Text`", [&] { QueryRaw(monitor); }, [&] { client.Query(); });
}
