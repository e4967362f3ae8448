// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Getters.h"

#include <utility>

namespace {

class PrinterObject : public IntegrationTest {
protected:
    std::vector<BYTE> buffer;
};

// Creation and binding

TEST_F(PrinterObject, IsMadeWithoutAWordToTheSpooler)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterObject, IsBoundWithOneOpeningForAllItsParts)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(::SpoolerOpenHandles(printerName), 1u);
}

TEST_F(PrinterObject, UnknownNameFailsAndLeavesItUnbound)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), L"No such printer")), couldNotOpenPrinter);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
}

TEST_F(PrinterObject, GoodNameBindsItBehindAFailure)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
}

TEST_F(PrinterObject, FailureOfANewNameUnbindsIt)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), L"No such printer")), couldNotOpenPrinter);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
}

TEST_F(PrinterObject, FailureOfANewNameLeavesItsPartsWithTheOldPrinter)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    const auto printer = BoundPrinter();
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Paper Out");
}

TEST_F(PrinterObject, IsBoundAgainToItsOldNameBehindAFailureOfANewOne)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(PrinterObject, SameNameBindsItAgainWithoutAnotherOpening)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrinterObject, SameNameInOtherLettersKeepsTheNameOfTheFirstOpening)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Initialize(*printer.Get(), L"LABEL"), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrinterObject, NameIsTheOneGivenAndNotTheSpoolersSpelling)
{
    const auto printer = BoundPrinter(L"lAbEl");
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"lAbEl");
}

TEST_F(PrinterObject, NewNameBindsItAndItsPartsToTheOtherPrinter)
{
    AddPrinterNamed(L"Other");
    ::SpoolerSetPrinterStatus(L"Other", PRINTER_STATUS_DOOR_OPEN);
    const auto printer = BoundPrinter();
    const auto status = StatusOf(*printer.Get());
    EXPECT_EQ(Initialize(*printer.Get(), L"Other"), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Other");
    EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Door Open");
}

TEST_F(PrinterObject, TwoNamesThatDifferInLetterCaseOnlyShareOneHandle)
{
    const auto first = BoundPrinter(L"Label");
    const auto second = BoundPrinter(L"lABEL");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(::SpoolerOpenHandles(nullptr), 1u);
    EXPECT_EQ(Text(*second.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(PrinterObject, LettersBeyondTheAlphabetMakeTwoPrintersOfTwoCases)
{
    AddPrinterNamed(L"\u00C4nderung");
    const auto first = BoundPrinter(L"\u00C4nderung");
    const auto second = BoundPrinter(L"\u00E4nderung");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 2u);
    EXPECT_EQ(Text(*second.Get(), &IPrinter::get_Name), L"\u00E4nderung");
}

TEST_F(PrinterObject, OpensAnewWhenTheLastObjectOfThePrinterHasGone)
{
    BoundPrinter();
    BoundPrinter();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 2u);
    EXPECT_EQ(::SpoolerOpenHandles(printerName), 2u); // each opening leaves its handle behind
}

// Properties

struct TextProperty {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IPrinter::*get)(BSTR*);
    const wchar_t* text;

    friend std::ostream& operator<<(std::ostream& stream, const TextProperty& row) { return stream << row.name; }
};

constexpr TextProperty textProperties[] = {
    {"Name",       &IPrinter::get_Name,       L"Label"          },
    {"ServerName", &IPrinter::get_ServerName, L"\\\\STORE"      },
    {"ShareName",  &IPrinter::get_ShareName,  L"LABELS"         },
    {"PortName",   &IPrinter::get_PortName,   L"LPT1:"          },
    {"ModelName",  &IPrinter::get_ModelName,  L"Label Driver"   },
    {"Comment",    &IPrinter::get_Comment,    L"Shipping labels"},
    {"Location",   &IPrinter::get_Location,   L"Gate 7"         },
};

template <class Row>
std::string RowName(const ::testing::TestParamInfo<Row>& row)
{
    return row.param.name;
}

class PrinterText : public PrinterObject, public ::testing::WithParamInterface<TextProperty> {};

TEST_P(PrinterText, ComesFromTheSpooler)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Text(*printer.Get(), GetParam().get), GetParam().text);
}

