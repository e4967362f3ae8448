// SPDX-License-Identifier: MIT
//
// Cases: Name, Comment (get and put), Local, Status.Text and one condition, each through the vtable, through
// IDispatch::Invoke and through a script, beside the raw spooler calls that it stands for; and making and binding a
// Printer. The spooler is the simulator, in the same process. Prints a table in Markdown.
#include "bench/Measurement.h"
#include "bench/RawSpooler.h"
#include "bench/ScriptLoop.h"
#include "spooler/SpoolerControl.h"
#include "support/product/ProductModule.h"

#include <wrl/client.h>

#include <cstdio>
#include <exception>
#include <filesystem>

namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* printerName = L"Label";
constexpr const wchar_t* secondPrinterName = L"Second";

struct Row {
    const char* name;
    std::function<void()> raw; ///< empty if the member makes no spooler call
    std::function<void()> direct;
    ComPtr<IDispatch> object; ///< empty if there is nothing to invoke late
    DISPID member = 0;
    WORD kind = DISPATCH_PROPERTYGET;
    const wchar_t* statement = nullptr;
    int calls = 2000; ///< in one batch
};

void InvokeMember(IDispatch& object, DISPID member, WORD kind)
{
    _variant_t value(L"Shipping labels");
    DISPID propertyPut = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    if (kind == DISPATCH_PROPERTYPUT) parameters = {&value, &propertyPut, 1, 1};
    _variant_t result;
    object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, &result, nullptr, nullptr);
}

/// The call log of the simulator grows with each call: it is emptied so that no case pays for another's.
BenchCase Repeated(const char* name, const std::function<void()>& once, int batch)
{
    return {name,
            [once](int calls) {
                for (int i = 0; i < calls; ++i) {
                    once();
                    if (i % 500 == 0) ::SpoolerClearLog();
                }
            },
            batch};
}

void PrintCell(double nanoseconds, double raw)
{
    if (raw > 0) {
        std::printf(" %.0f ns (%.2f) |", nanoseconds, nanoseconds / raw);
    } else {
        std::printf(" %.0f ns |", nanoseconds);
    }
}

void MeasureRow(const Row& row, ScriptLoop& script)
{
    std::vector<BenchCase> cases{Repeated("direct", row.direct, row.calls)};
    if (row.object) {
        cases.push_back(Repeated(
            "late", [&] { InvokeMember(*row.object.Get(), row.member, row.kind); }, row.calls));
        cases.push_back({"script",
                         [&](int calls) {
                             script.Run(row.statement, calls);
                             ::SpoolerClearLog();
                         },
                         row.calls});
    }
    if (row.raw) cases.push_back(Repeated("raw", row.raw, row.calls));
    const std::vector<Measurement> measured = MeasureTogether(cases);

    const double raw = row.raw ? measured.back().median : 0;
    std::printf("| %s |", row.name);
    row.raw ? std::printf(" %.0f ns |", raw) : std::printf(" none |");
    PrintCell(measured[0].median, raw);
    for (size_t i = 1; i < 3; ++i) {
        row.object ? PrintCell(measured[i].median, raw) : static_cast<void>(std::printf(" |"));
    }
    std::printf("\n");
}

/// Two printers in the simulated world, there before anything is opened.
class World {
public:
    World()
    {
        ::SpoolerReset();
        for (const wchar_t* name : {printerName, secondPrinterName}) Add(name);
    }

private:
    static void Add(const wchar_t* name)
    {
        SpoolerPrinter printer;
        printer.printerName = name;
        printer.shareName = L"LABELS";
        printer.comment = L"Shipping labels";
        printer.location = L"Gate 7";
        ::SpoolerAddPrinter(printer);
    }
};

class Bench {
public:
    Bench()
    {
        _printer = NewPrinter();
        Bind(*_printer.Get(), printerName);
        _printer->get_Status(&_status);
    }

