// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"
#include "Modules.h"

#include "foundation/ImportedFunction.h"
#include "support/GoldenFile.h"
#include "support/RandomSeed.h"

#include <random>

namespace {

using namespace std::string_view_literals;

const std::string key = "WS01.0011223344556677.1";

class MonitorTest : public LabelPrinterTest {
protected:
    void SetUp() override
    {
        LabelPrinterTest::SetUp();
        ASSERT_TRUE(_module);
    }

    /// The answer to a request, with all bytes that count; "-" if it failed.
    std::string Ask(const std::string& request, const wchar_t* printer = printerName)
    {
        void* response = this;
        if (!_send(printer, request.c_str(), &response)) {
            EXPECT_EQ(response, nullptr) << request;
            return "-";
        }
        std::string answer(static_cast<size_t>(_size(response)), '\0');
        _data(response, answer.data());
        _free(response);
        return answer;
    }

    bool Post(const std::string& request) { return _send(printerName, request.c_str(), nullptr) != 0; }

    /// One of the nine requests as the product sends them.
    std::string AskGolden(const char* name) { return Ask(GoldenFile("qrml/" + std::string(name) + ".txt")); }

    std::string QueryStatus() { return Ask("<request query='" + key + "' id='1' get='status' />"); }
    std::string QueryResponse() { return Ask("<request query='" + key + "' id='1' get='response' />"); }

    template <typename Function>
    Function* Find(const char* name)
    {
        return ImportedFunction<Function>(_module.Get(), name);
    }

