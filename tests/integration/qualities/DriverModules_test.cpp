// SPDX-License-Identifier: MIT
#include "support/BackgroundCall.h"
#include "support/driver/ScriptedInterface.h"
#include "support/driver/ScriptedMonitor.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductDialogs.h"
#include "support/Raising.h"
#include "support/TemporaryDirectory.h"

#include <comutil.h>

namespace {

using namespace std::string_view_literals;

/// The product over a printer whose driver's modules are the test's own, and not always well.
class DriverModules : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        ScriptedMonitor::Install(folder.Path(L"kvnetmon.d64"));
        ScriptedInterface::Install(folder.Path(L"interface.dll"));
        SpoolerDriver driver;
        const std::wstring driverPath = folder.Path(L"label.dll");
        driver.name = L"Label Driver";
        driver.driverPath = driverPath.c_str();
        ASSERT_EQ(::SpoolerAddDriver(driver), 0u);
        ASSERT_EQ(
            ::SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", folder.Path(L"interface.dll")),
            0u);
        ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI);
        printer = BoundPrinter();
    }

    void TearDown() override
    {
        printer.Reset();
        EXPECT_EQ(monitor.LivingResponses(), 0u) << "an answer was not freed";
        EXPECT_FALSE(monitor.IsLoaded()) << "the monitor was left loaded";
        EXPECT_FALSE(interfaceModule.IsLoaded()) << "the interface module was left loaded";
        IntegrationTest::TearDown();
    }

    /// The answer of the status text, which the printer's lock is held for.
    Answer StatusText()
    {
        OwnedBstr text;
        const auto status = StatusOf(*printer.Get());
        return AnswerOf(status->get_Text(text.Receive()));
    }

    Answer Reset()
    {
        ComPtr<IPrinterConfiguration> configuration;
        EXPECT_EQ(printer->get_Configuration(&configuration), S_OK);
        return AnswerOf(configuration->ResetToDefaults(_variant_t()));
    }

    /// Lets the monitor do something in the middle of every request.
    void LetMonitor(void (*slip)())
    {
        monitor.sendRequest = [this, slip](const wchar_t* name, const char* request, void** response) {
            const DWORD result = monitor.PlainSendRequest(name, request, response);
            slip();
            return result;
        };
    }

    TemporaryDirectory folder;
    ScriptedMonitor monitor;
    ScriptedInterface interfaceModule;
    ProductDialogs dialogs{Product()};
    ComPtr<IPrinter> printer;
};

TEST_F(DriverModules, CrashOfTheMonitorFailsTheMemberAndKeepsNoLock)
{
    LetMonitor(WriteToNowhere);
    EXPECT_EQ(StatusText(), invalidAddress);
    EXPECT_EQ(dialogs.Texts().size(), 1u) << "an internal failure is shown";

    monitor.AnswerWith("1;Ready\0"sv);
    LetMonitor([] {});
    BackgroundCall other([this] { EXPECT_EQ(StatusText(), succeeded); });
    EXPECT_TRUE(other.Ends());
}

TEST_F(DriverModules, ExceptionOfAnyKindCostsTheMemberAndKeepsNoLock)
{
    for (const RaisedKind& kind : raisedKinds) {
        LetMonitor(kind.raise);
        interfaceModule.step = [&](const ScriptedInterface::Call&) { kind.raise(); };
        EXPECT_TRUE(FAILED(StatusText().result)) << kind.name;
        EXPECT_TRUE(FAILED(Reset().result)) << kind.name;

        LetMonitor([] {});
        interfaceModule.step = [](const ScriptedInterface::Call&) {};
        BackgroundCall other([&] {
            EXPECT_EQ(StatusText(), succeeded) << kind.name;
            EXPECT_EQ(Reset(), succeeded) << kind.name;
        });
        EXPECT_TRUE(other.Ends()) << kind.name;
        printer = BoundPrinter(); // whose driver opens again
    }
}

TEST_F(DriverModules, ForeignExceptionOfTheMonitorIsUnspecifiedAndNotShown)
{
    LetMonitor(ThrowAsForeignCode);
    EXPECT_EQ(StatusText(), unspecifiedError);
    EXPECT_TRUE(dialogs.Texts().empty());
    LetMonitor([] {});
    EXPECT_EQ(StatusText(), succeeded);
}

TEST_F(DriverModules, MonitorThatWritesPastTheAnswerDoesNoDamage)
{
    monitor.AnswerWith("1;Ready\0"sv);
    monitor.data = [this](void* response, BYTE* buffer) {
        monitor.PlainData(response, buffer);
        buffer[8] = 'x';
    };
    EXPECT_EQ(StatusText(), invalidAddress);
}

