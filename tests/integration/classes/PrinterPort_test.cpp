// SPDX-License-Identifier: MIT
#include "support/BackgroundCall.h"
#include "support/com/ApartmentThread.h"
#include "support/com/ByteArray.h"
#include "support/com/LateBound.h"
#include "support/com/ScriptHost.h"
#include "support/product/LabelPrinterTest.h"

namespace {

class PortObject : public LabelPrinterTest {
protected:
    void SetUp() override
    {
        LabelPrinterTest::SetUp();
        port = ChildOf(&IPrinter::get_Port);
    }

    void TearDown() override
    {
        port.Reset();
        LabelPrinterTest::TearDown();
    }

    static ComPtr<IQueryCommand> Command(std::wstring_view text)
    {
        auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
        EXPECT_EQ(command->put_Text(NewBstr(text).Get()), S_OK);
        return command;
    }

    long Start(std::wstring_view text)
    {
        long number = 0;
        EXPECT_EQ(port->StartQuery(Command(text).Get(), &number), S_OK);
        return number;
    }

    ComPtr<IQueryResponse> Response(long number)
    {
        ComPtr<IQueryResponse> response;
        EXPECT_EQ(port->GetQueryResponse(number, &response), S_OK);
        return response;
    }

    /// The text of an answered query; "pending", "failed" or "unknown" for any other.
    std::wstring Outcome(long number)
    {
        const auto response = Response(number);
        if (Bool(*response.Get(), &IQueryResponse::get_Pending)) return L"pending";
        if (Bool(*response.Get(), &IQueryResponse::get_Failed)) return L"failed";
        if (!Bool(*response.Get(), &IQueryResponse::get_Responded)) return L"unknown";
        return Text(*response.Get(), &IQueryResponse::get_Text);
    }

