// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/ApartmentThread.h"
#include "support/com/ClientPrinter.h"
#include "support/com/LateBound.h"
#include "support/com/ScriptHost.h"
#include "support/product/ProductDialogs.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

/// The collection through its type information, as scripts call it.
class PrintersObject : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        printers = Create<IPrinters>(__uuidof(Printers));
        late = std::make_unique<LateBound>(printers.Get());
    }

    void TearDown() override
    {
        late.reset();
        printers.Reset();
        IntegrationTest::TearDown();
    }

    static std::wstring NameIn(const _variant_t& value)
    {
        ComPtr<IPrinter> printer;
        if (value.vt != VT_DISPATCH || FAILED(value.pdispVal->QueryInterface(IID_PPV_ARGS(&printer)))) return L"none";
        return Text(*printer.Get(), &IPrinter::get_Name);
    }

    /// An argument as VBScript hands a variable over.
    static _variant_t Variable(VARIANT& value)
    {
        VARIANT reference{};
        reference.vt = VT_VARIANT | VT_BYREF;
        reference.pvarVal = &value;
        return _variant_t(reference, false);
    }

    ComPtr<IPrinters> printers;
    std::unique_ptr<LateBound> late;
};

TEST_F(PrintersObject, AnswersByName)
{
    EXPECT_EQ(late->Call("Add", {L"Label"}).result, S_OK);
    EXPECT_EQ(long(late->Get("Count").value), 1);
    EXPECT_EQ(NameIn(late->Get("Item", {1L}).value), L"Label");
    EXPECT_EQ(NameIn(late->Get("Item", {L"Label"}).value), L"Label");
    EXPECT_EQ(late->Get("_NewEnum").value.vt, VT_UNKNOWN);
    EXPECT_EQ(late->Call("Remove", {L"Label"}).result, S_OK);
    EXPECT_EQ(late->Call("RemoveAll", {}).result, S_OK);
    EXPECT_EQ(long(late->Get("Count").value), 0);
}

TEST_F(PrintersObject, TakesVariablesForTheirValues)
{
    _variant_t name(L"Label");
    _variant_t number(short{1});
    EXPECT_EQ(late->Call("Add", {Variable(name)}).result, S_OK);
    EXPECT_EQ(NameIn(late->Get("Item", {Variable(number)}).value), L"Label");
    EXPECT_EQ(NameIn(late->Get("Item", {Variable(name)}).value), L"Label");
    EXPECT_EQ(number.vt, VT_I2) << "the variable stays the caller's";
}

TEST_F(PrintersObject, GivesItsFailuresToALateBoundCaller)
{
    const LateResult missing = late->Get("Item", {L"None"});
    EXPECT_EQ(missing.result, DISP_E_EXCEPTION);
    EXPECT_EQ(missing.code, printerNotRecognized.result);
    EXPECT_EQ(missing.description, L"Printer not recognized");
    EXPECT_EQ(missing.source, L"Vorlane.Printers.1");
    EXPECT_EQ(late->Get("Item", {0L}).code, invalidArgument.result);
    EXPECT_EQ(late->Call("Add", {1L}).code, invalidArgument.result);
}

TEST_F(PrintersObject, CreatesAPrinterThatALateBoundCallerOwns)
{
    _variant_t made = late->Call("Create", {}).value;
    ASSERT_EQ(made.vt, VT_DISPATCH);
    made.pdispVal->AddRef();
    EXPECT_EQ(made.pdispVal->Release(), 1u);
    EXPECT_EQ(long(late->Get("Count").value), 0);
    EXPECT_EQ(late->Call("Create", {1L}).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(PrintersObject, CreatesWithoutAResultToo)
{
    DISPPARAMS none{};
    EXPECT_EQ(printers->Invoke(0xb, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              S_OK);
}

TEST_F(PrintersObject, GivesItsEnumeratorAsAMethodToo)
{
    DISPPARAMS none{};
    for (const int flags : {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET}) {
        _variant_t enumerator;
        EXPECT_EQ(printers->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(flags), &none,
                                   &enumerator, nullptr, nullptr),
                  S_OK)
            << flags;
        EXPECT_EQ(enumerator.vt, VT_UNKNOWN) << flags;
    }
}

TEST_F(PrintersObject, OutlivesNothingThatIsStillHeld)
{
    late->Call("Add", {L"Label"});
    ComPtr<IPrinter> item;
    ComPtr<IUnknown> enumerator;
    ASSERT_EQ(printers->get_Item(_variant_t(1L), &item), S_OK);
    ASSERT_EQ(printers->get__NewEnum(&enumerator), S_OK);
    late.reset();
    printers.Reset();
    EXPECT_EQ(Text(*item.Get(), &IPrinter::get_Name), L"Label");
    item.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE) << "the enumerator holds the printer";
}

TEST_F(PrintersObject, ShowsADialogForAnOutPointerThatIsNotTested)
{
    const ProductDialogs dialogs(Product());
    EXPECT_EQ(AnswerOf(printers->Create(nullptr)), SystemAnswer(ERROR_INVALID_ADDRESS));
    EXPECT_THAT(dialogs.Texts(), SizeIs(1));
}

/// Scripts in a single-threaded apartment, as the platform's script programs run them.
class PrintersScript : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        AddPrinterNamed(L"Second");
        _thread = std::make_unique<ApartmentThread>(COINIT_APARTMENTTHREADED);
    }

    void TearDown() override
    {
        _thread.reset();
        for (const CLSID& classId : made) GiveBackKeptClassObject(classId);
        IntegrationTest::TearDown();
    }

    /// Runs the script to its end, which is to be without an error, and gives what it told by `Host.Tell`.
    std::vector<std::wstring> Run(const wchar_t* language, const std::wstring& script)
    {
        std::vector<std::wstring> lines;
        _thread->Run([&] {
            ScriptHost host(language);
            host.AddFunction(L"Tell", [&](const auto& values) {
                lines.emplace_back(static_cast<const wchar_t*>(_bstr_t(values[0])));
                return _variant_t();
            });
            EXPECT_EQ(host.Run(script), "");
        });
        return lines;
    }

    std::vector<CLSID> made; ///< classes of which a script makes an object