TEST_P(PrinterText, ComesLateBound)
{
    const auto printer = BoundPrinter();
    const LateResult read = LateBound(printer.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, S_OK);
    EXPECT_EQ(read.value, _variant_t(GetParam().text));
}

TEST_P(PrinterText, FailsUnbound)
{
    const auto printer = CreatePrinter();
    OwnedBstr text;
    EXPECT_EQ(AnswerOf((printer.Get()->*GetParam().get)(text.Receive())), printerNotInitialized);
}

TEST_P(PrinterText, FailsUnboundForAScriptWithCodeAndText)
{
    const auto printer = CreatePrinter();
    const LateResult read = LateBound(printer.Get()).Get(GetParam().name);
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, printerNotInitialized.result);
    EXPECT_EQ(read.description, L"Printer object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.Printer.1");
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterText, ::testing::ValuesIn(textProperties), RowName<TextProperty>);

struct FlagProperty {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IPrinter::*get)(VARIANT_BOOL*);
    DWORD bit;

    friend std::ostream& operator<<(std::ostream& stream, const FlagProperty& row) { return stream << row.name; }
};

constexpr FlagProperty flagProperties[] = {
    {"Local",   &IPrinter::get_Local,   PRINTER_ATTRIBUTE_LOCAL  },
    {"Network", &IPrinter::get_Network, PRINTER_ATTRIBUTE_NETWORK},
    {"Shared",  &IPrinter::get_Shared,  PRINTER_ATTRIBUTE_SHARED },
};

class PrinterFlag : public PrinterObject, public ::testing::WithParamInterface<FlagProperty> {};

TEST_P(PrinterFlag, IsTrueForItsBitAlone)
{
    ::SpoolerSetPrinterAttributes(printerName, GetParam().bit);
    const auto printer = BoundPrinter();
    EXPECT_EQ(Bool(*printer.Get(), GetParam().get), VARIANT_TRUE);
}

TEST_P(PrinterFlag, IsFalseForAllOtherBits)
{
    ::SpoolerSetPrinterAttributes(printerName, ~GetParam().bit);
    const auto printer = BoundPrinter();
    EXPECT_EQ(Bool(*printer.Get(), GetParam().get), VARIANT_FALSE);
}

TEST_P(PrinterFlag, ComesLateBound)
{
    ::SpoolerSetPrinterAttributes(printerName, GetParam().bit);
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Get(GetParam().name).value, _variant_t(true));
}

TEST_P(PrinterFlag, FailsUnbound)
{
    const auto printer = CreatePrinter();
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(AnswerOf((printer.Get()->*GetParam().get)(&value)), printerNotInitialized);
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterFlag, ::testing::ValuesIn(flagProperties), RowName<FlagProperty>);

// The order of the checks

TEST_F(PrinterObject, LocationTestsItsOutPointerBeforeTheBinding)
{
    EXPECT_EQ(AnswerOf(CreatePrinter()->get_Location(nullptr)), invalidArgument);
}

TEST_F(PrinterObject, CommentTestsTheBindingBeforeItsOutPointer)
{
    EXPECT_EQ(AnswerOf(CreatePrinter()->get_Comment(nullptr)), printerNotInitialized);
}

// Setters

struct TextSetter {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IPrinter::*put)(BSTR);
    wchar_t* PRINTER_INFO_2W::*field;
    const wchar_t* value;

    friend std::ostream& operator<<(std::ostream& stream, const TextSetter& row) { return stream << row.name; }
};

constexpr TextSetter textSetters[] = {
    {"ShareName", &IPrinter::put_ShareName, &PRINTER_INFO_2W::pShareName, L"SHELF 12"                   },
    {"PortName",  &IPrinter::put_PortName,  &PRINTER_INFO_2W::pPortName,  L"LPT2:"                      },
    {"Comment",   &IPrinter::put_Comment,   &PRINTER_INFO_2W::pComment,   L"Returns \u2014 \u8FD4\u54C1"},
    {"Location",  &IPrinter::put_Location,  &PRINTER_INFO_2W::pLocation,  L"Gate 8"                     },
};

