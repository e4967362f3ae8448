// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/product/IntegrationTest.h"
#include "support/com/Getters.h"
#include "support/com/LateBound.h"
#include "support/TemporaryDirectory.h"

#include <string>

// What the class does is held by tests/vrl/classes/Printer_test.cpp. Here: what it takes the module for.

namespace {

class PrinterObject : public IntegrationTest {
protected:
    std::vector<BYTE> buffer;
};

// One pass over the members, late bound

struct LateText {
    const char* name;
    const wchar_t* text;

    friend std::ostream& operator<<(std::ostream& stream, const LateText& row) { return stream << row.name; }
};

constexpr LateText lateTexts[] = {
    {"Name",       L"Label"          },
    {"ServerName", L"\\\\STORE"      },
    {"ShareName",  L"LABELS"         },
    {"PortName",   L"LPT1:"          },
    {"ModelName",  L"Label Driver"   },
    {"Comment",    L"Shipping labels"},
    {"Location",   L"Gate 7"         },
};

class PrinterText : public PrinterObject, public ::testing::WithParamInterface<LateText> {};

TEST_P(PrinterText, ComesLateBound)
{
    const auto printer = BoundPrinter();
    const LateResult read = LateBound(printer.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, S_OK);
    EXPECT_EQ(read.value, _variant_t(GetParam().text));
}

TEST_P(PrinterText, FailsUnboundForAScriptWithCodeTextAndSource)
{
    const auto printer = CreatePrinter();
    const LateResult read = LateBound(printer.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, printerNotInitialized.result);
    EXPECT_EQ(read.description, L"Printer object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.Printer.1");
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterText, ::testing::ValuesIn(lateTexts), rowName);

TEST_F(PrinterObject, FlagsComeLateBound)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED);
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Get("Local").value, _variant_t(true));
    EXPECT_EQ(LateBound(printer.Get()).Get("Network").value, _variant_t(false));
    EXPECT_EQ(LateBound(printer.Get()).Get("Shared").value, _variant_t(true));
}

TEST_F(PrinterObject, IsBoundLateBound)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(LateBound(printer.Get()).Call("Initialize", {printerName}).result, S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

struct LateSetter {
    const char* name;
    wchar_t* PRINTER_INFO_2W::*field;
    const wchar_t* value;

    friend std::ostream& operator<<(std::ostream& stream, const LateSetter& row) { return stream << row.name; }
};

constexpr LateSetter lateSetters[] = {
    {"ShareName", &PRINTER_INFO_2W::pShareName, L"SHELF 12"                   },
    {"PortName",  &PRINTER_INFO_2W::pPortName,  L"LPT2:"                      },
    {"Comment",   &PRINTER_INFO_2W::pComment,   L"Returns \u2014 \u8FD4\u54C1"},
    {"Location",  &PRINTER_INFO_2W::pLocation,  L"Gate 8"                     },
};

class PrinterSetter : public PrinterObject, public ::testing::WithParamInterface<LateSetter> {};

TEST_P(PrinterSetter, ChangesItsTextAloneLateBound)
{
    ::SpoolerAddPort({.name = L"LPT2:"});
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Put(GetParam().name, GetParam().value).result, S_OK);
    const PRINTER_INFO_2W& now = Peek(buffer);
    for (const LateSetter& other : lateSetters) {
        const bool changed = std::wstring(now.*other.field) == other.value;
        EXPECT_EQ(changed, std::string(other.name) == GetParam().name) << other.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterSetter, ::testing::ValuesIn(lateSetters), rowName);

TEST_F(PrinterObject, SharingIsSwitchedLateBound)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Put("Shared", false).result, S_OK);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
}

TEST_F(PrinterObject, SendsAFileLateBound)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    const auto printer = BoundPrinter();
    const LateResult sent = LateBound(printer.Get()).Call("SendFile", {file.c_str(), L"Order 12"});
    EXPECT_EQ(sent.result, S_OK);
    EXPECT_EQ(SentBytes(), "TEXT 1,1");
}

TEST_F(PrinterObject, RaisesNoErrorInAScriptForAMissingFile)
{
    const auto printer = BoundPrinter();
    const LateResult sent = LateBound(printer.Get()).Call("SendFile", {L"C:\\no such file.lbl", L"Order"});
    EXPECT_TRUE(SUCCEEDED(sent.result));
}

// Parts

class PrinterPart : public PrinterObject, public ::testing::WithParamInterface<PrinterGetter> {
protected:
    static ComPtr<IDispatch> PartOf(IPrinter& printer)
    {
        ComPtr<IDispatch> part;
        EXPECT_EQ(GetParam().call(printer, part.GetAddressOf()), S_OK);
        return part;
    }
};

TEST_P(PrinterPart, HasAnIdentityOfItsOwn)
{
    const auto printer = CreatePrinter();
    ComPtr<IUnknown> own;
    ComPtr<IUnknown> whole;
    EXPECT_EQ(PartOf(*printer.Get()).As(&own), S_OK);
    EXPECT_EQ(printer.As(&whole), S_OK);
    EXPECT_NE(own.Get(), whole.Get());
}

TEST_P(PrinterPart, ComesLateBound)
{
    const auto printer = BoundPrinter();
    const LateResult part = LateBound(printer.Get()).Get(GetParam().name);
    ASSERT_EQ(part.value.vt, VT_DISPATCH);
    EXPECT_EQ(part.value.pdispVal, PartOf(*printer.Get()).Get());
}

TEST_P(PrinterPart, KeepsTheModuleInUseWhenItsParentHasGone)
{
    auto printer = CreatePrinter();
    const auto part = PartOf(*printer.Get());
    printer.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterPart, ::testing::ValuesIn(printerChildren), rowName);

} // namespace
