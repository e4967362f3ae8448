// SPDX-License-Identifier: MIT
#include "bench/MemberTable.h"

#include "bench/Measurement.h"
#include "bench/RawSpooler.h"
#include "bench/ScriptLoop.h"
#include "spooler/SpoolerControl.h"
#include "support/product/ProductModule.h"

#include <wrl/client.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

using Microsoft::WRL::ComPtr;
using Action = std::function<void()>;

constexpr const wchar_t* printerName = L"Label";
constexpr const wchar_t* secondPrinterName = L"Second";
constexpr const wchar_t* commentText = L"Shipping labels";
constexpr int usualCalls = 2000; ///< in one batch
constexpr int openings = 100;    ///< each leaves a spooler handle behind

struct Row {
    std::string name;
    Action raw; ///< empty if the member makes no spooler call
    Action member;
    const wchar_t* copied = nullptr; ///< the text that the member gives, if it gives one
    ComPtr<IDispatch> object;        ///< empty if there is nothing to invoke late
    DISPID dispatchId = 0;
    WORD kind = DISPATCH_PROPERTYGET;
    const wchar_t* statement = nullptr;
    int calls = usualCalls;
};

void InvokeMember(const Row& row)
{
    _variant_t value(commentText);
    DISPID propertyPut = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    if (row.kind == DISPATCH_PROPERTYPUT) parameters = {&value, &propertyPut, 1, 1};
    _variant_t result;
    row.object->Invoke(row.dispatchId, IID_NULL, LOCALE_USER_DEFAULT, row.kind, &parameters, &result, nullptr, nullptr);
}

/// The call log of the simulator grows with each call: it is emptied so that no case pays for another's.
BenchCase Repeated(const Action& once, int batch)
{
    return {[once](int calls) {
                for (int i = 0; i < calls; ++i) {
                    once();
                    if (i % 500 == 0) ::SpoolerClearLog();
                }
            },
            batch};
}

std::wstring SpoolerCallsOf(const Action& action)
{
    ::SpoolerClearLog();
    action();
    std::wstring calls;
    for (const SpoolerCallRecord& record : SpoolerLog()) {
        calls += std::wstring(::SpoolerCallName(record.call)) + L' ' + std::to_wstring(record.level) + L"; ";
    }
    ::SpoolerClearLog();
    return calls;
}

void RequireEqualCalls(const Row& row)
{
    const std::wstring ofMember = SpoolerCallsOf(row.member);
    const std::wstring raw = row.raw ? SpoolerCallsOf(row.raw) : L"";
    if (ofMember == raw) return;
    std::printf("%s\nraw:    %ls\nmember: %ls\n", row.name.c_str(), raw.c_str(), ofMember.c_str());
    throw std::runtime_error("the raw calls are not those of the member");
}

void PrintNanoseconds(double nanoseconds)
{
    std::printf(" %.0f ns |", nanoseconds);
}

void PrintWithRatio(double nanoseconds, double raw)
{
    if (raw > 0) {
        std::printf(" %.0f ns (%.2f) |", nanoseconds, nanoseconds / raw);
    } else {
        PrintNanoseconds(nanoseconds);
    }
}

void PrintRow(const Row& row, ScriptLoop& script)
{
    RequireEqualCalls(row);
    const auto nothing = [] {};
    const auto copy = [&] { ::SysFreeString(::SysAllocString(row.copied)); };
    std::vector<BenchCase> cases{Repeated(row.raw ? row.raw : nothing, row.calls), Repeated(row.member, row.calls),
                                 Repeated(row.copied ? Action(copy) : nothing, row.calls)};
    if (row.object) {
        cases.push_back(Repeated([&] { InvokeMember(row); }, row.calls));
        cases.push_back({[&](int calls) {
                             script.Run(row.statement, calls);
                             ::SpoolerClearLog();
                         },
                         row.calls});
    }
    const std::vector<Samples> samples = MeasureTogether(cases);

    const double raw = row.raw ? Median(samples[0]) : 0;
    std::printf("| %s |", row.name.c_str());
    row.raw ? PrintNanoseconds(raw) : static_cast<void>(std::printf(" none |"));
    PrintWithRatio(Median(samples[1]), raw);
    for (size_t i = 3; i < 5; ++i) {
        row.object ? PrintWithRatio(Median(samples[i]), raw) : static_cast<void>(std::printf(" |"));
    }
    PrintNanoseconds(MedianDifference(samples[1], samples[0]));
    row.copied ? PrintNanoseconds(Median(samples[2])) : static_cast<void>(std::printf(" |"));
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
        printer.comment = commentText;
        printer.location = L"Gate 7";
        ::SpoolerAddPrinter(printer);
    }
};

