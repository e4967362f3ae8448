// SPDX-License-Identifier: MIT
#include "vrl/driver/AdvancedDriverInterface.h"

#include "foundation/threads/TickCount.h"
#include "support/driver/AdvancedPrinterTest.h"
#include "support/ImportHook.h"
#include "support/Raising.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

namespace {

using namespace std::string_view_literals;
using Names = std::vector<std::string>;

constexpr DWORD testLimitMs = 60000;

class AdvancedDriverInterfaceTest : public AdvancedPrinterTest {
protected:
    static inline std::atomic<DWORD> tick;

    void SetUp() override
    {
        AdvancedPrinterTest::SetUp();
        tick = 50000;
        SetTickCountSource([] { return tick.load(); });
        Attach();
    }

    void TearDown() override
    {
        driver.reset();
        printer.Reset();
        SetTickCountSource(nullptr);
        AdvancedPrinterTest::TearDown();
    }

    void Attach()
    {
        printer.Reset(OpenPrinterWithAccess(printerName, PRINTER_ALL_ACCESS));
        ASSERT_TRUE(printer);
        driver = std::make_unique<AdvancedDriverInterface>();
        driver->Attach(OString(printerName), printer.Get());
        ::SpoolerClearLog();
    }

    OPrinterHandle printer;
    std::unique_ptr<AdvancedDriverInterface> driver;
};

// ---- status ----

TEST_F(AdvancedDriverInterfaceTest, StatusTextIsTheDevices)
{
    monitor.AnswerWith("1;Paper Out\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Paper Out");
    EXPECT_EQ(monitor.OnlyRequest(),
              "<state name='Monitoring Supported' action='get' />;<state name='Status' action='get' />&#00;");
    EXPECT_EQ(monitor.Requests()[0].printer, L"Label");
    EXPECT_TRUE(monitor.Requests()[0].wantsAnswer);
}

TEST_F(AdvancedDriverInterfaceTest, StatusTextOfTheDeviceMayBeEmpty)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAUSED);
    monitor.AnswerWith("1;\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "");
}

TEST_F(AdvancedDriverInterfaceTest, StatusTextOfTheDeviceIsInTheCodePageOfTheProcess)
{
    monitor.AnswerWith("1;Papier \xE4\0"sv);
    EXPECT_EQ(driver->GetStatusText(), OString("Papier \xE4"));
}

TEST_F(AdvancedDriverInterfaceTest, SeverityIsTheDevices)
{
    static constexpr struct {
        std::string_view answer;
        int severity;
    } rows[] = {
        {"1;2\0"sv, 2 },
        {"1;3"sv,   3 },
        {"1;0"sv,   0 },
        {"1;x"sv,   0 },
        {"1;-7"sv,  -7},
        {"1;"sv,    0 },
    };
    for (const auto& row : rows) {
        monitor.AnswerWith(row.answer);
        EXPECT_EQ(driver->GetStatusSeverity(), row.severity) << row.answer;
    }
    EXPECT_EQ(monitor.Requests()[0].text,
              "<state name='Monitoring Supported' action='get' />;<state name='Status Severity' action='get' />&#00;");
}

TEST_F(AdvancedDriverInterfaceTest, ExtendedWordIsTheDevices)
{
    for (const std::string_view answer : {"1;0000000F"sv, "1;0000000f\0"sv}) {
        monitor.AnswerWith(answer);
        EXPECT_EQ(driver->GetStatusFlags2(), 15u);
    }
    EXPECT_EQ(monitor.Requests()[0].text,
              "<state name='Monitoring Supported' action='get' />;<state name='Status Flags 2' action='get' />&#00;");
}

/// Ways in which the device has no answer.
struct NoAnswer {
    const char* name;
    void (*arrange)(ScriptedMonitor& monitor);
};

const NoAnswer noAnswers[] = {
    {"empty",                 [](ScriptedMonitor& monitor) { monitor.AnswerWith(""); }                 },
    {"one byte",              [](ScriptedMonitor& monitor) { monitor.AnswerWith("1"); }                },
    {"not monitored",         [](ScriptedMonitor& monitor) { monitor.AnswerWith("0;Ready\0"sv); }      },
    {"failed with an answer", [](ScriptedMonitor& monitor) { monitor.result = 0; }                     },
    {"no handle",             [](ScriptedMonitor& monitor) { monitor.givesHandle = false; }            },
    {"negative size",         [](ScriptedMonitor& monitor) { monitor.size = [](void*) { return -1; }; }},
};

