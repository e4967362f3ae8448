// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"

namespace {

class QueriesTest : public LabelPrinterTest {
protected:
    static void Start(const char* key, std::string_view payload = "?head", const LabelPrinterTimeouts& timeouts = {})
    {
        EXPECT_EQ(
            ::LabelPrinterStartQuery(printerName, key, payload.data(), static_cast<DWORD>(payload.size()), &timeouts),
            0u);
    }

    static LONG Status(const char* key)
    {
        LONG status = 99;
        EXPECT_EQ(::LabelPrinterQueryStatus(printerName, key, &status), 0u);
        return status;
    }

    /// "-" if there is none.
    static std::string Response(const char* key)
    {
        char response[1000];
        DWORD length = 0;
        const DWORD result = ::LabelPrinterQueryResponse(printerName, key, response, sizeof response, &length);
        return result == ERROR_SUCCESS ? std::string(response, length) : "-";
    }
};

TEST_F(QueriesTest, DeviceAnswersAtOnce)
{
    Start("1");
    EXPECT_EQ(Status("1"), 2);
    EXPECT_EQ(Response("1"), "head = closed\r\n");
    EXPECT_EQ(Response("1"), "head = closed\r\n") << "an answer can be read again";
}

TEST_F(QueriesTest, SlowDeviceAnswersInItsTime)
{
    Set(L"queries", L"slow 200");
    Start("1");
    EXPECT_EQ(Status("1"), 1);
    ::LabelPrinterAdvance(199);
    EXPECT_EQ(Status("1"), 1);
    EXPECT_EQ(Response("1"), "-");
    Set(L"head", L"open"); // it answers with what is so then
    ::LabelPrinterAdvance(1);
    EXPECT_EQ(Status("1"), 2);
    EXPECT_EQ(Response("1"), "head = open\r\n");
}

TEST_F(QueriesTest, SlownessIsThatOfTheStart)
{
    Set(L"queries", L"slow 200");
    Start("1");
    Set(L"queries", L"answered");
    EXPECT_EQ(Status("1"), 1);
}

TEST_F(QueriesTest, PendingQueryWaitsUntilItsTimeIsOver)
{
    Set(L"queries", L"pending");
    Start("limited", "?head", {0, 500, 0});
    Start("unlimited");
    ::LabelPrinterAdvance(499);
    EXPECT_EQ(Status("limited"), 1);
    EXPECT_EQ(Status("unlimited"), 1);
    ::LabelPrinterAdvance(1);
    EXPECT_EQ(Status("limited"), 4);
    ::LabelPrinterAdvance(29499);
    EXPECT_EQ(Status("unlimited"), 1);
    ::LabelPrinterAdvance(1);
    EXPECT_EQ(Status("unlimited"), 4);
    EXPECT_EQ(Response("unlimited"), "-");
}

TEST_F(QueriesTest, FailedQueryHasNoAnswer)
{
    Set(L"queries", L"failed");
    Start("1");
    EXPECT_EQ(Status("1"), 3);
    EXPECT_EQ(Response("1"), "-");
}

TEST_F(QueriesTest, LostQueryIsUnknown)
{
    Set(L"queries", L"lost");
    Start("1");
    EXPECT_EQ(Status("1"), 0);
    EXPECT_EQ(Response("1"), "-");
}

TEST_F(QueriesTest, UnknownKeyWaitsForEver)
{
    EXPECT_EQ(Status("never"), 0);
    EXPECT_EQ(Response("never"), "-");
}

TEST_F(QueriesTest, QueryWaitsForTheDeviceUntilItsTimeIsOver)
{
    Set(L"connection", L"disconnected");
    Start("1", "?head", {300, 0, 0});
    Start("2", "?head", {300, 0, 0});
    EXPECT_EQ(Status("1"), 0);
    ::LabelPrinterAdvance(299);
    EXPECT_EQ(Status("1"), 0);
    Set(L"connection", L"connected");
    EXPECT_EQ(Status("1"), 2);
    Set(L"connection", L"disconnected");
    ::LabelPrinterAdvance(1);
    EXPECT_EQ(Status("1"), 2);
    EXPECT_EQ(Status("2"), 4);
}

TEST_F(QueriesTest, SeveralQueriesRunSideBySide)
{
    Set(L"queries", L"slow 100");
    Start("slow");
    Set(L"queries", L"failed");
    Start("failed");
    Set(L"queries", L"answered");
    Start("a", "?ECHO a");
    Start("b", "?ECHO b");
    EXPECT_EQ(Status("b"), 2);
    EXPECT_EQ(Status("a"), 2);
    EXPECT_EQ(Status("slow"), 1);
    EXPECT_EQ(Status("failed"), 3);
    EXPECT_EQ(Response("a"), "a");
    EXPECT_EQ(Response("b"), "b");
}

TEST_F(QueriesTest, KeyInUseBeginsAgain)
{
    Start("1", "?ECHO first");
    EXPECT_EQ(Status("1"), 2);
    Set(L"queries", L"slow 100");
    Start("1", "?ECHO second");
    EXPECT_EQ(Status("1"), 1);
    ::LabelPrinterAdvance(100);
    Status("1");
    EXPECT_EQ(Response("1"), "second");
}

TEST_F(QueriesTest, AnswerIsReadyOnceItHasBeenSeenSo)
{
    Start("1");
    EXPECT_EQ(Response("1"), "-");
    Status("1");
    EXPECT_EQ(Response("1"), "head = closed\r\n");
}

TEST_F(QueriesTest, DeviceRemembersAThousandQueries)
{
    for (int query = 0; query <= 1000; ++query) Start(std::to_string(query).c_str());
    EXPECT_EQ(Status("0"), 0);
    EXPECT_EQ(Status("1"), 2);
    EXPECT_EQ(Status("1000"), 2);
}

TEST_F(QueriesTest, ClockRunsByItselfUntilItIsStopped)
{
    ::LabelPrinterReset();
    ::LabelPrinterAdd(printerName);
    Set(L"queries", L"slow 1");
    Start("1");
    const ULONGLONG start = ::GetTickCount64();
    LONG status = 1;
    while (status == 1 && ::GetTickCount64() - start < 60000) status = Status("1");
    EXPECT_EQ(status, 2);
}

} // namespace