class MemberBench {
public:
    MemberBench()
    {
        Bind(*_printer.Get(), printerName);
        _printer->get_Status(&_status);
    }

    std::vector<Row> Rows() const
    {
        // clang-format off
        return {
            {"`Name`", nullptr, Text(_printer, &IPrinter::get_Name), printerName,
             _printer, 0x65, DISPATCH_PROPERTYGET, L"x = p.Name"},
            {"`Comment`, get", [this] { _raw.ReadComment(); }, Text(_printer, &IPrinter::get_Comment), commentText,
             _printer, 0x6a, DISPATCH_PROPERTYGET, L"x = p.Comment"},
            {"`Comment`, put", [this] { _raw.WriteComment(_newComment); }, [this] { _printer->put_Comment(_newComment); }, nullptr,
             _printer, 0x6a, DISPATCH_PROPERTYPUT, L"p.Comment = \"Shipping labels\""},
            {"`Local`", [this] { _raw.IsLocal(); }, Truth(_printer, &IPrinter::get_Local), nullptr,
             _printer, 0x6c, DISPATCH_PROPERTYGET, L"x = p.Local"},
            {"`Status.PaperOut`", [this] { _raw.ReadStatus(); }, Truth(_status, &IPrinterStatus::get_PaperOut), nullptr,
             _status, 0x71, DISPATCH_PROPERTYGET, L"x = p.Status.PaperOut"},
            {"`Status.Text`", [this] { _raw.ReadQueueAndStatus(); }, Text(_status, &IPrinterStatus::get_Text), L"Ready",
             _status, 0x65, DISPATCH_PROPERTYGET, L"x = p.Status.Text"},
            {"create and `Initialize`, first of its name", [] { OpenAndLeave(secondPrinterName); },
             [this] { Bind(*NewPrinter().Get(), secondPrinterName); }, nullptr,
             nullptr, 0, 0, nullptr, openings},
            {"create and `Initialize`, name in use", nullptr, [this] { Bind(*NewPrinter().Get(), printerName); }, nullptr,
             nullptr, 0, 0, nullptr, openings},
        };
        // clang-format on
    }

    IPrinter* BoundPrinter() const { return _printer.Get(); }

private:
    template <typename Object, typename Get>
    static Action Text(ComPtr<Object> object, Get get)
    {
        return [=] {
            BSTR value = nullptr;
            (object.Get()->*get)(&value);
            ::SysFreeString(value);
        };
    }

    template <typename Object, typename Get>
    static Action Truth(ComPtr<Object> object, Get get)
    {
        return [=] {
            VARIANT_BOOL value = VARIANT_FALSE;
            (object.Get()->*get)(&value);
        };
    }

    ComPtr<IPrinter> NewPrinter() const
    {
        ComPtr<IPrinter> printer;
        _product.CreateInstance(__uuidof(Printer), IID_PPV_ARGS(&printer));
        return printer;
    }

    static void Bind(IPrinter& printer, const wchar_t* name) { printer.Initialize(_bstr_t(name)); }

    World _world;
    ProductModule _product;
    ComPtr<IPrinter> _printer = NewPrinter();
    ComPtr<IPrinterStatus> _status;
    RawSpooler _raw{printerName};
    _bstr_t _newComment{commentText};
};

} // namespace

void PrintMemberTable()
{
    const MemberBench bench;
    ScriptLoop script(bench.BoundPrinter());
    std::printf("| Member | raw spooler calls | vtable | IDispatch::Invoke | VBScript | the product adds "
                "| a copy into a BSTR |\n|---|---|---|---|---|---|---|\n");
    for (const Row& row : bench.Rows()) PrintRow(row, script);
}