TEST_F(AdvancedDriverInterfaceTest, WithoutAnAnswerTheSpoolersCounts)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_TONER_LOW);
    for (const NoAnswer& row : noAnswers) {
        ScriptedMonitor failing;
        failing.AnswerWith("1;00000001\0"sv);
        row.arrange(failing);
        EXPECT_EQ(driver->GetStatusText(), "Toner Low") << row.name;
        EXPECT_EQ(driver->GetStatusSeverity(), 3) << row.name;
        EXPECT_EQ(driver->GetStatusFlags2(), 0u) << row.name;
        EXPECT_FALSE(driver->TestStatusFlag(201)) << row.name;
        EXPECT_EQ(failing.Requests().size(), 4u) << row.name << ": a request was repeated";
    }
}

TEST_F(AdvancedDriverInterfaceTest, WithoutTheMonitorTheSpoolersAnswerCounts)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_TONER_LOW);
    ::DeleteFileW(folder.Path(L"kvnetmon.d64").c_str());
    EXPECT_EQ(driver->GetStatusText(), "Toner Low");
    EXPECT_EQ(driver->GetStatusSeverity(), 3);
    EXPECT_EQ(driver->GetStatusFlags2(), 0u);
}

TEST_F(AdvancedDriverInterfaceTest, FirstJobsTextIsPartOfTheSpoolersAnswer)
{
    SpoolerJob job;
    job.statusText = L"Waiting for labels";
    AddJob(job);
    monitor.AnswerWith("0;Ready\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Waiting for labels");
}

TEST_F(AdvancedDriverInterfaceTest, DeviceIsNotAskedForTheStateOfAOneWayPrinter)
{
    SetBidirectional(false);
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_TONER_LOW);
    monitor.AnswerWith("1;00000001\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Toner Low");
    EXPECT_EQ(driver->GetStatusSeverity(), 3);
    EXPECT_EQ(driver->GetStatusFlags2(), 0u);
    EXPECT_TRUE(monitor.Requests().empty());
    EXPECT_EQ(monitor.Loads(), 0);
}

// ---- conditions ----

TEST_F(AdvancedDriverInterfaceTest, ExtendedConditionsAreBitsOfTheExtendedWord)
{
    for (int condition = 201; condition <= 211; ++condition) {
        const unsigned long bit = 1ul << (condition - 201);
        monitor.AnswerWith("1;" + std::string(OString::HexOf(DWORD{bit}).nstring()));
        EXPECT_TRUE(driver->TestStatusFlag(condition)) << condition;
        monitor.AnswerWith("1;" + std::string(OString::HexOf(DWORD{~bit}).nstring()));
        EXPECT_FALSE(driver->TestStatusFlag(condition)) << condition;
    }
}

TEST_F(AdvancedDriverInterfaceTest, ConditionsOutsideTheTableAreFalse)
{
    monitor.AnswerWith("1;FFFFFFFF");
    ::SpoolerSetPrinterStatus(printerName, 0xFFFFFFFF);
    for (const int condition : {-1, 0, 99, 122, 200, 212, 1000}) EXPECT_FALSE(driver->TestStatusFlag(condition));
}

TEST_F(AdvancedDriverInterfaceTest, ConditionsOfTheSpoolerNeverGoToTheMonitor)
{
    monitor.AnswerWith("1;FFFFFFFF");
    for (int condition = 100; condition <= 121; ++condition) EXPECT_FALSE(driver->TestStatusFlag(condition));
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    EXPECT_TRUE(driver->TestStatusFlag(102));
    EXPECT_TRUE(monitor.Requests().empty());
}

/// A label printer whose extended word is known.
class DriverWithFlags : public AdvancedDriverInterface {
public:
    unsigned long GetStatusFlags2() override { return 0x20; }
};

TEST(AdvancedDriverInterface, ExtendedWordIsAskedForThroughTheVirtualCall)
{
    DriverWithFlags driver;
    EXPECT_TRUE(driver.TestStatusFlag(206));
    EXPECT_FALSE(driver.TestStatusFlag(205));
}

// ---- jobs ----