    void Run()
    {
        ScriptLoop script(_printer.Get());
        std::printf("| Member | raw spooler calls | vtable | IDispatch::Invoke | VBScript |\n");
        std::printf("|---|---|---|---|---|\n");
        for (const Row& row : Rows()) MeasureRow(row, script);
        std::printf("\nVorlane.dll: %llu bytes\n",
                    static_cast<unsigned long long>(std::filesystem::file_size(_product.Path())));
    }

private:
    ComPtr<IPrinter> NewPrinter() const
    {
        ComPtr<IPrinter> printer;
        _product.CreateInstance(__uuidof(Printer), __uuidof(IPrinter),
                                reinterpret_cast<void**>(printer.GetAddressOf()));
        return printer;
    }

    static void Bind(IPrinter& printer, const wchar_t* name) { printer.Initialize(_bstr_t(name)); }

    std::vector<Row> Rows()
    {
        const auto text = [](auto object, auto get) {
            return [=] {
                BSTR value = nullptr;
                (object.Get()->*get)(&value);
                ::SysFreeString(value);
            };
        };
        const auto truth = [](auto object, auto get) {
            return [=] {
                VARIANT_BOOL value = VARIANT_FALSE;
                (object.Get()->*get)(&value);
            };
        };
        static wchar_t comment[] = L"Shipping labels";
        const _bstr_t newComment(comment);
        return {
            {"`Name`",                                     nullptr,                                 text(_printer,                                      &IPrinter::get_Name),                               _printer, 0x65, DISPATCH_PROPERTYGET,
             L"x = p.Name"                                                                                                                                                                                                                                                },
            {"`Comment`, get",                             [this] { _raw.ReadComment(); },          text(_printer,                                      &IPrinter::get_Comment),                            _printer, 0x6a,
             DISPATCH_PROPERTYGET,                                                                                                                                                                                                                L"x = p.Comment"        },
            {"`Comment`, put",                             [this] { _raw.WriteComment(comment); },
             [this,                                                                                                                                     newComment] { _printer->put_Comment(newComment); }, _printer, 0x6a, DISPATCH_PROPERTYPUT,
             L"p.Comment = \"Shipping labels\""                                                                                                                                                                                                                           },
            {"`Local`",                                    [this] { _raw.IsLocal(); },              truth(_printer,                                     &IPrinter::get_Local),                              _printer, 0x6c,
             DISPATCH_PROPERTYGET,                                                                                                                                                                                                                L"x = p.Local"          },
            {"`Status.PaperOut`",                          [this] { _raw.ReadStatus(); },           truth(_status,                                      &IPrinterStatus::get_PaperOut),                     _status,
             0x71,                                                                                                                                                                                                          DISPATCH_PROPERTYGET, L"x = p.Status.PaperOut"},
            {"`Status.Text`",                              [this] { _raw.ReadStatus(); },           text(_status,                                       &IPrinterStatus::get_Text),                         _status,  0x65,
             DISPATCH_PROPERTYGET,                                                                                                                                                                                                                L"x = p.Status.Text"    },
            {"create and `Initialize`, first of its name", [] { OpenAndClose(secondPrinterName); },
             [this] { Bind(*NewPrinter().Get(), secondPrinterName); },                                                                                  nullptr,                                            0,        0,    nullptr,              fewCalls                },
            {"create and `Initialize`, name in use",       nullptr,                                 [this] { Bind(*NewPrinter().Get(), printerName); },
             nullptr,                                                                                                                                                                                       0,        0,    nullptr,              fewCalls                },
        };
    }

    static constexpr int fewCalls = 100; ///< each opening leaves a spooler handle behind

    World _world;
    ProductModule _product;
    ComPtr<IPrinter> _printer;
    ComPtr<IPrinterStatus> _status;
    RawSpooler _raw{printerName};
};

} // namespace

int main()
try {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    Bench().Run();
    ::CoUninitialize();
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
