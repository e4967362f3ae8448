// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterPort.h"

#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"
#include "support/com/Answer.h"
#include "support/com/ByteArray.h"
#include "support/driver/AdvancedPrinterTest.h"
#include "support/FaultOf.h"
#include "support/ForeignThrow.h"
#include "support/ImportHook.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/QueryCommand.h"
#include "vrl/core/XPrinterPool.h"

#include <regex>

namespace {

using Microsoft::WRL::ComPtr;
using namespace std::string_view_literals;

class PrinterPortTest : public AdvancedPrinterTest {
protected:
    void SetUp() override
    {
        AdvancedPrinterTest::SetUp();
        AddPort(L"LPT1:", L"Local Monitor", L"Parallel port");
        port = PortOf(printerName);
        ASSERT_EQ(CreateInstance(command.GetAddressOf()), S_OK);
        command->put_Text(ToBstr(OString("?head")).Get());
        ::SpoolerClearLog();
        slept.clear();
    }

    void TearDown() override
    {
        port.Reset();
        command.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        AdvancedPrinterTest::TearDown();
    }

    static void AddPort(const wchar_t* name, const wchar_t* monitorName, const wchar_t* description)
    {
        SpoolerPort added;
        added.name = name;
        added.monitorName = monitorName;
        added.description = description;
        EXPECT_EQ(::SpoolerAddPort(added), 0u);
    }

    /// A printer that is like "Label" but for its name and port; it has no driver of its own.
    static void AddPlainPrinter(const wchar_t* name, const wchar_t* portName)
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = name;
        printer.shareName = L"";
        printer.attributes = PRINTER_ATTRIBUTE_LOCAL;
        printer.portName = portName;
        AddPrinter(printer);
    }

    static ComPtr<IPrinter> Bound(const wchar_t* name)
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        EXPECT_EQ(printer->Initialize(ToBstr(OString(name)).Get()), S_OK);
        return printer;
    }

    static ComPtr<IPrinterPort> PortOf(const wchar_t* name)
    {
        ComPtr<IPrinterPort> port;
        EXPECT_EQ(Bound(name)->get_Port(&port), S_OK);
        return port;
    }

    /// The text of a getter and its answer, as "text" or as the answer that is no success.
    template <class Get>
    static std::string Read(IPrinterPort& port, Get get)
    {
        OBstr text;
        const Answer answer = AnswerOf((port.*get)(text.Receive()));
        if (answer == succeeded) return FromBstr(text.Get()).nstring();
        EXPECT_EQ(text.Get(), nullptr);
        return answer.text.empty() ? "no text" : answer.text;
    }

    std::string Name() { return Read(*port.Get(), &IPrinterPort::get_Name); }
    std::string Description() { return Read(*port.Get(), &IPrinterPort::get_Description); }
    std::string MonitorName() { return Read(*port.Get(), &IPrinterPort::get_MonitorName); }

    /// Starts a query with S_OK and gives its number.
    long Start()
    {
        long number = 0;
        EXPECT_EQ(port->StartQuery(command.Get(), &number), S_OK);
        return number;
    }

    ComPtr<IPrinterPort> port;
    ComPtr<QueryCommand> command;
    static inline std::vector<DWORD> slept;
};

// ---- the port ----

TEST_F(PrinterPortTest, TellsThePrintersPort)
{
    AddPort(L"NET1", L"Net Monitor", L"Net port");
    EXPECT_EQ(Name(), "LPT1:");
    EXPECT_EQ(Description(), "Parallel port");
    EXPECT_EQ(MonitorName(), "Local Monitor");
}

TEST_F(PrinterPortTest, ReadsTheMachinesPortsOnceAtLevel2)
{
    Name();
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::EnumPortsW, 2, nullptr), 2u);
    EXPECT_EQ(SpoolerLog()[0].server[0], L'\0');
    AddPort(L"LPT1:", L"Other Monitor", L"Other description");
    EXPECT_EQ(Description(), "Parallel port");
    EXPECT_EQ(MonitorName(), "Local Monitor");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumPortsW), 2u);
}