TEST_F(DriverModules, MonitorThatReleasesItselfIsThereUntilItHasAnswered)
{
    static std::wstring path;
    path = folder.Path(L"kvnetmon.d64");
    monitor.AnswerWith("1;Ready\0"sv);
    LetMonitor([] { ::FreeLibrary(::GetModuleHandleW(path.c_str())); });
    EXPECT_EQ(StatusText(), succeeded);
}

TEST_F(DriverModules, LateAnswerHoldsUpOnlyItsOwnCaller)
{
    const OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    monitor.AnswerWith("1;00000020\0"sv);
    monitor.sendRequest = [&](const wchar_t* name, const char* request, void** response) {
        ::SetEvent(entered.Get());
        ::WaitForSingleObject(release.Get(), 60000);
        return monitor.PlainSendRequest(name, request, response);
    };
    BackgroundCall late(
        [this] { EXPECT_EQ(Bool(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_RibbonOut), -1); });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), 60000), WAIT_OBJECT_0);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), L"Gate 7");
    EXPECT_EQ(Bool(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Paused), 0);
    ::SetEvent(release.Get());
    EXPECT_TRUE(late.Ends());
}

TEST_F(DriverModules, LateDriverHoldsUpOnlyItsOwnCaller)
{
    const OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    interfaceModule.step = [&](const ScriptedInterface::Call& call) {
        if (call.name != "VRL_Settings_Reset") return;
        ::SetEvent(entered.Get());
        ::WaitForSingleObject(release.Get(), 60000);
    };
    BackgroundCall late([this] { EXPECT_EQ(Reset(), succeeded); });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), 60000), WAIT_OBJECT_0);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), L"Gate 7");
    EXPECT_EQ(StatusText(), succeeded);
    ComPtr<IPrinterConfiguration> configuration;
    EXPECT_EQ(printer->get_Configuration(&configuration), S_OK);
    EXPECT_EQ(configuration->Export(NewBstr(L"out.set").Get(), _variant_t()), S_OK);
    ::SetEvent(release.Get());
    EXPECT_TRUE(late.Ends());
}

TEST_F(DriverModules, DriverThatWritesPastTheFileNameDoesNoDamage)
{
    interfaceModule.step = [this](const ScriptedInterface::Call& call) {
        if (!call.fileName.empty()) interfaceModule.givenFileName[call.fileName.size() + 1] = L'x';
    };
    ComPtr<IPrinterConfiguration> configuration;
    EXPECT_EQ(printer->get_Configuration(&configuration), S_OK);
    EXPECT_EQ(AnswerOf(configuration->Import(NewBstr(L"in.set").Get(), _variant_t())), invalidAddress);
    EXPECT_EQ(Reset(), succeeded);
}

TEST_F(DriverModules, CrashOfTheDriverFailsTheMemberAndTheNextWorks)
{
    interfaceModule.step = [](const ScriptedInterface::Call& call) {
        if (call.name == "VRL_Settings_Reset") WriteToNowhere();
    };
    EXPECT_EQ(Reset(), invalidAddress);
    interfaceModule.step = [](const ScriptedInterface::Call&) {};
    EXPECT_EQ(Reset(), succeeded);
}

TEST_F(DriverModules, CrashWhileTheDriverClosesIsDropped)
{
    EXPECT_EQ(Reset(), succeeded);
    interfaceModule.step = [](const ScriptedInterface::Call&) { WriteToNowhere(); };
    printer.Reset();
    EXPECT_EQ(interfaceModule.CallNames().back(), "VRL_Printer_Close");
    printer = BoundPrinter(); // the pool's lock was not kept
}

TEST_F(DriverModules, MissingDriverInformationIsUnspecifiedForEveryRequest)
{
    ::SpoolerRemoveDriver(L"Label Driver");
    EXPECT_EQ(StatusText(), unspecifiedError);
    VARIANT_BOOL value = 99;
    const auto status = StatusOf(*printer.Get());
    EXPECT_EQ(AnswerOf(status->get_RibbonOut(&value)), unspecifiedError);
    EXPECT_EQ(AnswerOf(status->get_Error(&value)), unspecifiedError);
    EXPECT_EQ(AnswerOf(status->get_PaperOut(&value)), succeeded) << "a condition of the spooler needs no request";
    ComPtr<IPrinterPort> port;
    ASSERT_EQ(printer->get_Port(&port), S_OK);
    EXPECT_EQ(AnswerOf(port->get_Disconnected(&value)), unspecifiedError);
    EXPECT_EQ(AnswerOf(port->WaitForQuery(1)), unspecifiedError);
}

} // namespace
