// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"

namespace {

using namespace std::string_view_literals;

class CommandsTest : public LabelPrinterTest {
protected:
    static std::string Reply(std::string_view commands) { return ::LabelPrinterCommand(printerName, commands); }
};

TEST_F(CommandsTest, EachCommandOfAQueryHasALineOfReply)
{
    Set(L"media", L"12");
    EXPECT_EQ(Reply("?MEDIA\r\n?HEAD\r\n"), "media = 12 labels\r\nhead = closed\r\n");
}

TEST_F(CommandsTest, LastCommandNeedsNoLineEnd)
{
    EXPECT_EQ(Reply("?head"), "head = closed\r\n");
}

TEST_F(CommandsTest, EmptyLinesHaveNoReply)
{
    EXPECT_EQ(Reply(""), "");
    EXPECT_EQ(Reply("\r\n  \n\x02\x03\n"), "");
}

TEST_F(CommandsTest, QueriesTellWhatTheDeviceKnows)
{
    Set(L"ribbon", L"5");
    Set(L"pages", L"7");
    static constexpr struct {
        const char* command;
        const char* reply;
    } rows[] = {
        {"?STATUS",         "STATUS = Ribbon Low\r\n"                },
        {"?flags",          "FLAGS = 00000010\r\n"                   },
        {"?Severity",       "SEVERITY = 3\r\n"                       },
        {"?VERSION",        "VERSION = label printer simulator 1\r\n"},
        {"?RIBBON",         "ribbon = 5 labels\r\n"                  },
        {"?label length",   "label length = 50\r\n"                  },
        {"?LABEL   LENGTH", "label length = 50\r\n"                  },
        {"?pages",          "pages = 7\r\n"                          },
        {"?JOB 1",          "ERROR\r\n"                              },
        {"?JOB",            "ERROR\r\n"                              },
        {"?JOB one",        "ERROR\r\n"                              },
        {"?COLOUR",         "ERROR\r\n"                              },
        {"?",               "ERROR\r\n"                              },
        {"HELLO",           "ERROR\r\n"                              },
    };
    for (const auto& row : rows) EXPECT_EQ(Reply(row.command), row.reply) << row.command;
}

TEST_F(CommandsTest, JobsAreToldWithTheirVerdict)
{
    static constexpr struct {
        LabelPrinterVerdict verdict;
        const char* reply;
    } rows[] = {
        {LabelPrinterVerdict::Printing,  "JOB 7 = printing, 0 of 0 labels\r\n" },
        {LabelPrinterVerdict::Completed, "JOB 7 = completed, 0 of 0 labels\r\n"},
        {LabelPrinterVerdict::Verified,  "JOB 7 = verified, 0 of 0 labels\r\n" },
        {LabelPrinterVerdict::Failed,    "JOB 7 = failed, 0 of 0 labels\r\n"   },
    };
    for (const auto& row : rows) {
        ::LabelPrinterSetJob(printerName, 7, row.verdict);
        EXPECT_EQ(Reply("?JOB 7"), row.reply);
    }
}

TEST_F(CommandsTest, SetChangesAPropertyOfTheDevice)
{
    EXPECT_EQ(Reply("SET speed = 150\nset Label Length=75\n"), "OK\r\nOK\r\n");
    EXPECT_EQ(Get(L"speed"), L"150");
    EXPECT_EQ(Get(L"label length"), L"75");
}

TEST_F(CommandsTest, SetThatMakesNoSenseIsRefused)
{
    for (const char* const command : {"SET speed = fast", "SET speed", "SET = 1", "SET", "SET colour = red"}) {
        EXPECT_EQ(Reply(command), "ERROR\r\n") << command;
    }
    EXPECT_EQ(Get(L"speed"), L"100");
}

TEST_F(CommandsTest, DeviceKnowsNothingOfWhatLiesBeforeIt)
{
    for (const char* const name : {"connection", "bidirectional", "monitored", "monitor", "queries", "panel"}) {
        EXPECT_EQ(Reply("?" + std::string(name)), "ERROR\r\n") << name;
        EXPECT_EQ(Reply("SET " + std::string(name) + " = no"), "ERROR\r\n") << name;
    }
}

TEST_F(CommandsTest, EchoGivesBackEveryByteBehindIt)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    EXPECT_EQ(Reply("?ECHO " + bytes), bytes);
    EXPECT_EQ(Reply("?head\n?echo a\r\n?head"), "head = closed\r\na\r\n?head");
    EXPECT_EQ(Reply("?ECHO "), "");
    EXPECT_EQ(Reply("?ECHO"), "");
}

TEST_F(CommandsTest, OverlongLineIsCutIntoPieces)
{
    EXPECT_EQ(Reply(std::string(4096, 'x')), "ERROR\r\n");
    EXPECT_EQ(Reply(std::string(4097, 'x')), "ERROR\r\nERROR\r\n");
}

TEST_F(CommandsTest, ReplyIsCutToItsPlaceAndItsLengthTold)
{
    char reply[5] = "....";
    DWORD length = 0;
    EXPECT_EQ(::LabelPrinterCommand(printerName, "?head", 5, reply, 4, &length), 0u);
    EXPECT_STREQ(reply, "head");
    EXPECT_EQ(length, 15u);
}

} // namespace