TEST_F(PrinterPortTest, UnknownPortFailsOnceAndThenIsTheLastOfTheList)
{
    AddPlainPrinter(L"Lost", L"LOST:");
    AddPort(L"NET1", L"Net Monitor", L"Net port");
    ::SpoolerRemovePort(L"LOST:");
    port = PortOf(L"Lost");
    EXPECT_EQ(Description(), "Invalid port");
    EXPECT_EQ(Description(), "Net port");
    EXPECT_EQ(Name(), "NET1");
    EXPECT_EQ(MonitorName(), "Net Monitor");
}

TEST_F(PrinterPortTest, UnknownPortFailsWithoutATextForNameAndMonitor)
{
    AddPlainPrinter(L"Lost", L"LOST:");
    ::SpoolerRemovePort(L"LOST:");
    const Answer failure{E_FAIL, ""};
    OBstr text;
    EXPECT_EQ(AnswerOf(PortOf(L"Lost")->get_Name(text.Receive())), failure);
    EXPECT_EQ(AnswerOf(PortOf(L"Lost")->get_MonitorName(text.Receive())), failure);
    EXPECT_EQ(AnswerOf(PortOf(L"Lost")->get_Description(text.Receive())), invalidPort);
}

TEST_F(PrinterPortTest, PortNamesAreComparedExactly)
{
    AddPlainPrinter(L"Small", L"lpt1:");
    port = PortOf(L"Small");
    EXPECT_EQ(Description(), "Invalid port");
}

TEST_F(PrinterPortTest, ListThatCannotBeReadIsReadAgain)
{
    for (const DWORD nth : {1u, 2u}) {
        port = PortOf(printerName);
        FailNext(SpoolerCall::EnumPortsW, ERROR_ACCESS_DENIED, nth);
        EXPECT_EQ(Description(), "Invalid port") << nth;
        EXPECT_EQ(Description(), "Parallel port") << nth;
    }
}

TEST_F(PrinterPortTest, EmptyListIsDroppedAtTheNextCall)
{
    SpoolerFailure failure;
    failure.call = SpoolerCall::EnumPortsW;
    failure.effect = SpoolerEffect::SucceedEmpty;
    failure.nth = 2;
    ::SpoolerInject(failure);
    EXPECT_EQ(Description(), "Invalid port");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumPortsW), 2u);
    EXPECT_EQ(Description(), "Invalid port");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumPortsW), 2u);
    EXPECT_EQ(Description(), "Parallel port");
}

TEST_F(PrinterPortTest, BoundToAnotherPrinterItKeepsItsPort)
{
    AddPort(L"NET1", L"Net Monitor", L"Net port");
    AddPlainPrinter(L"Net", L"NET1");
    EXPECT_EQ(Name(), "LPT1:");
    ASSERT_EQ(static_cast<PrinterPort*>(port.Get())->Initialize(Bound(L"Net").Get()), S_OK);
    EXPECT_EQ(Name(), "LPT1:");
}

TEST_F(PrinterPortTest, MonitorTellsTheConditionsOfThePort)
{
    for (const auto& [answer, expected] : {
             std::pair{"1;\0"sv, -1},
             std::pair{"0;\0"sv, 0 }
    }) {
        monitor.AnswerWith(answer);
        VARIANT_BOOL value = 99;
        EXPECT_EQ(port->get_Bidirectional(&value), S_OK);
        EXPECT_EQ(value, expected);
        EXPECT_EQ(port->get_Disconnected(&value), S_OK);
        EXPECT_EQ(value, expected);
    }
    EXPECT_EQ(monitor.Requests()[0].text, "<port action='get' name='bidirectional' />;");
    EXPECT_EQ(monitor.Requests()[1].text, "<port action='get' name='disconnected' />;");
}

// ---- questions ----