private:
    std::unique_ptr<ApartmentThread> _thread;
};

TEST_F(PrintersScript, InVBScriptWalksTheMachinesPrinters)
{
    made = {__uuidof(PrintServer), __uuidof(Printers), __uuidof(PrintersFilter)};
    EXPECT_THAT(Run(L"VBScript", LR"(
        Dim server, printers, filter, printer, number
        Set server = CreateObject("Vorlane.PrintServer")
        Set printers = CreateObject("Vorlane.Printers")
        Set filter = CreateObject("Vorlane.PrintersFilter")
        filter.Network = False
        server.EnumeratePrinters printers, filter
        For Each printer In printers
            Host.Tell printer.Name
        Next
        filter.Shared = True
        printers.RemoveAll
        server.EnumeratePrinters printers, filter
        For number = 1 To printers.Count
            Host.Tell printers(number).Name
        Next
    )"),
                ElementsAre(L"Label", L"Second", L"Label"));
}

TEST_F(PrintersScript, InJScriptWalksTheMachinesPrinters)
{
    made = {__uuidof(PrintServer), __uuidof(Printers)};
    EXPECT_THAT(Run(L"JScript", LR"(
        var server = new ActiveXObject("Vorlane.PrintServer");
        var printers = new ActiveXObject("Vorlane.Printers");
        server.EnumeratePrinters(printers);
        for (var all = new Enumerator(printers); !all.atEnd(); all.moveNext()) Host.Tell(all.item().Name);
        Host.Tell(printers("Second").Name);
    )"),
                ElementsAre(L"Label", L"Second", L"Second"));
}

TEST_F(PrintersScript, CreatesAddsAndRemoves)
{
    made = {__uuidof(Printers)};
    EXPECT_THAT(Run(L"VBScript", LR"(
        Dim printers, printer, name
        Set printers = CreateObject("Vorlane.Printers")
        Set printer = printers.Create()
        printer.Initialize "Label"
        Host.Tell printer.Name
        name = "Second"
        printers.Add name
        printers.Add "Label"
        printers.Remove name
        Host.Tell printers.Count
        On Error Resume Next
        Set printer = printers.Item(name)
        Host.Tell Err.Description
    )"),
                ElementsAre(L"Label", L"1", L"Printer not recognized"));
}

TEST_F(PrintersScript, TakesAClientsPrinterOfAnotherApartment)
{
    ApartmentThread free(COINIT_MULTITHREADED);
    ComPtr<IPrinters> printers;
    IStream* stream = nullptr;
    free.Run([&] {
        printers = Create<IPrinters>(__uuidof(Printers));
        EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(__uuidof(IPrinters), printers.Get(), &stream), S_OK);
    });
    ApartmentThread client(COINIT_APARTMENTTHREADED);
    ClientPrinter own(L"Second");
    client.Run([&] {
        ComPtr<IPrinters> proxy;
        ASSERT_EQ(::CoGetInterfaceAndReleaseStream(stream, IID_PPV_ARGS(&proxy)), S_OK);
        VARIANT argument{};
        argument.vt = VT_DISPATCH;
        argument.pdispVal = &own;
        EXPECT_EQ(proxy->Add(argument), S_OK);
        ComPtr<IPrinter> item;
        EXPECT_EQ(proxy->get_Item(_variant_t(L"Second"), &item), S_OK) << "its name is read in its own apartment";
        EXPECT_EQ(item.Get(), &own);
    });
    free.Run([&] {
        IPrinter* proxy = nullptr;
        ASSERT_EQ(printers->get_Item(_variant_t(1L), &proxy), S_OK);
        EXPECT_NE(proxy, &own);
        printers.Reset();
        proxy->Release();
        EXPECT_EQ(proxy->Release(), 0u) << "the one that was kept for good";
    });
}

} // namespace