class PrinterSetter : public PrinterObject, public ::testing::WithParamInterface<TextSetter> {
protected:
    void SetUp() override
    {
        PrinterObject::SetUp();
        ::SpoolerAddPort({.name = L"LPT2:"});
    }
};

TEST_P(PrinterSetter, ChangesTheSpoolersPrinter)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf((printer.Get()->*GetParam().put)(NewBstr(GetParam().value).Get())), succeeded);
    EXPECT_STREQ(Peek(buffer).*GetParam().field, GetParam().value);
}

TEST_P(PrinterSetter, LeavesEveryOtherTextAsItWas)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ((printer.Get()->*GetParam().put)(NewBstr(GetParam().value).Get()), S_OK);
    const PRINTER_INFO_2W& now = Peek(buffer);
    for (const TextSetter& other : textSetters) {
        const bool changed = std::wstring(now.*other.field) == other.value;
        EXPECT_EQ(changed, std::string(other.name) == GetParam().name) << other.name;
    }
    EXPECT_EQ(now.DefaultPriority, 7u);
    EXPECT_EQ(now.StartTime, 60u);
    EXPECT_EQ(now.UntilTime, 120u);
}

TEST_P(PrinterSetter, ChangesItLateBound)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Put(GetParam().name, GetParam().value).result, S_OK);
    EXPECT_STREQ(Peek(buffer).*GetParam().field, GetParam().value);
}

TEST_P(PrinterSetter, FailsUnbound)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf((printer.Get()->*GetParam().put)(nullptr)), printerNotInitialized);
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterSetter, ::testing::ValuesIn(textSetters), RowName<TextSetter>);

TEST_F(PrinterObject, ChangeIsSeenThroughEveryObjectOfThePrinter)
{
    const auto writer = BoundPrinter(L"Label");
    const auto reader = BoundPrinter(L"LABEL");
    EXPECT_EQ(writer->put_Comment(NewBstr(L"Moved").Get()), S_OK);
    EXPECT_EQ(Text(*reader.Get(), &IPrinter::get_Comment), L"Moved");
}

TEST_F(PrinterObject, UnknownPortIsRefused)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_PortName(NewBstr(L"COM77:").Get())), invalidPort);
    EXPECT_STREQ(Peek(buffer).pPortName, L"LPT1:");
}

TEST_F(PrinterObject, ShareNameThatTheSpoolerRefusesIsNotValid)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"a:b").Get())), shareNameNotValid);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 1u); // it got as far as the spooler
}

TEST_F(PrinterObject, GrantedUseOnlyItReadsAndItsShareNameAndPortRefuseTheChange)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    const auto printer = BoundPrinter();
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"NEW").Get())), SystemAnswer(ERROR_ACCESS_DENIED));
    EXPECT_EQ(AnswerOf(printer->put_PortName(NewBstr(L"LPT1:").Get())), SystemAnswer(ERROR_ACCESS_DENIED));
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_FALSE)), SystemAnswer(ERROR_ACCESS_DENIED));
}

TEST_F(PrinterObject, GrantedUseOnlyItsCommentAndLocationSayYesAndChangeNothing)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_Comment(NewBstr(L"New").Get())), succeeded);
    EXPECT_EQ(AnswerOf(printer->put_Location(NewBstr(L"New").Get())), succeeded);
    EXPECT_STREQ(Peek(buffer).pComment, L"Shipping labels");
    EXPECT_STREQ(Peek(buffer).pLocation, L"Gate 7");
}

// Sharing

TEST_F(PrinterObject, EmptyShareNameTurnsSharingOff)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"").Get())), succeeded);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"");
}

TEST_F(PrinterObject, ShareNameTurnsSharingOn)
{
    AddPrinterNamed(L"Quiet");
    const auto printer = BoundPrinter(L"Quiet");
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"QUIET").Get())), succeeded);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_TRUE);
}