TEST_F(AdvancedDriverInterfaceTest, JobStatusTextIsTheWholeAnswerUpToItsNul)
{
    static constexpr struct {
        std::string_view answer;
        const char* text;
    } rows[] = {
        {"<job id=\"7\" status=\"completed\" />\0"sv, "<job id=\"7\" status=\"completed\" />"},
        {"status=\"verified\""sv,                     "status=\"verified\""                  },
        {"0;x"sv,                                     "0;x"                                  },
        {"a\0b\0"sv,                                  "a"                                    },
        {"\0"sv,                                      ""                                     },
        {""sv,                                        ""                                     },
    };
    for (const auto& row : rows) {
        monitor.AnswerWith(row.answer);
        EXPECT_EQ(driver->GetJobStatusText(7), row.text) << row.answer;
    }
    EXPECT_EQ(monitor.Requests()[0].text, "<job id='7' action='get' jobIdentity='true' jobStatus='true' />&#00;");
}

TEST_F(AdvancedDriverInterfaceTest, JobStatusTextIsEmptyIfTheRequestFails)
{
    monitor.AnswerWith("status=\"completed\"\0"sv);
    monitor.result = 0;
    EXPECT_TRUE(driver->GetJobStatusText(7).IsEmpty());
}

TEST_F(AdvancedDriverInterfaceTest, JobStatusIsAskedForOfAOneWayPrinterToo)
{
    SetBidirectional(false);
    monitor.AnswerWith("status=\"failed\"\0"sv);
    EXPECT_EQ(driver->GetJobStatusText(0x80000000), "status=\"failed\"");
    EXPECT_EQ(monitor.OnlyRequest(), "<job id='-2147483648' action='get' jobIdentity='true' jobStatus='true' />&#00;");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinter), 0u);
}

// ---- the port ----

TEST_F(AdvancedDriverInterfaceTest, ConditionsOfThePortAreTheMonitors)
{
    SetBidirectional(false);
    static constexpr struct {
        std::string_view answer;
        bool holds;
    } rows[] = {
        {"1;"sv, true },
        {"1"sv,  true },
        {"x"sv,  true },
        {"\0"sv, true },
        {"0;"sv, false},
        {"0"sv,  false},
        {";"sv,  false},
        {""sv,   false},
    };
    for (const auto& row : rows) {
        monitor.AnswerWith(row.answer);
        EXPECT_EQ(driver->IsPortBidirectional(), row.holds) << row.answer;
        EXPECT_EQ(driver->IsPortDisconnected(), row.holds) << row.answer;
    }
    EXPECT_EQ(monitor.Requests()[0].text, "<port action='get' name='bidirectional' />;");
    EXPECT_EQ(monitor.Requests()[1].text, "<port action='get' name='disconnected' />;");
}

TEST_F(AdvancedDriverInterfaceTest, ConditionsOfThePortAreFalseIfTheRequestFails)
{
    monitor.AnswerWith("1;");
    monitor.result = 0;
    EXPECT_FALSE(driver->IsPortBidirectional());
    EXPECT_FALSE(driver->IsPortDisconnected());
}

// ---- queries ----

struct Payload : OTypedArray<unsigned char> {
    explicit Payload(std::string_view text)
    {
        for (const char byte : text) Add(static_cast<unsigned char>(byte));
    }
};

TEST_F(AdvancedDriverInterfaceTest, QueryIsPostedWithItsKeyTimeoutsAndPayload)
{
    EXPECT_TRUE(driver->StartDeviceQuery(Payload("a<\0b"sv), OString("WS01.00.1"), 5000, 0, -1));
    EXPECT_EQ(monitor.OnlyRequest(), "<query id='WS01.00.1' name='VRL Query'><request id='1' name='VRL Request'"
                                     " sendTimeout='5000'>a&lt;&#0;b</request></query>");
    EXPECT_FALSE(monitor.Requests()[0].wantsAnswer);
}

TEST_F(AdvancedDriverInterfaceTest, QueryWithoutPayloadIsPosted)
{
    EXPECT_TRUE(driver->StartDeviceQuery(Payload(""), OString("K"), 1, 2, 3));
    EXPECT_EQ(monitor.OnlyRequest(), "<query id='K' name='VRL Query'><request id='1' name='VRL Request' sendTimeout='1'"
                                     " receiveStartTimeout='2' receiveIntervalTimeout='3'></request></query>");
}

TEST_F(AdvancedDriverInterfaceTest, QueryThatTheMonitorRefusesIsFalse)
{
    monitor.result = 0;
    EXPECT_FALSE(driver->StartDeviceQuery(Payload("x"), OString("K"), 0, 0, 0));
}

