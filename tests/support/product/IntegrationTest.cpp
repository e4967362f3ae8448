// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"

#include "support/product/ProductDialogs.h"
#include "support/product/ProductHeap.h"

#include <algorithm>
#include <string_view>

namespace {

/// Who opens the core of a printer asks next, on the same thread, which driver it has; nobody else asks that.
bool OpensCore(const std::vector<SpoolerCallRecord>& log, size_t index)
{
    const SpoolerCallRecord& call = log[index];
    if (call.call != SpoolerCall::OpenPrinterW || call.result != ERROR_SUCCESS) return false;
    const auto next = std::find_if(log.begin() + static_cast<ptrdiff_t>(index) + 1, log.end(),
                                   [&](const auto& later) { return later.threadId == call.threadId; });
    return next != log.end() && next->call == SpoolerCall::GetPrinterDataW &&
           std::wstring_view(next->valueName) == L"VRL Interface";
}

} // namespace

void IntegrationTest::SetUp()
{
    Product();
    ::SetErrorInfo(0, nullptr);
    SpoolerTest::SetUp();
}

void IntegrationTest::TearDown()
{
    EXPECT_EQ(Product().CanUnloadNow(), S_OK) << "an object is left";
    EXPECT_EQ(::SpoolerOpenHandles(nullptr), Openings());
    EXPECT_EQ(::SpoolerOpenNotifications(), 0u);
    EXPECT_EQ(::SpoolerUnfreedNotifyBlocks(), 0u);
    SpoolerTest::TearDown();
}

const ProductModule& IntegrationTest::Product()
{
    static const ProductModule product;
    return product;
}

void IntegrationTest::WarmUp()
{
    ::SpoolerReset();
    AddPrinterNamed(L"Warm");
    const auto printer = BoundPrinter(L"Warm");
    const ProductDialogs dialogs(Product());
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(printer->Initialize(reinterpret_cast<BSTR>(0x10)), SystemAnswer(ERROR_INVALID_ADDRESS).result);

    ProductHeap heap(Product());
    heap.Refuse(1); // the memory of what is thrown
    EXPECT_EQ(AnswerOf(printer->get_Name(nullptr)), printerNotInitialized);
    EXPECT_TRUE(heap.HasRefused());
}

void IntegrationTest::GiveBackKeptClassObject(REFCLSID classId)
{
    if (!::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version")) return;
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(Product().GetClassObject(classId, IID_PPV_ARGS(&factory)), S_OK);
    factory->Release();
}

Microsoft::WRL::ComPtr<IPrinter> IntegrationTest::BoundPrinter(std::wstring_view name)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(Initialize(*printer.Get(), name), S_OK);
    return printer;
}

HRESULT IntegrationTest::Initialize(IPrinter& printer, std::wstring_view name)
{
    return printer.Initialize(NewBstr(name).Get());
}

Microsoft::WRL::ComPtr<IPrinterStatus> IntegrationTest::StatusOf(IPrinter& printer)
{
    ComPtr<IPrinterStatus> status;
    EXPECT_EQ(printer.get_Status(&status), S_OK);
    return status;
}

void IntegrationTest::AddPrinterNamed(const wchar_t* name)
{
    SpoolerPrinter printer = LabelPrinter();
    printer.printerName = name;
    printer.shareName = L"";
    printer.attributes = PRINTER_ATTRIBUTE_LOCAL;
    AddPrinter(printer);
}

DWORD IntegrationTest::Openings()
{
    const auto log = SpoolerLog();
    DWORD openings = 0;
    for (size_t i = 0; i < log.size(); ++i) openings += OpensCore(log, i) ? 1 : 0;
    return openings;
}

SpoolerCallRecord IntegrationTest::StartedDocument()
{
    const auto log = SpoolerLog();
    const auto started = std::ranges::find(log, SpoolerCall::StartDocPrinterW, &SpoolerCallRecord::call);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 1u);
    return started == log.end() ? SpoolerCallRecord{} : *started;
}

std::string IntegrationTest::SentBytes()
{
    const auto bytes = SpoolerJobBytes(printerName, StartedDocument().jobId);
    return {bytes.begin(), bytes.end()};
}