TEST_F(PrinterObject, SharedWithoutShareNameIsSharedUnderItsOwnName)
{
    AddPrinterNamed(L"Quiet");
    const auto printer = BoundPrinter(L"QUIET");
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_TRUE)), succeeded);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"QUIET");
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_TRUE);
}

TEST_F(PrinterObject, SharedWithAShareNameKeepsIt)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL);
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_TRUE)), succeeded);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"LABELS");
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_TRUE);
}

TEST_F(PrinterObject, NoLongerSharedKeepsItsShareName)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_FALSE)), succeeded);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"LABELS");
}

TEST_F(PrinterObject, InTheAskedStateOfSharingIsLeftAlone)
{
    const auto shared = BoundPrinter();
    EXPECT_EQ(shared->put_Shared(VARIANT_TRUE), S_OK);
    AddPrinterNamed(L"Quiet");
    const auto quiet = BoundPrinter(L"Quiet");
    EXPECT_EQ(quiet->put_Shared(VARIANT_FALSE), S_OK);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(PrinterObject, SharingFailsUnbound)
{
    EXPECT_EQ(AnswerOf(CreatePrinter()->put_Shared(VARIANT_TRUE)), printerNotInitialized);
}

class PrinterOfUnshareableName : public PrinterObject, public ::testing::WithParamInterface<const wchar_t*> {};

TEST_P(PrinterOfUnshareableName, CannotBeSharedUnderItsOwnName)
{
    AddPrinterNamed(GetParam());
    const auto printer = BoundPrinter(GetParam());
    EXPECT_EQ(AnswerOf(printer->put_Shared(VARIANT_TRUE)), shareNameNotValid);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_P(PrinterOfUnshareableName, CanBeSharedUnderAnotherName)
{
    AddPrinterNamed(GetParam());
    const auto printer = BoundPrinter(GetParam());
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(L"PLAIN").Get())), succeeded);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_TRUE);
}

INSTANTIATE_TEST_SUITE_P(Names, PrinterOfUnshareableName,
                         ::testing::Values(L"Gate 7/8", L"Labels, small", L"Gate 7/8, small"));

// Sending files

TEST_F(PrinterObject, SendsAFileAsOneRawDocumentOfOnePage)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", std::string("^XA\0^XZ\n", 8));
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(file).Get(), NewBstr(L"Order 12").Get())), succeeded);
    EXPECT_EQ(SentBytes(), std::string("^XA\0^XZ\n", 8));
    EXPECT_STREQ(StartedDocument().document, L"Order 12");
    EXPECT_STREQ(StartedDocument().datatype, L"");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartPagePrinter), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::WritePrinter), 1u);
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

TEST_F(PrinterObject, NamesADocumentWithoutJobNameAfterItsFile)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    const auto printer = BoundPrinter();
    EXPECT_EQ(printer->SendFile(NewBstr(file).Get(), NewBstr(L"").Get()), S_OK);
    EXPECT_STREQ(StartedDocument().document, L"label.lbl");
}

TEST_F(PrinterObject, KeepsAJobNameThatLooksLikeAPath)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    const auto printer = BoundPrinter();
    EXPECT_EQ(printer->SendFile(NewBstr(file).Get(), NewBstr(L"C:\\a\\b.lbl").Get()), S_OK);
    EXPECT_STREQ(StartedDocument().document, L"C:\\a\\b.lbl");
}

TEST_F(PrinterObject, SaysFalseAndNoErrorForAMissingFile)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(L"C:\\no such file.lbl").Get(), NewBstr(L"Order").Get())), saysFalse);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 0u);
}

TEST_F(PrinterObject, RaisesNoErrorInAScriptForAMissingFile)
{
    const auto printer = BoundPrinter();
    const LateResult sent = LateBound(printer.Get()).Call("SendFile", {L"C:\\no such file.lbl", L"Order"});
    EXPECT_TRUE(SUCCEEDED(sent.result));
}