TEST_F(AdvancedDriverInterfaceTest, QueryStatusIsTheNumberOfTheAnswer)
{
    static constexpr struct {
        std::string_view answer;
        int status;
    } rows[] = {
        {"2\0"sv, 2 },
        {"1"sv,   1 },
        {"3\0"sv, 3 },
        {"4;x"sv, 4 },
        {" -1"sv, -1},
        {""sv,    0 },
        {"\0"sv,  0 },
        {"x"sv,   0 },
    };
    for (const auto& row : rows) {
        monitor.AnswerWith(row.answer);
        EXPECT_EQ(driver->GetDeviceQueryStatus(OString("WS01.00.1")), row.status) << row.answer;
    }
    EXPECT_EQ(monitor.Requests()[0].text, "<request query='WS01.00.1' id='1' get='status' />");
}

TEST_F(AdvancedDriverInterfaceTest, QueryStatusIsZeroIfTheRequestFails)
{
    monitor.AnswerWith("2\0"sv);
    monitor.result = 0;
    EXPECT_EQ(driver->GetDeviceQueryStatus(OString("K")), 0);
}

TEST_F(AdvancedDriverInterfaceTest, QueryResponseIsTheAnswerAsItIs)
{
    Payload response("of before");
    monitor.AnswerWith("a&lt;\0b\0"sv);
    EXPECT_TRUE(driver->GetDeviceQueryResponse(OString("WS01.00.1"), response));
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(response.GetData()), 8), "a&lt;\0b\0"sv);
    EXPECT_EQ(response.GetSize(), 8);
    EXPECT_EQ(monitor.OnlyRequest(), "<request query='WS01.00.1' id='1' get='response' />");
}

TEST_F(AdvancedDriverInterfaceTest, QueryResponseIsEmptyIfThereIsNone)
{
    for (const DWORD result : {0u, 1u}) {
        Payload response("of before");
        monitor.result = result;
        EXPECT_EQ(driver->GetDeviceQueryResponse(OString("K"), response), result != 0);
        EXPECT_TRUE(response.IsEmpty());
    }
}

TEST_F(AdvancedDriverInterfaceTest, QueriesGoToOneWayPrintersToo)
{
    SetBidirectional(false);
    OTypedArray<unsigned char> response;
    EXPECT_TRUE(driver->StartDeviceQuery(Payload("x"), OString("K"), 0, 0, 0));
    driver->GetDeviceQueryStatus(OString("K"));
    driver->GetDeviceQueryResponse(OString("K"), response);
    EXPECT_EQ(monitor.Requests().size(), 3u);
}

// ---- bidirectional ----

TEST_F(AdvancedDriverInterfaceTest, IsBidirectionalIfTheSpoolerHasItSo)
{
    EXPECT_TRUE(driver->IsBidirectional());
    Attach();
    SetBidirectional(false);
    EXPECT_FALSE(driver->IsBidirectional());
}

TEST_F(AdvancedDriverInterfaceTest, BidirectionalAnswerIsGoodFor1000Milliseconds)
{
    static constexpr struct {
        DWORD first;
        DWORD second;
        bool asksAgain;
    } rows[] = {
        {1,          1,    false},
        {1,          1001, false},
        {1,          1002, true },
        {0xFFFFFFFF, 999,  false}, // past the wrap
        {0xFFFFFFFF, 1000, true },
        {2000,       1999, true }, // as after nearly 50 days
        {0,          1,    true }, // 0 says never
    };
    for (const auto& row : rows) {
        Attach();
        SetBidirectional(true);
        tick = row.first;
        EXPECT_TRUE(driver->IsBidirectional()) << row.first;
        EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinter, 2, printerName), 2u);
        SetBidirectional(false);
        tick = row.second;
        EXPECT_EQ(driver->IsBidirectional(), !row.asksAgain) << row.first << " " << row.second;
        EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinter), row.asksAgain ? 4u : 2u) << row.first << " " << row.second;
    }
}

TEST_F(AdvancedDriverInterfaceTest, SwitchOfTheBidirectionalAttributeIsSeenAfterASecond)
{
    monitor.AnswerWith("1;Ribbon Low\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Ribbon Low");
    SetBidirectional(false);
    tick = tick + 1000;
    EXPECT_EQ(driver->GetStatusText(), "Ribbon Low");
    tick = tick + 1;
    EXPECT_EQ(driver->GetStatusText(), "Ready");
}

