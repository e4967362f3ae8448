// SPDX-License-Identifier: MIT
#include "bench/EnumerationTable.h"

#include "bench/Measurement.h"
#include "bench/RawSpooler.h"
#include "bench/SimulatedWorld.h"
#include "bench/WmiPrinters.h"
#include "spooler/SpoolerControl.h"
#include "support/product/ProductModule.h"
#include "vrl/Vorlane.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <array>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

constexpr std::array printerCounts{1, 10, 100, 1000};
constexpr int printersInABatch = 1000; ///< each opening leaves a spooler handle behind

/// As a C program would do it; the handles stay open, as the product's do.
template <class Open>
int EnumerateRaw(Open open)
{
    constexpr DWORD flags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    DWORD needed = 0;
    DWORD count = 0;
    ::EnumPrintersW(flags, nullptr, 2, nullptr, 0, &needed, &count);
    std::vector<BYTE> buffer(needed);
    ::EnumPrintersW(flags, nullptr, 2, buffer.data(), needed, &needed, &count);
    const auto* const printers = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    for (DWORD index = 0; index < count; ++index) open(printers[index].pPrinterName);
    return static_cast<int>(count);
}

int EnumerateAndOpen()
{
    return EnumerateRaw([](wchar_t* name) {
        HANDLE printer = nullptr;
        PRINTER_DEFAULTSW defaults{nullptr, nullptr, PRINTER_ALL_ACCESS};
        if (!::OpenPrinterW(name, &printer, &defaults)) throw std::runtime_error("OpenPrinterW failed");
    });
}

/// With what binding a `Printer` asks of the spooler.
int EnumerateAndBind()
{
    return EnumerateRaw([](const wchar_t* name) { OpenAndLeave(name); });
}

class Product {
public:
    int Enumerate() const
    {
        ComPtr<IPrinters> printers;
        _module.CreateInstance(__uuidof(Printers), IID_PPV_ARGS(&printers));
        VARIANT noFilter;
        ::VariantInit(&noFilter);
        _server->EnumeratePrinters(printers.Get(), noFilter);
        long count = 0;
        printers->get_Count(&count);
        return static_cast<int>(count);
    }

private:
    ComPtr<IPrintServer> NewServer() const
    {
        ComPtr<IPrintServer> server;
        _module.CreateInstance(__uuidof(PrintServer), IID_PPV_ARGS(&server));
        return server;
    }

    ProductModule _module;
    ComPtr<IPrintServer> _server = NewServer();
};

void RequireCount(int found, int count, const char* name)
{
    if (found == count) return;
    throw std::runtime_error(std::string(name) + " finds " + std::to_string(found) + " of " + std::to_string(count) +
                             " printers");
}

/// The call log of the simulator grows with each call: it is emptied so that no case pays for another's.
BenchCase Repeated(const char* name, std::function<int()> once, int count)
{
    return {[name, once = std::move(once), count](int calls) {
                for (int i = 0; i < calls; ++i) {
                    RequireCount(once(), count, name);
                    ::SpoolerClearLog();
                }
            },
            printersInABatch / count};
}

DWORD SpoolerCallsOf(const std::function<int()>& enumerate)
{
    ::SpoolerClearLog();
    enumerate();
    return ::SpoolerLogLength();
}

void RequireEqualCalls(const Product& product)
{
    if (SpoolerCallsOf([&] { return product.Enumerate(); }) != SpoolerCallsOf(EnumerateAndBind))
        throw std::runtime_error("the raw calls are not those of the enumeration");
}

void PrintMicroseconds(double nanoseconds)
{
    std::printf(" %.1f us |", nanoseconds / 1000);
}

void PrintWithRatio(double nanoseconds, double raw)
{
    std::printf(" %.1f us (%.2f) |", nanoseconds / 1000, nanoseconds / raw);
}

void PrintRow(const Product& product, const WmiPrinters& wmi, int count)
{
    FillWorld(count);
    RequireEqualCalls(product);
    const auto ofProduct = [&] { return product.Enumerate(); };
    const auto ofQuery = [&] { return wmi.CountNames(); };
    // Wine's query takes the count of the sized call for the list, which the real spooler, and so the simulator, leaves
    // 0.
    const bool hasQuery = wmi && ofQuery() == count;

    std::vector<BenchCase> cases{Repeated("EnumPrintersW", EnumerateAndOpen, count),
                                 Repeated("EnumPrintersW", EnumerateAndBind, count),
                                 Repeated("EnumeratePrinters", ofProduct, count)};
    if (hasQuery) cases.push_back(Repeated("the query", ofQuery, count));
    const std::vector<Samples> samples = MeasureTogether(cases);

    const double same = Median(samples[1]);
    std::printf("| %d |", count);
    PrintMicroseconds(Median(samples[0]));
    PrintMicroseconds(same);
    PrintWithRatio(Median(samples[2]), same);
    PrintMicroseconds(MedianDifference(samples[2], samples[1]) / count);
    if (hasQuery) {
        PrintWithRatio(Median(samples[3]), same);
    } else {
        std::printf(" none |");
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

void PrintEnumerationTable()
{
    const Product product;
    const WmiPrinters wmi;
    std::printf("\n| Printers | EnumPrintersW and OpenPrinterW | the calls of the product | EnumeratePrinters "
                "| the product adds, a printer | query of Win32_Printer |\n|---|---|---|---|---|---|\n");
    for (const int count : printerCounts) PrintRow(product, wmi, count);
}