TEST_F(PrinterPortTest, QueryGoesOutUnderAKeyOfComputerTokenAndNumber)
{
    command->put_SendTimeout(5000);
    EXPECT_EQ(Start(), 1);
    wchar_t computer[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = std::size(computer);
    ::GetComputerNameW(computer, &size);
    const std::string text = monitor.OnlyRequest();
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(text, parts,
                                 std::regex("<query id='(.*)\\.([0-9A-F]{16})\\.1' name='VRL Query'>"
                                            "<request id='1' name='VRL Request' sendTimeout='5000'>"
                                            "\\?head</request></query>")))
        << text;
    EXPECT_EQ(parts[1].str(), OString(computer).nstring());
    EXPECT_FALSE(monitor.Requests()[0].wantsAnswer);
}

TEST_F(PrinterPortTest, QueriesAreNumberedFromOne)
{
    EXPECT_EQ(Start(), 1);
    EXPECT_EQ(Start(), 2);
    EXPECT_EQ(Start(), 3);
}

TEST_F(PrinterPortTest, FailedStartDoesNotUseItsNumber)
{
    monitor.result = 0;
    long number = 0;
    EXPECT_EQ(AnswerOf(port->StartQuery(command.Get(), &number)), queryFailed);
    EXPECT_EQ(number, 1);
    monitor.result = 1;
    EXPECT_EQ(Start(), 1);
    EXPECT_EQ(Start(), 2);
}

TEST_F(PrinterPortTest, TwoPortsOfAPrinterMakeTheSameKeys)
{
    Start();
    port = PortOf(printerName);
    EXPECT_EQ(Start(), 1);
    ASSERT_EQ(monitor.Requests().size(), 2u);
    EXPECT_EQ(monitor.Requests()[0].text, monitor.Requests()[1].text);
}

TEST_F(PrinterPortTest, SameKeyIsBuiltForEveryCallOfANumber)
{
    monitor.AnswerWith("2\0"sv);
    Start();
    ComPtr<IQueryResponse> response;
    port->WaitForQuery(1);
    port->GetQueryResponse(1, &response);
    const std::string start = monitor.Requests()[0].text;
    const std::string key = start.substr(11, start.find("' name") - 11);
    EXPECT_EQ(monitor.Requests()[1].text, "<request query='" + key + "' id='1' get='status' />");
    EXPECT_EQ(monitor.Requests()[2].text, "<request query='" + key + "' id='1' get='status' />");
    EXPECT_EQ(monitor.Requests()[3].text, "<request query='" + key + "' id='1' get='response' />");
}

/// A client's own command, which lives on the stack. It says what it is asked for, and fails at that.
class ClientCommand : public IQueryCommand {
public:
    std::vector<std::string> asked;
    _variant_t binary = ByteArray("ABC", 7);