TEST_F(AdvancedDriverInterfaceTest, IsNotBidirectionalIfTheSpoolerDoesNotAnswer)
{
    for (const DWORD nth : {1u, 2u}) {
        Attach();
        FailNext(SpoolerCall::GetPrinter, ERROR_ACCESS_DENIED, nth);
        EXPECT_FALSE(driver->IsBidirectional()) << nth;
        EXPECT_EQ(SpoolerLog().size(), nth) << "a printer without a size isn't read";
        EXPECT_EQ(::SpoolerPendingFailures(), 0u) << nth;
    }
}

TEST_F(AdvancedDriverInterfaceTest, FailedBidirectionalCheckIsKeptForASecondToo)
{
    FailNext(SpoolerCall::GetPrinter, ERROR_ACCESS_DENIED, 2);
    EXPECT_FALSE(driver->IsBidirectional());
    EXPECT_FALSE(driver->IsBidirectional());
    tick = tick + 1001;
    EXPECT_TRUE(driver->IsBidirectional());
}

TEST_F(AdvancedDriverInterfaceTest, UnattachedDriverIsNotBidirectionalAndAsksNobody)
{
    AdvancedDriverInterface unattached;
    EXPECT_FALSE(unattached.IsBidirectional());
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

// ---- the monitor's place ----

TEST_F(AdvancedDriverInterfaceTest, MonitorIsLoadedAndReleasedAroundEveryRequest)
{
    monitor.AnswerWith("1;Ready\0"sv);
    for (int request = 1; request <= 3; ++request) {
        driver->GetStatusText();
        EXPECT_EQ(monitor.Loads(), request);
        EXPECT_FALSE(monitor.IsLoaded());
    }
    driver->StartDeviceQuery(Payload("x"), OString("K"), 0, 0, 0);
    EXPECT_EQ(monitor.Loads(), 4);
}

TEST_F(AdvancedDriverInterfaceTest, DriverInformationIsReadOnceAtLevel3)
{
    driver->GetJobStatusText(1);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriver, 3, printerName), 2u);
    driver->GetJobStatusText(1);
    driver->IsPortDisconnected();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDriver), 2u);
}

TEST_F(AdvancedDriverInterfaceTest, ExchangedDriverStaysUnseen)
{
    EXPECT_FALSE(driver->IsPortDisconnected());
    EXPECT_EQ(monitor.Loads(), 1);
    SetDriverPath(L"C:\\elsewhere\\label.dll");
    driver->IsPortDisconnected();
    EXPECT_EQ(monitor.Loads(), 2);
}

TEST_F(AdvancedDriverInterfaceTest, MonitorStandsBehindTheLastBackslashOfTheDriversPath)
{
    for (const wchar_t* const name : {L"label.dll", L"", L"a.b", L"x/y.dll"}) {
        SetDriverPath(folder.Path() + L"\\" + name);
        Attach();
        const int before = monitor.Loads();
        driver->IsPortDisconnected();
        EXPECT_EQ(monitor.Loads(), before + 1) << name;
    }
}

TEST_F(AdvancedDriverInterfaceTest, DriverPathWithoutBackslashIsTakenForTheMonitor)
{
    static std::vector<std::wstring> loaded;
    static decltype(::LoadLibraryW)* load;
    loaded.clear();
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](LPCWSTR path) {
        loaded.emplace_back(path);
        return load(path);
    });
    load = hook.Original();
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAUSED);

    SetDriverPath(L"kernel32.dll"); // a module without the exports
    EXPECT_EQ(driver->GetStatusText(), "Paused");
    EXPECT_EQ(loaded, std::vector<std::wstring>{L"kernel32.dll"});
}

TEST_F(AdvancedDriverInterfaceTest, MissingDriverInformationIsThrownAsABareWideText)
{
    for (const DWORD nth : {1u, 2u}) {
        Attach();
        FailNext(SpoolerCall::GetPrinterDriver, ERROR_UNKNOWN_PRINTER_DRIVER, nth);
        try {
            driver->GetStatusText();
            ADD_FAILURE() << nth;
        } catch (const wchar_t* text) {
            EXPECT_STREQ(text, L"Refresh_DriverInfo() Failed.") << nth;
        }
    }
}

TEST_F(AdvancedDriverInterfaceTest, DriverInformationThatComesWithoutBeingSizedIsMissing)
{
    EmptyNext(SpoolerCall::GetPrinterDriver);
    EXPECT_THROW(driver->GetJobStatusText(1), const wchar_t*);
}