    OModuleHandle _module = LoadModule(L"kvnetmon.d64");
    DWORD(*_send)
    (const wchar_t*, const char*, void**) = Find<DWORD(const wchar_t*, const char*, void**)>("SendQRMLRequest");
    LONG (*_size)(void*) = Find<LONG(void*)>("HTTPResponse_Size");
    void (*_data)(void*, void*) = Find<void(void*, void*)>("HTTPResponse_Data");
    void (*_free)(void*) = Find<void(void*)>("HTTPResponse_Free");
};

TEST_F(MonitorTest, StatesAreJoinedAndEndWithANul)
{
    Set(L"ribbon", L"5");
    EXPECT_EQ(AskGolden("status-text"), "1;Ribbon Low\0"sv);
    EXPECT_EQ(AskGolden("status-flags-2"), "1;00000010\0"sv);
    EXPECT_EQ(AskGolden("status-severity"), "1;3\0"sv);
}

TEST_F(MonitorTest, PrinterIsNotMonitoredWhenItIsSetSoOrNotThere)
{
    Set(L"monitored", L"no");
    EXPECT_EQ(AskGolden("status-text"), "0;Ready\0"sv);
    Set(L"monitored", L"yes");
    Set(L"connection", L"disconnected");
    EXPECT_EQ(AskGolden("status-text"), "0;Offline\0"sv);
}

TEST_F(MonitorTest, UnknownStateIsEmpty)
{
    EXPECT_EQ(Ask("<state name='Colour' action='get' />&#00;"), "\0"sv);
    EXPECT_EQ(Ask("<state name='Colour' action='get' />;<state name='Status' action='get' />"), ";Ready\0"sv);
}

TEST_F(MonitorTest, JobIsToldWithTheDevicesVerdict)
{
    static constexpr struct {
        LabelPrinterVerdict verdict;
        std::string_view answer;
    } rows[] = {
        {LabelPrinterVerdict::Printing,  "<job id=\"7\" status=\"printing\" labels=\"0\" />\0"sv },
        {LabelPrinterVerdict::Completed, "<job id=\"7\" status=\"completed\" labels=\"0\" />\0"sv},
        {LabelPrinterVerdict::Verified,  "<job id=\"7\" status=\"verified\" labels=\"0\" />\0"sv },
        {LabelPrinterVerdict::Failed,    "<job id=\"7\" status=\"failed\" labels=\"0\" />\0"sv   },
    };
    for (const auto& row : rows) {
        ::LabelPrinterSetJob(printerName, 7, row.verdict);
        EXPECT_EQ(AskGolden("job-state"), row.answer);
    }
}

TEST_F(MonitorTest, UnknownJobHasNoVerdict)
{
    EXPECT_EQ(AskGolden("job-state"), "<job id=\"7\" status=\"unknown\" />\0"sv);
}

TEST_F(MonitorTest, JobNumbersComeInSigned)
{
    ::LabelPrinterSetJob(printerName, 0x80000001, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Ask("<job id='-2147483647' action='get' jobIdentity='true' jobStatus='true' />&#00;"),
              "<job id=\"-2147483647\" status=\"failed\" labels=\"0\" />\0"sv);
}

TEST_F(MonitorTest, NothingIsKnownOfTheJobsOfADeviceThatIsNotThere)
{
    ::LabelPrinterSetJob(printerName, 7, LabelPrinterVerdict::Completed);
    Set(L"connection", L"disconnected");
    EXPECT_EQ(AskGolden("job-state"), "-");
}

TEST_F(MonitorTest, PortTellsItsConditions)
{
    EXPECT_EQ(AskGolden("port-bidirectional"), "1;\0"sv);
    EXPECT_EQ(AskGolden("port-disconnected"), "0;\0"sv);
    Set(L"bidirectional", L"no");
    Set(L"connection", L"disconnected");
    EXPECT_EQ(AskGolden("port-bidirectional"), "0;\0"sv);
    EXPECT_EQ(AskGolden("port-disconnected"), "1;\0"sv);
    EXPECT_EQ(Ask("<port action='get' name='colour' />;"), ";\0"sv);
}

TEST_F(MonitorTest, QueryRunsFromStartToResponse)
{
    Set(L"queries", L"slow 100");
    EXPECT_TRUE(
        Post("<query id='" + key + "' name='VRL Query'><request id='1' name='VRL Request'>?head</request></query>"));
    EXPECT_EQ(QueryStatus(), "1\0"sv);
    EXPECT_EQ(QueryResponse(), "-");
    ::LabelPrinterAdvance(100);
    EXPECT_EQ(QueryStatus(), "2\0"sv);
    EXPECT_EQ(QueryResponse(), "head = closed\r\n") << "no terminator is added to the device's bytes";
}

TEST_F(MonitorTest, GoldenQueryIsUnderstood)
{
    EXPECT_TRUE(Post(GoldenFile("qrml/query-start.txt")));
    EXPECT_EQ(AskGolden("query-status"), "2\0"sv);
    EXPECT_EQ(AskGolden("query-response"), "ERROR\r\n"); // "ABC" is no command
}

TEST_F(MonitorTest, PayloadLosesItsEscapes)
{
    EXPECT_TRUE(Post("<query id='" + key +
                     "' name='VRL Query'><request id='1' name='VRL Request'>"
                     "?ECHO &#0;&quot;&amp;&lt;&gt;'&amp;lt;&#00;\x80\xFF\r\n</request></query>"));
    EXPECT_EQ(QueryStatus(), "2\0"sv);
    EXPECT_EQ(QueryResponse(), "\0\"&<>'&lt;&#00;\x80\xFF\r\n"sv);
}

TEST_F(MonitorTest, TimeoutsOfAQueryAreHonoured)
{
    Set(L"queries", L"pending");
    EXPECT_TRUE(Post("<query id='" + key +
                     "' name='VRL Query'><request id='1' name='VRL Request' sendTimeout='1' "
                     "receiveStartTimeout='70' receiveIntervalTimeout='3'>?head</request></query>"));
    EXPECT_EQ(QueryStatus(), "1\0"sv);
    ::LabelPrinterAdvance(69);
    EXPECT_EQ(QueryStatus(), "1\0"sv);
    ::LabelPrinterAdvance(1);
    EXPECT_EQ(QueryStatus(), "4\0"sv);
}

TEST_F(MonitorTest, UnknownQueryWaitsForEver)
{
    EXPECT_EQ(QueryStatus(), "0\0"sv);
    EXPECT_EQ(QueryResponse(), "-");
}

TEST_F(MonitorTest, PrintersAreAskedByTheirNames)
{
    ::LabelPrinterAdd(L"Other");
    ::LabelPrinterSet(L"Other", L"head", L"open");
    const std::string request = GoldenFile("qrml/status-text.txt");
    EXPECT_EQ(Ask(request, L"other"), "1;Head Open\0"sv);
    EXPECT_EQ(Ask(request, L"label"), "1;Ready\0"sv);
    EXPECT_EQ(Ask(request, L"nobody"), "-");
    EXPECT_EQ(Ask(request, L""), "-");
    EXPECT_EQ(Ask(request, nullptr), "-");
}

TEST_F(MonitorTest, MonitorCanFailOrBeSlow)
{
    Set(L"monitor", L"fails");
    EXPECT_EQ(AskGolden("status-text"), "-");
    EXPECT_FALSE(Post(GoldenFile("qrml/query-start.txt")));
    Set(L"monitor", L"slow 100");
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(AskGolden("status-text"), "1;Ready\0"sv);
    EXPECT_GE(::GetTickCount64() - start, 50u); // the clock is a coarse one
}

TEST_F(MonitorTest, RequestsAreCounted)
{
    AskGolden("status-text");
    Post(GoldenFile("qrml/query-start.txt"));
    Ask("no request");
    EXPECT_EQ(::LabelPrinterRequests(printerName), 3u);
}

TEST_F(MonitorTest, TextThatIsNoRequestFails)
{
    for (const char* const request : {"",
                                      ";",
                                      "<",
                                      "<>",
                                      "state",
                                      "<state",
                                      "<state />x",
                                      "<state name />",
                                      "<state name='Status />",
                                      "<state/>",
                                      "<state name='Status' action='get' />;;",
                                      "<colour />",
                                      "<state>",
                                      "<state></stat>",
                                      "<state><",
                                      "<port /",
                                      "<query id='1'></query>",
                                      "<query id='1'><state /></query>",
                                      "<query id='1'>x</query>",
                                      "<query id='1'><request /><request /></query>",
                                      "<job action='get' />",
                                      "<job id='x' />",
                                      "<job id='1x' />",
                                      "<request query='1' />",
                                      "<request query='1' get='answer' />",
                                      "&#00;",
                                      "<state name='Status' />&#00;;<state name='Status' />",
                                      "<a><a><a><a><a></a></a></a></a></a>"}) {
        EXPECT_EQ(Ask(request), "-") << request;
    }
    void* response = this;
    EXPECT_EQ(_send(printerName, nullptr, &response), 0u);
    EXPECT_EQ(response, nullptr);
}

TEST_F(MonitorTest, DeepRequestFails)
{
    std::string request;
    for (int depth = 0; depth < 100000; ++depth) request += "<a>";
    EXPECT_EQ(Ask(request), "-");
}

TEST_F(MonitorTest, AnswerThatIsNotOneHasNoBytes)
{
    EXPECT_EQ(_size(nullptr), 0);
    EXPECT_EQ(_size(this), 0);
    char untouched = 'x';
    _data(this, &untouched);
    EXPECT_EQ(untouched, 'x');
    _free(nullptr);
    _free(this);

    void* response = nullptr;
    ASSERT_EQ(_send(printerName, "<port action='get' name='disconnected' />;", &response), 1u);
    EXPECT_EQ(_size(response), 3);
    _free(response);
    EXPECT_EQ(_size(response), 0);
    _free(response);
}

using MonitorProperty = MonitorTest;

TEST_F(MonitorProperty, NoRequestMakesItStumble)
{
    const int count = RandomOperations(5'000, 200'000);
    std::mt19937_64 random(RandomSeed());
    const std::string pieces[] = {"<",  ">",     "/>",      "</",   "'",       "=",      " ",      ";", "&#00;",
                                  "&",  "state", "request", "job",  "query",   "port",   "name='", "x", "id='1'",
                                  "\n", "&lt;",  "get='",   "</a>", "status'", "Status", "&#0;"};
    for (int round = 0; round < count; ++round) {
        std::string request = random() % 2 ? "<state name='Status'" : "";
        for (size_t piece = random() % 12; piece > 0; --piece) request += pieces[random() % std::size(pieces)];
        Ask(request);
        if (HasFailure()) FAIL() << request;
    }
}

} // namespace