    STDMETHODIMP get_Binary(VARIANT* value) override
    {
        asked.emplace_back("Binary");
        ::VariantCopy(value, &binary);
        return E_FAIL;
    }
    STDMETHODIMP get_SendTimeout(long* value) override { return GiveTimeout("SendTimeout", 1, value); }
    STDMETHODIMP get_ReceiveStartTimeout(long* value) override { return GiveTimeout("ReceiveStartTimeout", 2, value); }
    STDMETHODIMP get_ReceiveIntervalTimeout(long* value) override
    {
        return GiveTimeout("ReceiveIntervalTimeout", 3, value);
    }

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = this;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP put_Binary(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_Text(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Text(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Hexadecimal(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Hexadecimal(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_SendTimeout(long) override { return E_NOTIMPL; }
    STDMETHODIMP put_ReceiveStartTimeout(long) override { return E_NOTIMPL; }
    STDMETHODIMP put_ReceiveIntervalTimeout(long) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

private:
    HRESULT GiveTimeout(const char* name, long timeout, long* value)
    {
        asked.emplace_back(name);
        *value = timeout;
        return E_FAIL;
    }
};

TEST_F(PrinterPortTest, CommandOfTheClientsOwnIsReadThroughItsInterface)
{
    ClientCommand client;
    long number = 0;
    EXPECT_EQ(port->StartQuery(&client, &number), S_OK);
    EXPECT_EQ(client.asked,
              (std::vector<std::string>{"Binary", "SendTimeout", "ReceiveStartTimeout", "ReceiveIntervalTimeout"}));
    EXPECT_TRUE(monitor.OnlyRequest().ends_with(" sendTimeout='1' receiveStartTimeout='2' receiveIntervalTimeout='3'>"
                                                "ABC</request></query>"))
        << monitor.OnlyRequest();
}

TEST_F(PrinterPortTest, CommandWithoutDataIsInvalidAndNothingIsSent)
{
    ASSERT_EQ(CreateInstance(command.ReleaseAndGetAddressOf()), S_OK);
    long number = 0;
    EXPECT_EQ(AnswerOf(port->StartQuery(command.Get(), &number)), invalidArgument);
    EXPECT_EQ(number, 1) << "the number is written before anything is read";
    ClientCommand client;
    for (const _variant_t& binary : {_variant_t(), _variant_t(L"text")}) {
        client.binary = binary;
        EXPECT_EQ(AnswerOf(port->StartQuery(&client, &number)), invalidArgument);
    }
    EXPECT_TRUE(monitor.Requests().empty());
}

TEST_F(PrinterPortTest, CommandOfNoBytesIsAQuery)
{
    command->put_Text(nullptr);
    EXPECT_EQ(Start(), 1);
    EXPECT_TRUE(monitor.OnlyRequest().ends_with("name='VRL Request'></request></query>"));
}

TEST_F(PrinterPortTest, CommandStaysAsItIs)
{
    Start();
    Start();
    EXPECT_NE(monitor.Requests()[1].text.find("?head"), std::string::npos);
}

TEST_F(PrinterPortTest, StartNeedsOnlyOneExportOfTheMonitor)
{
    ScriptedMonitor::Install(folder.Path(L"kvnetmon.d64"), "HTTPResponse_Free");
    EXPECT_EQ(Start(), 1);
}

// ---- waiting ----

TEST_F(PrinterPortTest, WaitEndsWithTheQuery)
{
    static constexpr struct {
        std::string_view status;
        HRESULT result;
    } rows[] = {
        {"2\0"sv,  S_OK   },
        {"3\0"sv,  S_FALSE},
        {"4\0"sv,  S_FALSE},
        {"5\0"sv,  S_FALSE},
        {"-1\0"sv, S_FALSE},
    };
    for (const auto& row : rows) {
        monitor.AnswerWith(row.status);
        EXPECT_EQ(AnswerOf(port->WaitForQuery(1)), (Answer{row.result, ""})) << row.status;
    }
}

TEST_F(PrinterPortTest, WaitPollsEvery50Milliseconds)
{
    static ScriptedMonitor* polled;
    polled = &monitor;
    monitor.AnswerWith("0\0"sv);
    const ImportHook<decltype(::Sleep)> hook("Sleep", [](DWORD ms) {
        slept.push_back(ms);
        polled->AnswerWith(slept.size() == 1 ? "1\0"sv : "2\0"sv);
    });
    EXPECT_EQ(port->WaitForQuery(1), S_OK);
    EXPECT_EQ(slept, (std::vector<DWORD>{50, 50}));
    EXPECT_EQ(monitor.Requests().size(), 3u);
    EXPECT_EQ(monitor.Loads(), 3);
}

TEST_F(PrinterPortTest, WaitGoesOnWhileTheMonitorIsAway)
{
    static std::wstring path;
    path = folder.Path(L"kvnetmon.d64");
    monitor.AnswerWith("2\0"sv);
    ASSERT_TRUE(::DeleteFileW(path.c_str()));
    const ImportHook<decltype(::Sleep)> hook("Sleep", [](DWORD ms) {
        slept.push_back(ms);
        if (slept.size() == 3) ScriptedMonitor::Install(path);
    });
    EXPECT_EQ(port->WaitForQuery(1), S_OK);
    EXPECT_EQ(slept.size(), 3u);
}

TEST_F(PrinterPortTest, WaitingThreadHoldsUpNobody)
{
    const OWaitHandle polled(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    std::atomic<bool> finished{false};
    monitor.sendRequest = [&](const wchar_t* name, const char* request, void** response) {
        const bool wait = std::string_view(request).find(".1' id='1' get='status'") != std::string_view::npos;
        if (wait) ::SetEvent(polled.Get());
        monitor.AnswerWith(!wait ? "0;"sv : finished ? "2\0"sv : "0\0"sv);
        return monitor.PlainSendRequest(name, request, response);
    };
    BackgroundCall waiting([&] { EXPECT_EQ(port->WaitForQuery(1), S_OK); });
    EXPECT_EQ(::WaitForSingleObject(polled.Get(), 30000), WAIT_OBJECT_0);
    EXPECT_EQ(Name(), "LPT1:");
    EXPECT_EQ(Start(), 1);
    finished = true;
    EXPECT_TRUE(waiting.Ends());
}

// ---- answers ----

/// Responded, Failed and Pending of a response, and its bytes.
struct ResponseState {
    VARIANT_BOOL responded;
    VARIANT_BOOL failed;
    VARIANT_BOOL pending;
    std::string bytes;

    bool operator==(const ResponseState&) const = default;
};

ResponseState StateOf(IQueryResponse& response)
{
    ResponseState state{99, 99, 99, {}};
    EXPECT_EQ(response.get_Responded(&state.responded), S_OK);
    EXPECT_EQ(response.get_Failed(&state.failed), S_OK);
    EXPECT_EQ(response.get_Pending(&state.pending), S_OK);
    _variant_t binary;
    EXPECT_EQ(response.get_Binary(&binary), S_OK);
    state.bytes = BytesOf(binary);
    return state;
}

TEST_F(PrinterPortTest, ResponseTellsHowFarTheQueryIs)
{
    static const struct {
        std::string_view status;
        ResponseState state;
    } rows[] = {
        {"0\0"sv,  {0, 0, -1, "no array"}   },
        {"1\0"sv,  {0, 0, -1, "no array"}   },
        {"2\0"sv,  {-1, 0, 0, "head = open"}},
        {"3\0"sv,  {-1, -1, 0, "no array"}  },
        {"4\0"sv,  {-1, -1, 0, "no array"}  },
        {"5\0"sv,  {0, 0, 0, "no array"}    },
        {"-1\0"sv, {0, 0, 0, "no array"}    },
        {"99\0"sv, {0, 0, 0, "no array"}    },
    };
    for (const auto& row : rows) {
        monitor.ForgetRequests();
        monitor.sendRequest = [&](const wchar_t* name, const char* request, void** response) {
            const bool asksStatus = std::string_view(request).find("get='status'") != std::string_view::npos;
            monitor.AnswerWith(asksStatus ? row.status : "head = open"sv);
            return monitor.PlainSendRequest(name, request, response);
        };
        ComPtr<IQueryResponse> response;
        EXPECT_EQ(port->GetQueryResponse(7, &response), S_OK) << row.status;
        EXPECT_EQ(StateOf(*response.Get()), row.state) << row.status;
        EXPECT_EQ(monitor.Requests().size(), row.status == "2\0"sv ? 2u : 1u) << row.status;
    }
}

TEST_F(PrinterPortTest, AnswerWithoutBytesIsAnEmptyArray)
{
    monitor.sendRequest = [&](const wchar_t* name, const char* request, void** response) {
        const bool asksStatus = std::string_view(request).find("get='status'") != std::string_view::npos;
        monitor.AnswerWith(asksStatus ? "2\0"sv : ""sv);
        monitor.result = asksStatus;
        return monitor.PlainSendRequest(name, request, response);
    };
    ComPtr<IQueryResponse> response;
    EXPECT_EQ(port->GetQueryResponse(1, &response), S_OK);
    EXPECT_EQ(StateOf(*response.Get()), (ResponseState{-1, 0, 0, ""})) << "the failed request isn't noticed";
}

TEST_F(PrinterPortTest, ResponseIsASnapshot)
{
    monitor.AnswerWith("1\0"sv);
    ComPtr<IQueryResponse> first;
    port->GetQueryResponse(1, &first);
    monitor.AnswerWith("2\0"sv);
    ComPtr<IQueryResponse> second;
    port->GetQueryResponse(1, &second);
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_EQ(StateOf(*first.Get()).pending, -1);
    EXPECT_EQ(StateOf(*second.Get()).pending, 0);
}

TEST_F(PrinterPortTest, ResponseBelongsToTheCaller)
{
    IQueryResponse* response = nullptr;
    ASSERT_EQ(port->GetQueryResponse(1, &response), S_OK);
    EXPECT_EQ(response->Release(), 0u);
}

TEST_F(PrinterPortTest, NumberThatWasNeverGivenIsAskedFor)
{
    monitor.AnswerWith("0\0"sv);
    ComPtr<IQueryResponse> response;
    EXPECT_EQ(port->GetQueryResponse(-4711, &response), S_OK);
    EXPECT_EQ(StateOf(*response.Get()).pending, -1);
    EXPECT_NE(monitor.OnlyRequest().find(".-4711'"), std::string::npos);
}

TEST_F(PrinterPortTest, ResponseThatCannotBeMadeIsToldSo)
{
    const Answer expected{static_cast<HRESULT>(0x8007000E), "CreateInstance failed: QueryResponse"};
    bool met = false;
    for (int allowed = 0; allowed < 30 && !met; ++allowed) {
        IQueryResponse* response = nullptr;
        HRESULT result = S_OK;
        {
            const AllocationFailure failure(allowed);
            result = port->GetQueryResponse(1, &response);
        }
        met = AnswerOf(result) == expected;
        EXPECT_TRUE(SUCCEEDED(result) || !response);
        if (response) response->Release();
    }
    EXPECT_TRUE(met);
}

// ---- checks ----

/// Every member of a port, with good arguments.
struct Member {
    const char* name;
    HRESULT (*call)(IPrinterPort& port, IQueryCommand* command);
    bool needsDriver; ///< an advanced one
};

template <auto get>
HRESULT CallText(IPrinterPort& port, IQueryCommand*)
{
    OBstr text;
    return (port.*get)(text.Receive());
}

template <auto get>
HRESULT CallBool(IPrinterPort& port, IQueryCommand*)
{
    VARIANT_BOOL value = 99;
    return (port.*get)(&value);
}

HRESULT CallStartQuery(IPrinterPort& port, IQueryCommand* command)
{
    long number = 0;
    return port.StartQuery(command, &number);
}

HRESULT CallWaitForQuery(IPrinterPort& port, IQueryCommand*)
{
    return port.WaitForQuery(1);
}

HRESULT CallGetQueryResponse(IPrinterPort& port, IQueryCommand*)
{
    ComPtr<IQueryResponse> response;
    return port.GetQueryResponse(1, &response);
}

const Member members[] = {
    {"Name",             CallText<&IPrinterPort::get_Name>,          false},
    {"Description",      CallText<&IPrinterPort::get_Description>,   false},
    {"MonitorName",      CallText<&IPrinterPort::get_MonitorName>,   false},
    {"Bidirectional",    CallBool<&IPrinterPort::get_Bidirectional>, true },
    {"Disconnected",     CallBool<&IPrinterPort::get_Disconnected>,  true },
    {"StartQuery",       CallStartQuery,                             true },
    {"WaitForQuery",     CallWaitForQuery,                           true },
    {"GetQueryResponse", CallGetQueryResponse,                       true },
};

TEST_F(PrinterPortTest, UnboundPortHasNoMember)
{
    ComPtr<PrinterPort> unbound;
    ASSERT_EQ(CreateInstance(unbound.GetAddressOf()), S_OK);
    for (const Member& row : members) {
        EXPECT_EQ(AnswerOf(row.call(*unbound.Get(), command.Get())), portNotInitialized) << row.name;
    }
}

TEST_F(PrinterPortTest, PrinterWithoutADriverOfItsOwnHasOnlyItsDescription)
{
    AddPlainPrinter(L"Plain", L"LPT1:");
    port = PortOf(L"Plain");
    for (const Member& row : members) {
        EXPECT_EQ(AnswerOf(row.call(*port.Get(), command.Get())), row.needsDriver ? featureNotSupported : succeeded)
            << row.name;
    }
    EXPECT_TRUE(monitor.Requests().empty());
}

TEST_F(PrinterPortTest, NullPointersComeBeforeEverythingElse)
{
    ComPtr<PrinterPort> unbound;
    ASSERT_EQ(CreateInstance(unbound.GetAddressOf()), S_OK);
    AddPlainPrinter(L"Plain", L"LPT1:");
    const ComPtr<IPrinterPort> plain = PortOf(L"Plain");
    long number = 99;
    for (IPrinterPort* const one : {static_cast<IPrinterPort*>(unbound.Get()), plain.Get(), port.Get()}) {
        EXPECT_EQ(AnswerOf(one->get_Name(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->get_Description(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->get_MonitorName(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->get_Bidirectional(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->get_Disconnected(nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->StartQuery(command.Get(), nullptr)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->StartQuery(nullptr, &number)), invalidArgument);
        EXPECT_EQ(AnswerOf(one->GetQueryResponse(1, nullptr)), invalidArgument);
    }
    EXPECT_EQ(number, 99);
}

TEST_F(PrinterPortTest, MissingDriverInformationIsUnspecified)
{
    ::SpoolerRemoveDriver(L"Label Driver");
    for (const Member& row : members) {
        EXPECT_EQ(AnswerOf(row.call(*port.Get(), command.Get())), row.needsDriver ? unspecifiedError : succeeded)
            << row.name;
    }
}

// ---- modules that aren't well ----

/// Keeps the dialog of an internal failure from standing in the way.
class NoDialog {
private:
    ImportHook<decltype(::MessageBoxA)> _hook{"MessageBoxA", [](HWND, LPCSTR, LPCSTR, UINT) { return 0; }};
};

TEST_F(PrinterPortTest, CrashOfTheMonitorFailsTheMemberAndTheNextWorks)
{
    const NoDialog noDialog;
    monitor.sendRequest = [](const wchar_t*, const char*, void**) -> DWORD {
        WriteToNowhere();
        return 1;
    };
    for (const Member& row : members) {
        EXPECT_EQ(AnswerOf(row.call(*port.Get(), command.Get())).result, row.needsDriver ? invalidAddress.result : S_OK)
            << row.name;
        EXPECT_FALSE(monitor.IsLoaded()) << row.name;
    }
    ScriptedMonitor well;
    EXPECT_EQ(Start(), 1) << "a query that has crashed has no number";
}

TEST_F(PrinterPortTest, ForeignExceptionOfTheMonitorIsUnspecified)
{
    monitor.sendRequest = [](const wchar_t*, const char*, void**) -> DWORD {
        ThrowAsForeignCode();
        return 1;
    };
    for (const Member& row : members) {
        EXPECT_EQ(AnswerOf(row.call(*port.Get(), command.Get())), row.needsDriver ? unspecifiedError : succeeded)
            << row.name;
        EXPECT_FALSE(monitor.IsLoaded()) << row.name;
    }
}

TEST_F(PrinterPortTest, MonitorThatWritesPastTheAnswerFailsTheMember)
{
    const NoDialog noDialog;
    monitor.AnswerWith("2\0"sv);
    monitor.data = [this](void* response, BYTE* buffer) {
        monitor.PlainData(response, buffer);
        buffer[2] = 'x';
    };
    EXPECT_EQ(AnswerOf(port->WaitForQuery(1)).result, invalidAddress.result);
    EXPECT_EQ(monitor.LivingResponses(), 0u);
}

} // namespace