TEST_F(AdvancedDriverInterfaceTest, EveryRequestNeedsTheDriverInformation)
{
    ::SpoolerRemoveDriver(L"Label Driver");
    OTypedArray<unsigned char> bytes;
    EXPECT_THROW(driver->GetStatusText(), const wchar_t*);
    EXPECT_THROW(driver->GetStatusSeverity(), const wchar_t*);
    EXPECT_THROW(driver->GetStatusFlags2(), const wchar_t*);
    EXPECT_THROW(driver->TestStatusFlag(201), const wchar_t*);
    EXPECT_THROW(driver->GetJobStatusText(1), const wchar_t*);
    EXPECT_THROW(driver->IsPortBidirectional(), const wchar_t*);
    EXPECT_THROW(driver->IsPortDisconnected(), const wchar_t*);
    EXPECT_THROW(driver->StartDeviceQuery(bytes, OString("K"), 0, 0, 0), const wchar_t*);
    EXPECT_THROW(driver->GetDeviceQueryStatus(OString("K")), const wchar_t*);
    EXPECT_THROW(driver->GetDeviceQueryResponse(OString("K"), bytes), const wchar_t*);
    EXPECT_FALSE(driver->TestStatusFlag(102));
}

TEST_F(AdvancedDriverInterfaceTest, DriverInformationThatTurnsUpIsUsed)
{
    FailNext(SpoolerCall::GetPrinterDriver, ERROR_UNKNOWN_PRINTER_DRIVER);
    EXPECT_THROW(driver->GetStatusText(), const wchar_t*);
    monitor.AnswerWith("1;Ribbon Low\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Ribbon Low");
}

// ---- settings ----

TEST_F(AdvancedDriverInterfaceTest, ImportSavesAfterwards)
{
    EXPECT_TRUE(driver->ImportSettings(OString(L"C:\\sets\\\u017Bubr.set"), 0x401));
    const std::vector<ScriptedInterface::Call> expected{
        {"VRL_Printer_Open",    printer.Get(),                L"",                        0    },
        {"VRL_Settings_Import", interfaceModule.driverHandle, L"C:\\sets\\\u017Bubr.set", 0x401},
        {"VRL_Settings_Save",   interfaceModule.driverHandle, L"",                        0    },
    };
    EXPECT_EQ(interfaceModule.Calls(), expected);
}

TEST_F(AdvancedDriverInterfaceTest, ResetSavesAfterwards)
{
    EXPECT_TRUE(driver->ResetSettings(0xFFFFFFFF));
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Settings_Reset", "VRL_Settings_Save"}));
    EXPECT_EQ(interfaceModule.Calls()[1].mask, 0xFFFFFFFFu);
}

TEST_F(AdvancedDriverInterfaceTest, ExportDoesNotSave)
{
    EXPECT_TRUE(driver->ExportSettings(OString("out.set"), 0x20));
    const std::vector<ScriptedInterface::Call> expected{
        {"VRL_Printer_Open",    printer.Get(),                L"",        0   },
        {"VRL_Settings_Export", interfaceModule.driverHandle, L"out.set", 0x20},
    };
    EXPECT_EQ(interfaceModule.Calls(), expected);
}

TEST_F(AdvancedDriverInterfaceTest, DriverIsOpenedOnceAndClosedAtTheEnd)
{
    driver->ExportSettings(OString("a"), 1);
    driver->ExportSettings(OString("b"), 1);
    driver->ResetSettings(1);
    EXPECT_EQ(interfaceModule.Loads(), 1);
    EXPECT_TRUE(interfaceModule.IsLoaded());
    driver.reset();
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Settings_Export", "VRL_Settings_Export",
                                                  "VRL_Settings_Reset", "VRL_Settings_Save", "VRL_Printer_Close"}));
    EXPECT_EQ(interfaceModule.Calls().back().handle, interfaceModule.driverHandle);
    EXPECT_FALSE(interfaceModule.IsLoaded());
}

TEST_F(AdvancedDriverInterfaceTest, NothingIsLoadedBeforeASettingsOperation)
{
    driver->GetStatusText();
    driver.reset();
    EXPECT_EQ(interfaceModule.Loads(), 0);
}

struct SettingsOperation {
    const char* exported;
    bool (*run)(AdvancedDriverInterface& driver);
};

const SettingsOperation settingsOperations[] = {
    {"VRL_Settings_Import", [](AdvancedDriverInterface& driver) { return driver.ImportSettings(OString("f"), 1); }},
    {"VRL_Settings_Export", [](AdvancedDriverInterface& driver) { return driver.ExportSettings(OString("f"), 1); }},
    {"VRL_Settings_Reset",  [](AdvancedDriverInterface& driver) { return driver.ResetSettings(1); }               },
};

