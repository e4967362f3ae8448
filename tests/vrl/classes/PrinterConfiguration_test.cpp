// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterConfiguration.h"

#include "support/com/Answer.h"
#include "support/driver/AdvancedPrinterTest.h"
#include "support/FaultOf.h"
#include "support/ForeignThrow.h"
#include "support/ImportHook.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/PrinterConfigurationFilter.h"
#include "vrl/classes/QueryCommand.h"
#include "vrl/core/XPrinterPool.h"

#include <comutil.h>

namespace {

using Microsoft::WRL::ComPtr;
using Names = std::vector<std::string>;

class PrinterConfigurationTest : public AdvancedPrinterTest {
protected:
    void SetUp() override
    {
        AdvancedPrinterTest::SetUp();
        configuration = ConfigurationOf(printerName);
        ASSERT_EQ(CreateInstance(filter.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        configuration.Reset();
        filter.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        AdvancedPrinterTest::TearDown();
    }

    static ComPtr<IPrinterConfiguration> ConfigurationOf(const wchar_t* name)
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        EXPECT_EQ(printer->Initialize(ToBstr(OString(name)).Get()), S_OK);
        ComPtr<IPrinterConfiguration> configuration;
        EXPECT_EQ(printer->get_Configuration(&configuration), S_OK);
        return configuration;
    }

    /// The mask that a filter argument makes.
    DWORD MaskOf(const VARIANT& argument)
    {
        EXPECT_EQ(configuration->ResetToDefaults(argument), S_OK);
        const std::vector<ScriptedInterface::Call> calls = interfaceModule.Calls();
        return calls.size() < 2 ? 0 : calls[calls.size() - 2].mask; // the last one saves
    }

    _variant_t FilterArgument() { return _variant_t(static_cast<IDispatch*>(filter.Get())); }

    /// What an omitted argument is for the callee.
    static _variant_t Omitted() { return _variant_t(static_cast<long>(DISP_E_PARAMNOTFOUND), VT_ERROR); }

    ComPtr<IPrinterConfiguration> configuration;
    ComPtr<PrinterConfigurationFilter> filter;
};

const OBstr& FileName()
{
    static const OBstr name = ToBstr(OString(L"C:\\sets\\\u017Bubr.set"));
    return name;
}

TEST_F(PrinterConfigurationTest, ImportGoesToTheDriverAndIsSaved)
{
    EXPECT_EQ(configuration->Import(FileName().Get(), Omitted()), S_OK);
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Settings_Import", "VRL_Settings_Save"}));
    EXPECT_EQ(interfaceModule.Calls()[1].fileName, L"C:\\sets\\\u017Bubr.set");
    EXPECT_EQ(interfaceModule.Calls()[1].mask, 0xFFFFFFFFu);
}

TEST_F(PrinterConfigurationTest, ExportGoesToTheDriverAndIsNotSaved)
{
    EXPECT_EQ(configuration->Export(FileName().Get(), Omitted()), S_OK);
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Settings_Export"}));
    EXPECT_EQ(interfaceModule.Calls()[1].fileName, L"C:\\sets\\\u017Bubr.set");
    EXPECT_EQ(interfaceModule.Calls()[1].mask, 0xFFFFFFFFu);
}

TEST_F(PrinterConfigurationTest, ResetGoesToTheDriverAndIsSaved)
{
    EXPECT_EQ(configuration->ResetToDefaults(Omitted()), S_OK);
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Settings_Reset", "VRL_Settings_Save"}));
    EXPECT_EQ(interfaceModule.Calls()[1].mask, 0xFFFFFFFFu);
}

TEST_F(PrinterConfigurationTest, FileNameGoesOutAsItStands)
{
    for (const wchar_t* const name : {L"", L"no such folder\\x", L"con", L"*?"}) {
        EXPECT_EQ(configuration->Export(ToBstr(OString(name)).Get(), Omitted()), S_OK);
        EXPECT_EQ(interfaceModule.Calls().back().fileName, name);
    }
    EXPECT_EQ(configuration->Export(nullptr, Omitted()), S_OK);
    EXPECT_EQ(interfaceModule.Calls().back().fileName, L"");
}

struct Group {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IPrinterConfigurationFilter::*get)(VARIANT_BOOL*);
    HRESULT (STDMETHODCALLTYPE IPrinterConfigurationFilter::*put)(VARIANT_BOOL);
    DWORD bit;
};

using Filter = IPrinterConfigurationFilter;
const Group groups[] = {
    {"Stocks",              &Filter::get_Stocks,              &Filter::put_Stocks,              0x001},
    {"Presets",             &Filter::get_Presets,             &Filter::put_Presets,             0x002},
    {"UtilityFonts",        &Filter::get_UtilityFonts,        &Filter::put_UtilityFonts,        0x004},
    {"FontSubstitutions",   &Filter::get_FontSubstitutions,   &Filter::put_FontSubstitutions,   0x020},
    {"DownloadedFonts",     &Filter::get_DownloadedFonts,     &Filter::put_DownloadedFonts,     0x040},
    {"OptionalFonts",       &Filter::get_OptionalFonts,       &Filter::put_OptionalFonts,       0x080},
    {"PrinterProperties",   &Filter::get_PrinterProperties,   &Filter::put_PrinterProperties,   0x100},
    {"PrintingPreferences", &Filter::get_PrintingPreferences, &Filter::put_PrintingPreferences, 0x200},
    {"NetworkSettings",     &Filter::get_NetworkSettings,     &Filter::put_NetworkSettings,     0x400},
};

TEST_F(PrinterConfigurationTest, FilterNamesGroupsByTheirBits)
{
    for (const Group& row : groups) {
        (filter.Get()->*row.put)(VARIANT_TRUE);
        EXPECT_EQ(MaskOf(FilterArgument()), row.bit) << row.name;
        (filter.Get()->*row.put)(VARIANT_FALSE);
    }
    filter->put_Stocks(VARIANT_TRUE);
    filter->put_NetworkSettings(VARIANT_TRUE);
    EXPECT_EQ(MaskOf(FilterArgument()), 0x401u);
    for (const Group& row : groups) (filter.Get()->*row.put)(VARIANT_TRUE);
    EXPECT_EQ(MaskOf(FilterArgument()), 0x7E7u);
}

TEST_F(PrinterConfigurationTest, FilterGoesWithImportAndExportToo)
{
    filter->put_Presets(VARIANT_TRUE);
    configuration->Import(FileName().Get(), FilterArgument());
    EXPECT_EQ(interfaceModule.Calls()[1].mask, 0x002u);
    configuration->Export(FileName().Get(), FilterArgument());
    EXPECT_EQ(interfaceModule.Calls().back().mask, 0x002u);
}

TEST_F(PrinterConfigurationTest, FilterThatNamesNothingMeansAllGroups)
{
    EXPECT_EQ(MaskOf(FilterArgument()), 0xFFFFFFFFu);
}

TEST_F(PrinterConfigurationTest, OnlyMinusOneCountsAsTrue)
{
    for (const VARIANT_BOOL value : {VARIANT_BOOL{1}, VARIANT_BOOL{2}, VARIANT_BOOL{0x7FFF}, VARIANT_BOOL{-2}}) {
        filter->put_Stocks(value);
        filter->put_Presets(VARIANT_TRUE);
        EXPECT_EQ(MaskOf(FilterArgument()), 0x002u) << value;
        filter->put_Presets(VARIANT_FALSE);
        EXPECT_EQ(MaskOf(FilterArgument()), 0xFFFFFFFFu) << value;
    }
}

TEST_F(PrinterConfigurationTest, AnyOtherArgumentMeansAllGroups)
{
    filter->put_Stocks(VARIANT_TRUE);
    IDispatch* dispatch = filter.Get();
    VARIANT reference{};
    reference.vt = VT_DISPATCH | VT_BYREF;
    reference.ppdispVal = &dispatch;
    VARIANT unknown{};
    unknown.vt = VT_UNKNOWN;
    unknown.punkVal = dispatch;
    for (const VARIANT& argument :
         {VARIANT(Omitted()), VARIANT(_variant_t()), VARIANT(_variant_t(1l)), reference, unknown}) {
        EXPECT_EQ(MaskOf(argument), 0xFFFFFFFFu) << argument.vt;
    }
}

TEST_F(PrinterConfigurationTest, ObjectThatIsNoFilterIsInvalid)
{
    ComPtr<QueryCommand> other;
    ASSERT_EQ(CreateInstance(other.GetAddressOf()), S_OK);
    const _variant_t noFilter(static_cast<IDispatch*>(other.Get()));
    VARIANT nothing{};
    nothing.vt = VT_DISPATCH;
    for (const VARIANT& argument : {VARIANT(noFilter), nothing}) {
        EXPECT_EQ(AnswerOf(configuration->Import(FileName().Get(), argument)), invalidArgument);
        EXPECT_EQ(AnswerOf(configuration->Export(FileName().Get(), argument)), invalidArgument);
        EXPECT_EQ(AnswerOf(configuration->ResetToDefaults(argument)), invalidArgument);
    }
    EXPECT_TRUE(interfaceModule.Calls().empty());
}

TEST_F(PrinterConfigurationTest, DriverThatCannotDoItIsSFalseWithoutAText)
{
    const _variant_t all = Omitted();
    for (const char* const without : {"VRL_Printer_Open", static_cast<const char*>(nullptr)}) {
        if (without) {
            ScriptedInterface::Install(folder.Path(L"interface.dll"), without);
        } else {
            configuration = ConfigurationOf(printerName);
            SetInterface(folder.Path(L"missing.dll"));
        }
        EXPECT_EQ(AnswerOf(configuration->Import(FileName().Get(), all)), saysFalse);
        EXPECT_EQ(AnswerOf(configuration->Export(FileName().Get(), all)), saysFalse);
        EXPECT_EQ(AnswerOf(configuration->ResetToDefaults(all)), saysFalse);
    }
}

TEST_F(PrinterConfigurationTest, PrinterWithoutADriverOfItsOwnIsSFalseWithoutAText)
{
    SpoolerPrinter plain = LabelPrinter();
    plain.printerName = L"Plain";
    plain.shareName = L"";
    plain.attributes = PRINTER_ATTRIBUTE_LOCAL;
    AddPrinter(plain);
    configuration = ConfigurationOf(L"Plain");
    EXPECT_EQ(AnswerOf(configuration->Import(FileName().Get(), Omitted())), saysFalse);
    EXPECT_EQ(AnswerOf(configuration->Export(FileName().Get(), Omitted())), saysFalse);
    EXPECT_EQ(AnswerOf(configuration->ResetToDefaults(Omitted())), saysFalse);
}

TEST_F(PrinterConfigurationTest, UnboundObjectComesBeforeItsArguments)
{
    ComPtr<PrinterConfiguration> unbound;
    ASSERT_EQ(CreateInstance(unbound.GetAddressOf()), S_OK);
    VARIANT nothing{};
    nothing.vt = VT_DISPATCH;
    EXPECT_EQ(AnswerOf(unbound->Import(nullptr, nothing)), configurationNotInitialized);
    EXPECT_EQ(AnswerOf(unbound->Export(nullptr, nothing)), configurationNotInitialized);
    EXPECT_EQ(AnswerOf(unbound->ResetToDefaults(nothing)), configurationNotInitialized);
}

TEST_F(PrinterConfigurationTest, CrashOfTheDriverFailsTheMemberAndTheNextWorks)
{
    const ImportHook<decltype(::MessageBoxA)> noDialog("MessageBoxA", [](HWND, LPCSTR, LPCSTR, UINT) { return 0; });
    interfaceModule.step = [](const ScriptedInterface::Call& call) {
        if (call.name == "VRL_Settings_Reset") WriteToNowhere();
        if (call.name == "VRL_Settings_Export") ThrowAsForeignCode();
    };
    EXPECT_EQ(AnswerOf(configuration->ResetToDefaults(Omitted())).result, invalidAddress.result);
    EXPECT_EQ(AnswerOf(configuration->Export(FileName().Get(), Omitted())), unspecifiedError);
    EXPECT_EQ(configuration->Import(FileName().Get(), Omitted()), S_OK);
}

TEST_F(PrinterConfigurationTest, DriverIsClosedWithTheLastOfThePrinter)
{
    configuration->ResetToDefaults(Omitted());
    EXPECT_TRUE(interfaceModule.IsLoaded());
    configuration.Reset();
    EXPECT_EQ(interfaceModule.CallNames().back(), "VRL_Printer_Close");
    EXPECT_FALSE(interfaceModule.IsLoaded());
}

// ---- the filter ----

TEST_F(PrinterConfigurationTest, FilterKeepsEachValueAsItIs)
{
    for (const Group& row : groups) {
        VARIANT_BOOL value = 99;
        EXPECT_EQ((filter.Get()->*row.get)(&value), S_OK);
        EXPECT_EQ(value, 0) << row.name;
        for (const VARIANT_BOOL kept : {VARIANT_BOOL{-1}, VARIANT_BOOL{1}, VARIANT_BOOL{0x1234}, VARIANT_BOOL{0}}) {
            EXPECT_EQ((filter.Get()->*row.put)(kept), S_OK);
            EXPECT_EQ((filter.Get()->*row.get)(&value), S_OK);
            EXPECT_EQ(value, kept) << row.name;
        }
    }
}

TEST_F(PrinterConfigurationTest, NullOutPointerOfTheFilterIsRefusedWithoutAText)
{
    for (const Group& row : groups) EXPECT_EQ(AnswerOf((filter.Get()->*row.get)(nullptr)), (Answer{E_POINTER, ""}));
}

} // namespace