TEST_F(PrinterObject, SendsNoFileUnbound)
{
    EXPECT_EQ(AnswerOf(CreatePrinter()->SendFile(nullptr, nullptr)), printerNotInitialized);
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

TEST_P(PrinterPart, IsThereBeforeThePrinterIsBound)
{
    const auto printer = CreatePrinter();
    EXPECT_NE(PartOf(*printer.Get()).Get(), nullptr);
}

TEST_P(PrinterPart, IsTheSameObjectEachTime)
{
    const auto printer = CreatePrinter();
    const auto unbound = PartOf(*printer.Get());
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    EXPECT_EQ(PartOf(*printer.Get()).Get(), unbound.Get());
}

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

TEST_P(PrinterPart, KeepsThePrinterOpenWhenItsParentHasGone)
{
    auto printer = BoundPrinter();
    auto part = PartOf(*printer.Get());
    printer.Reset();
    const auto other = BoundPrinter();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_P(PrinterPart, LetsThePrinterGoWithItsLastReference)
{
    auto printer = BoundPrinter();
    auto part = PartOf(*printer.Get());
    printer.Reset();
    part.Reset();
    const auto other = BoundPrinter();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 2u);
}

TEST_P(PrinterPart, KeepsTheModuleLoadedWhenItsParentHasGone)
{
    auto printer = CreatePrinter();
    const auto part = PartOf(*printer.Get());
    printer.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
}

INSTANTIATE_TEST_SUITE_P(Each, PrinterPart, ::testing::ValuesIn(printerChildren), RowName<PrinterGetter>);

TEST_F(PrinterObject, StatusBeforeTheBindingAnswersThatItIsNotInitialized)
{
    const auto printer = CreatePrinter();
    OwnedBstr text;
    EXPECT_EQ(AnswerOf(StatusOf(*printer.Get())->get_Text(text.Receive())), statusNotInitialized);
}

TEST_F(PrinterObject, StatusTakenBeforeTheBindingIsBoundWithThePrinter)
{
    const auto printer = CreatePrinter();
    const auto status = StatusOf(*printer.Get());
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Ready");
}

TEST_F(PrinterObject, StatusGoesOnWorkingWhenThePrinterHasGone)
{
    auto printer = BoundPrinter();
    const auto status = StatusOf(*printer.Get());
    printer.Reset();
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_JAM);
    EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Paper Jam");
}

// Classes that the library marks not creatable

struct HiddenClass {
    const char* name;
    const CLSID* classId;
    const IID* iid;

    friend std::ostream& operator<<(std::ostream& stream, const HiddenClass& row) { return stream << row.name; }
};

const HiddenClass hiddenClasses[] = {
    {"PrinterStatus",        &__uuidof(PrinterStatus),        &__uuidof(IPrinterStatus)       },
    {"PrintQueue",           &__uuidof(PrintQueue),           &__uuidof(IPrintQueue)          },
    {"PrinterConfiguration", &__uuidof(PrinterConfiguration), &__uuidof(IPrinterConfiguration)},
    {"QueryResponse",        &__uuidof(QueryResponse),        &__uuidof(IQueryResponse)       },
    {"PrinterPort",          &__uuidof(PrinterPort),          &__uuidof(IPrinterPort)         },
    {"PrinterCapabilities",  &__uuidof(PrinterCapabilities),  &__uuidof(IPrinterCapabilities) },
};

class ClassMarkedNotCreatable : public PrinterObject, public ::testing::WithParamInterface<HiddenClass> {};

TEST_P(ClassMarkedNotCreatable, IsMadeByItsClassIdentifier)
{
    ComPtr<IUnknown> object;
    EXPECT_EQ(Product().CreateInstance(*GetParam().classId, *GetParam().iid, Address(object)), S_OK);
    EXPECT_NE(object.Get(), nullptr);
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Each, ClassMarkedNotCreatable, ::testing::ValuesIn(hiddenClasses), RowName<HiddenClass>);

TEST_F(PrinterObject, StatusMadeByItsClassIdentifierIsUnbound)
{
    const auto status = Create<IPrinterStatus>(__uuidof(PrinterStatus));
    OwnedBstr text;
    EXPECT_EQ(AnswerOf(status->get_Text(text.Receive())), statusNotInitialized);
}

} // namespace