TEST_F(AdvancedDriverInterfaceTest, OperationWithoutItsExportIsFalseAndSavesNothing)
{
    for (const SettingsOperation& row : settingsOperations) {
        Attach();
        ScriptedInterface::Install(folder.Path(L"interface.dll"), row.exported);
        ScriptedInterface fresh;
        EXPECT_FALSE(row.run(*driver)) << row.exported;
        EXPECT_EQ(fresh.CallNames(), Names{"VRL_Printer_Open"}) << row.exported;
        driver.reset();
    }
}

TEST_F(AdvancedDriverInterfaceTest, OperationWithoutTheExportToSaveIsTrue)
{
    ScriptedInterface::Install(folder.Path(L"interface.dll"), "VRL_Settings_Save");
    for (const SettingsOperation& row : settingsOperations) EXPECT_TRUE(row.run(*driver)) << row.exported;
}

TEST_F(AdvancedDriverInterfaceTest, DriverWithoutTheExportToCloseIsLeftOpen)
{
    ScriptedInterface::Install(folder.Path(L"interface.dll"), "VRL_Printer_Close");
    driver->ResetSettings(1);
    driver.reset();
    EXPECT_EQ(interfaceModule.CallNames().back(), "VRL_Settings_Save");
    EXPECT_FALSE(interfaceModule.IsLoaded());
}

TEST_F(AdvancedDriverInterfaceTest, DriverWithoutTheExportToOpenIsFalse)
{
    ScriptedInterface::Install(folder.Path(L"interface.dll"), "VRL_Printer_Open");
    for (const SettingsOperation& row : settingsOperations) EXPECT_FALSE(row.run(*driver)) << row.exported;
    EXPECT_EQ(interfaceModule.Loads(), 1) << "the module stays";
}

TEST_F(AdvancedDriverInterfaceTest, DriverThatDoesNotOpenIsAskedAgain)
{
    void* const handle = interfaceModule.driverHandle.exchange(nullptr);
    EXPECT_FALSE(driver->ResetSettings(1));
    EXPECT_FALSE(driver->ResetSettings(1));
    interfaceModule.driverHandle = handle;
    EXPECT_TRUE(driver->ResetSettings(1));
    EXPECT_EQ(interfaceModule.CallNames(), (Names{"VRL_Printer_Open", "VRL_Printer_Open", "VRL_Printer_Open",
                                                  "VRL_Settings_Reset", "VRL_Settings_Save"}));
}

TEST_F(AdvancedDriverInterfaceTest, ModuleThatDoesNotLoadIsTriedAtEachCall)
{
    SetInterface(folder.Path(L"missing.dll"));
    for (const SettingsOperation& row : settingsOperations) EXPECT_FALSE(row.run(*driver)) << row.exported;
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterData), 3u);
    SetInterface(folder.Path(L"interface.dll"));
    EXPECT_TRUE(driver->ResetSettings(1));
    EXPECT_TRUE(driver->ResetSettings(1));
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterData), 4u);
}

TEST_F(AdvancedDriverInterfaceTest, PrinterWithoutTheValueHasNoSettings)
{
    ::SpoolerRemoveData(printerName, L"PrinterDriverData", L"VRL Interface");
    for (const SettingsOperation& row : settingsOperations) EXPECT_FALSE(row.run(*driver)) << row.exported;
}

TEST_F(AdvancedDriverInterfaceTest, ValueThatFillsTheBufferNeedsNoTerminator)
{
    const std::wstring value(260, L'x');
    ::SpoolerSetData(printerName, L"PrinterDriverData", L"VRL Interface", REG_SZ, value.data(), 520);
    static std::wstring loaded;
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](LPCWSTR path) {
        loaded = path;
        return HMODULE{};
    });
    EXPECT_FALSE(driver->ResetSettings(1));
    EXPECT_EQ(loaded, value);
}

TEST_F(AdvancedDriverInterfaceTest, ValueThatIsLongerThanTheBufferNamesNothing)
{
    ::SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", std::wstring(260, L'x'));
    EXPECT_FALSE(driver->ResetSettings(1));
}

// ---- modules that aren't well ----