    ComPtr<IPrinterPort> port;
};

TEST_F(PortObject, DescribesThePrintersPort)
{
    EXPECT_EQ(Text(*port.Get(), &IPrinterPort::get_Name), L"LPT1:");
    EXPECT_EQ(Text(*port.Get(), &IPrinterPort::get_Description), L"Local Port");
    EXPECT_EQ(Text(*port.Get(), &IPrinterPort::get_MonitorName), L"Local Port");
}

TEST_F(PortObject, TellsTheConditionsOfTheDevicesPort)
{
    EXPECT_EQ(Bool(*port.Get(), &IPrinterPort::get_Bidirectional), VARIANT_TRUE);
    EXPECT_EQ(Bool(*port.Get(), &IPrinterPort::get_Disconnected), VARIANT_FALSE);
    SetDevice(L"bidirectional", L"no");
    SetDevice(L"connection", L"disconnected");
    EXPECT_EQ(Bool(*port.Get(), &IPrinterPort::get_Bidirectional), VARIANT_FALSE);
    EXPECT_EQ(Bool(*port.Get(), &IPrinterPort::get_Disconnected), VARIANT_TRUE);
}

TEST_F(PortObject, QueryIsAnsweredInTextDigitsAndBytes)
{
    const long number = Start(L"?head");
    EXPECT_EQ(port->WaitForQuery(number), S_OK);
    const auto response = Response(number);
    EXPECT_EQ(Text(*response.Get(), &IQueryResponse::get_Text), L"head = closed\r\n");
    EXPECT_EQ(Text(*response.Get(), &IQueryResponse::get_Hexadecimal), L"68656164203D20636C6F7365640D0A");
    _variant_t binary;
    EXPECT_EQ(response->get_Binary(&binary), S_OK);
    EXPECT_EQ(BytesOf(binary), "head = closed\r\n");
}

TEST_F(PortObject, EveryByteGoesToTheDeviceAndBack)
{
    std::string bytes = "?ECHO ";
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    const auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
    EXPECT_EQ(command->put_Binary(ByteArray(bytes)), S_OK);
    long number = 0;
    EXPECT_EQ(port->StartQuery(command.Get(), &number), S_OK);
    EXPECT_EQ(port->WaitForQuery(number), S_OK);
    _variant_t binary;
    EXPECT_EQ(Response(number)->get_Binary(&binary), S_OK);
    EXPECT_EQ(BytesOf(binary), bytes.substr(6));
}

TEST_F(PortObject, LargeAnswerComesWhole)
{
    std::string bytes = "?ECHO " + std::string(1 << 20, 'x');
    const auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
    EXPECT_EQ(command->put_Binary(ByteArray(bytes)), S_OK);
    long number = 0;
    EXPECT_EQ(port->StartQuery(command.Get(), &number), S_OK);
    EXPECT_EQ(port->WaitForQuery(number), S_OK);
    EXPECT_EQ(Text(*Response(number).Get(), &IQueryResponse::get_Text).size(), size_t{1} << 20);
}

TEST_F(PortObject, SeveralQueriesRunAtOnce)
{
    SetDevice(L"queries", L"slow 100");
    const long slow = Start(L"?ECHO slow");
    SetDevice(L"queries", L"failed");
    const long failing = Start(L"?ECHO failing");
    SetDevice(L"queries", L"pending");
    const long pending = Start(L"?ECHO pending");
    SetDevice(L"queries", L"answered");
    const long quick = Start(L"?ECHO quick");
    EXPECT_EQ(Outcome(quick), L"quick");
    EXPECT_EQ(Outcome(slow), L"pending");
    EXPECT_EQ(Outcome(failing), L"failed");
    EXPECT_EQ(Outcome(pending), L"pending");
    EXPECT_EQ(AnswerOf(port->WaitForQuery(failing)), saysFalse);
    ::LabelPrinterAdvance(100);
    EXPECT_EQ(Outcome(slow), L"slow");
    ::LabelPrinterAdvance(30000);
    EXPECT_EQ(Outcome(pending), L"failed");
}

TEST_F(PortObject, QueryOfAnotherObjectIsKnownByItsNumber)
{
    const long number = Start(L"?ECHO once");
    port = ChildOf(&IPrinter::get_Port);
    EXPECT_EQ(Outcome(number), L"once");
}

TEST_F(PortObject, LostQueryWaitsForEver)
{
    SetDevice(L"queries", L"lost");
    EXPECT_EQ(Outcome(Start(L"?head")), L"pending");
    EXPECT_EQ(Outcome(4711), L"pending");
}

TEST_F(PortObject, WaitOutlastsAMonitorThatIsAway)
{
    const long number = Start(L"?head");
    SetDevice(L"monitor", L"fails");
    const DWORD before = ::LabelPrinterRequests(printerName);
    BackgroundCall waiting([&] { EXPECT_EQ(port->WaitForQuery(number), S_OK); });
    EXPECT_TRUE(waiting.IsHeldUp());
    EXPECT_GT(::LabelPrinterRequests(printerName), before);
    SetDevice(L"monitor", L"works");
    EXPECT_TRUE(waiting.Ends());
}

TEST_F(PortObject, WaitOutlastsItsPrinterObject)
{
    SetDevice(L"queries", L"slow 100");
    const long number = Start(L"?head");
    BackgroundCall waiting([waited = port, number] { EXPECT_EQ(waited->WaitForQuery(number), S_OK); });
    port.Reset();
    ::LabelPrinterAdvance(100);
    EXPECT_TRUE(waiting.Ends());
}

TEST_F(PortObject, RefusedQueryTellsSo)
{
    SetDevice(L"monitor", L"fails");
    long number = 0;
    EXPECT_EQ(AnswerOf(port->StartQuery(Command(L"?head").Get(), &number)), queryFailed);
    SetDevice(L"monitor", L"works");
    EXPECT_EQ(Start(L"?head"), 1);
}

TEST_F(PortObject, PlainPrinterHasOnlyItsPort)
{
    AddPrinterNamed(L"Plain");
    port = ChildOf(&IPrinter::get_Port, L"Plain");
    EXPECT_EQ(Text(*port.Get(), &IPrinterPort::get_Name), L"LPT1:");
    VARIANT_BOOL value = 99;
    EXPECT_EQ(AnswerOf(port->get_Bidirectional(&value)), featureNotSupported);
    EXPECT_EQ(AnswerOf(port->WaitForQuery(1)), featureNotSupported);
}

TEST_F(PortObject, LateBoundCallerAsksAndReads)
{
    const auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
    EXPECT_EQ(LateBound(command.Get()).Put("Hexadecimal", L"3F68656164").result, S_OK);
    EXPECT_EQ(LateBound(command.Get()).Put("SendTimeout", 5000l).result, S_OK);
    EXPECT_EQ(_bstr_t(LateBound(command.Get()).Get("Text").value), _bstr_t(L"?head"));

    const LateBound late(port.Get());
    const LateResult started = late.Call("StartQuery", {_variant_t(static_cast<IDispatch*>(command.Get()))});
    EXPECT_EQ(started.result, S_OK);
    EXPECT_EQ(long(started.value), 1);
    EXPECT_EQ(late.Call("WaitForQuery", {started.value}).result, S_OK);
    const LateResult response = late.Call("GetQueryResponse", {started.value});
    EXPECT_EQ(response.result, S_OK);
    EXPECT_EQ(_bstr_t(LateBound(response.value.pdispVal).Get("Text").value), _bstr_t(L"head = closed\r\n"));
    EXPECT_EQ(BytesOf(LateBound(response.value.pdispVal).Get("Binary").value), "head = closed\r\n");
}

TEST_F(PortObject, LateBoundCallerIsToldTheFailure)
{
    const auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
    const LateResult failed =
        LateBound(port.Get()).Call("StartQuery", {_variant_t(static_cast<IDispatch*>(command.Get()))});
    EXPECT_EQ(failed.code, invalidArgument.result);
    EXPECT_EQ(failed.description, L"Invalid argument");
}

TEST_F(PortObject, ScriptAsksTheDevice)
{
    for (const auto& [language, script] : {
             std::pair{L"VBScript", L"Set command = Host.Command()\ncommand.Text = \"?head\"\nSet port = Host.Port()\n"
                                    L"number = port.StartQuery(command)\nport.WaitForQuery number\n"
                                    L"Set response = port.GetQueryResponse(number)\n"
                                    L"Host.Tell response.Text, response.Hexadecimal, response.Responded\n"},
             std::pair{L"JScript",  L"var command = Host.Command(); command.Text = '?head'; var port = Host.Port();\n"
                                   L"var number = port.StartQuery(command); port.WaitForQuery(number);\n"
                                   L"var response = port.GetQueryResponse(number);\n"
                                   L"Host.Tell(response.Text, response.Hexadecimal, response.Responded);\n"}
    }) {
        std::wstring told;
        ApartmentThread thread(COINIT_MULTITHREADED);
        thread.Run([&] {
            const auto command = Create<IQueryCommand>(__uuidof(QueryCommand));
            ScriptHost host(language);
            host.AddFunction(L"Command",
                             [&](const auto&) { return _variant_t(static_cast<IDispatch*>(command.Get())); });
            host.AddFunction(L"Port", [&](const auto&) { return _variant_t(static_cast<IDispatch*>(port.Get())); });
            host.AddFunction(L"Tell", [&](const auto& values) {
                for (const _variant_t& value : values) told += std::wstring(_bstr_t(value)) + L"|";
                return _variant_t();
            });
            EXPECT_EQ(host.Run(script), "") << language;
        });
        EXPECT_TRUE(told.starts_with(L"head = closed\r\n|68656164203D20636C6F7365640D0A|")) << language;
    }
}

TEST_F(PortObject, BytesCrossApartments)
{
    ApartmentThread owner(COINIT_APARTMENTTHREADED);
    Microsoft::WRL::ComPtr<IStream> stream;
    owner.Run([&] {
        const auto command = Command(L"AB\u00E4");
        EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(__uuidof(IQueryCommand), command.Get(), &stream), S_OK);
    });
    ApartmentThread user(COINIT_APARTMENTTHREADED);
    user.Run([&] {
        ComPtr<IQueryCommand> proxy;
        ASSERT_EQ(::CoGetInterfaceAndReleaseStream(stream.Detach(), IID_PPV_ARGS(&proxy)), S_OK);
        _variant_t binary;
        EXPECT_EQ(proxy->get_Binary(&binary), S_OK);
        EXPECT_EQ(BytesOf(binary).substr(0, 2), "AB");
        EXPECT_EQ(proxy->put_Binary(ByteArray("CD")), S_OK);
        EXPECT_EQ(Text(*proxy.Get(), &IQueryCommand::get_Text), L"CD");
        EXPECT_EQ(proxy->put_Binary(_variant_t(L"text")), S_FALSE);
    });
}

} // namespace