TEST_F(AdvancedDriverInterfaceTest, CrashInTheMonitorComesOutAndTheNextRequestWorks)
{
    monitor.sendRequest = [](const wchar_t*, const char*, void**) -> DWORD {
        WriteToNowhere();
        return 1;
    };
    EXPECT_EQ(FaultOf([this] { driver->GetStatusText(); }), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(FaultOf([this] { driver->StartDeviceQuery(Payload("x"), OString("K"), 0, 0, 0); }),
              EXCEPTION_ACCESS_VIOLATION);
    EXPECT_FALSE(monitor.IsLoaded());

    ScriptedMonitor well;
    well.AnswerWith("1;Ready\0"sv);
    EXPECT_EQ(driver->GetStatusText(), "Ready");
}

TEST_F(AdvancedDriverInterfaceTest, CrashInTheDriverComesOutAndSavesNothing)
{
    interfaceModule.step = [](const ScriptedInterface::Call& call) {
        if (call.name != "VRL_Printer_Open" && call.name != "VRL_Printer_Close") WriteToNowhere();
    };
    for (const SettingsOperation& row : settingsOperations) {
        EXPECT_EQ(FaultOf([&] { row.run(*driver); }), EXCEPTION_ACCESS_VIOLATION) << row.exported;
    }
    EXPECT_EQ(interfaceModule.CallNames(),
              (Names{"VRL_Printer_Open", "VRL_Settings_Import", "VRL_Settings_Export", "VRL_Settings_Reset"}));
}

TEST_F(AdvancedDriverInterfaceTest, CrashWhileTheDriverOpensLeavesItClosed)
{
    interfaceModule.step = [](const ScriptedInterface::Call&) { WriteToNowhere(); };
    EXPECT_EQ(FaultOf([this] { driver->ResetSettings(1); }), EXCEPTION_ACCESS_VIOLATION);
    interfaceModule.step = [](const ScriptedInterface::Call&) {};
    EXPECT_TRUE(driver->ResetSettings(1));
    EXPECT_EQ(interfaceModule.CallNames()[1], "VRL_Printer_Open");
}

TEST_F(AdvancedDriverInterfaceTest, ExceptionOfAnyKindWhileTheDriverClosesIsDropped)
{
    for (const RaisedKind& kind : raisedKinds) {
        interfaceModule.step = [](const ScriptedInterface::Call&) {};
        Attach();
        driver->ResetSettings(1);
        interfaceModule.step = [&](const ScriptedInterface::Call&) { kind.raise(); };
        driver.reset(); // outside of every wrapper, as the last release of a printer is
        EXPECT_EQ(interfaceModule.CallNames().back(), "VRL_Printer_Close") << kind.name;
        EXPECT_FALSE(interfaceModule.IsLoaded()) << kind.name;
    }
}

TEST_F(AdvancedDriverInterfaceTest, DriverThatReleasesItselfGoesWithTheLastOfIt)
{
    interfaceModule.step = [this](const ScriptedInterface::Call& call) {
        if (call.name == "VRL_Settings_Reset") ::FreeLibrary(::GetModuleHandleW(folder.Path(L"interface.dll").c_str()));
    };
    EXPECT_TRUE(driver->ResetSettings(1));
    EXPECT_TRUE(driver->ExportSettings(OString("f"), 1));
    driver.reset();
    EXPECT_EQ(interfaceModule.CallNames().back(), "VRL_Printer_Close");
}

// ---- threads ----

TEST_F(AdvancedDriverInterfaceTest, FirstOperationsOfManyThreadsLeaveOneOpenDriver)
{
    constexpr int threads = 4;
    std::atomic<int> opening{0};
    const OWaitHandle allOpening(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    interfaceModule.step = [&](const ScriptedInterface::Call& call) {
        if (call.name != "VRL_Printer_Open") return;
        if (++opening == threads) ::SetEvent(allOpening.Get());
        EXPECT_EQ(::WaitForSingleObject(allOpening.Get(), testLimitMs), WAIT_OBJECT_0);
    };
    std::vector<std::thread> callers;
    callers.reserve(threads);
    for (int index = 0; index < threads; ++index) {
        callers.emplace_back([this] {
            EXPECT_TRUE(driver->ExportSettings(OString("f"), 1));
            EXPECT_EQ(driver->GetStatusFlags2(), 0u);
        });
    }
    for (std::thread& caller : callers) caller.join();
    driver.reset();

    const Names names = interfaceModule.CallNames();
    EXPECT_EQ(std::ranges::count(names, "VRL_Printer_Open"), threads);
    EXPECT_EQ(std::ranges::count(names, "VRL_Printer_Close"), threads);
    EXPECT_EQ(std::ranges::count(names, "VRL_Settings_Export"), threads);
}

} // namespace
