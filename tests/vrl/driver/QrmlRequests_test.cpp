// SPDX-License-Identifier: MIT
#include "vrl/driver/QrmlRequests.h"

#include "support/GoldenFile.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

constexpr const char* key = "WS01.0011223344556677.1";
constexpr Qrml::QueryTimeouts noTimeouts{0, 0, 0};

std::string QueryStart(std::string_view payload, const Qrml::QueryTimeouts& timeouts = noTimeouts)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(payload.data());
    return Qrml::QueryStartRequest(key, {bytes, payload.size()}, timeouts);
}

/// What stands between the tags of a query's one request.
std::string PayloadOnTheWire(std::string_view payload)
{
    const std::string request = QueryStart(payload);
    const std::string before =
        "<query id='WS01.0011223344556677.1' name='VRL Query'><request id='1' name='VRL Request'>";
    const std::string after = "</request></query>";
    EXPECT_EQ(request.substr(0, before.size()), before);
    EXPECT_EQ(request.substr(request.size() - after.size()), after);
    return request.substr(before.size(), request.size() - before.size() - after.size());
}

TEST(QrmlRequests, AreTheGoldenOnesByteForByte)
{
    const struct {
        const char* file;
        std::string request;
    } rows[] = {
        {"status-text",        Qrml::statusTextRequest       },
        {"status-flags-2",     Qrml::statusFlags2Request     },
        {"status-severity",    Qrml::statusSeverityRequest   },
        {"job-state",          Qrml::JobStateRequest(7)      },
        {"port-bidirectional", Qrml::portBidirectionalRequest},
        {"port-disconnected",  Qrml::portDisconnectedRequest },
        {"query-start",        QueryStart("ABC",               {5000, 0, -1})},
        {"query-status",                    Qrml::QueryStatusRequest(key)                                    },
        {"query-response",                    Qrml::QueryResponseRequest(key)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.request, GoldenFile("qrml/" + std::string(row.file) + ".txt")) << row.file;
}

TEST(QrmlRequests, JobNumberGoesOutAsASignedOne)
{
    static constexpr struct {
        uint32_t jobId;
        const char* start;
    } rows[] = {
        {0,          "<job id='0' "          },
        {0x7FFFFFFF, "<job id='2147483647' " },
        {0x80000000, "<job id='-2147483648' "},
        {0xFFFFFFFF, "<job id='-1' "         },
    };
    for (const auto& row : rows) EXPECT_TRUE(Qrml::JobStateRequest(row.jobId).starts_with(row.start)) << row.jobId;
}

TEST(QrmlRequests, TimeoutsAboveZeroGoOutInTheirOrder)
{
    static constexpr struct {
        Qrml::QueryTimeouts timeouts;
        const char* attributes;
    } rows[] = {
        {{0, 0, 0},                   ""                                                   },
        {{-1, -5000, INT_MIN},        ""                                                   },
        {{1, 0, 0},                   " sendTimeout='1'"                                   },
        {{0, 2, 0},                   " receiveStartTimeout='2'"                           },
        {{0, 0, 3},                   " receiveIntervalTimeout='3'"                        },
        {{0, 2, 3},                   " receiveStartTimeout='2' receiveIntervalTimeout='3'"},
        {{INT_MAX, INT_MAX, INT_MAX},
         " sendTimeout='2147483647' receiveStartTimeout='2147483647'"
         " receiveIntervalTimeout='2147483647'"                                            },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(QueryStart("", row.timeouts), "<query id='WS01.0011223344556677.1' name='VRL Query'>"
                                                "<request id='1' name='VRL Request'" +
                                                    std::string(row.attributes) + "></request></query>");
    }
}

TEST(QrmlRequests, PayloadBytesThatWouldEndItAreEscaped)
{
    using namespace std::string_view_literals;
    static constexpr struct {
        std::string_view payload;
        std::string_view wire;
    } rows[] = {
        {""sv,             ""sv                        },
        {"a<b"sv,          "a&lt;b"sv                  },
        {"a>b"sv,          "a&gt;b"sv                  },
        {"a&b"sv,          "a&amp;b"sv                 },
        {"a\"b"sv,         "a&quot;b"sv                },
        {"a\0b"sv,         "a&#0;b"sv                  },
        {"it's"sv,         "it's"sv                    },
        {"\0\0"sv,         "&#0;&#0;"sv                },
        {"&lt;"sv,         "&amp;lt;"sv                },
        {"\r\n\t\x1B"sv,   "\r\n\t\x1B"sv              },
        {"\x80\xE4\xFF"sv, "\x80\xE4\xFF"sv            },
        {"<\"&\0>'"sv,     "&lt;&quot;&amp;&#0;&gt;'"sv},
    };
    for (const auto& row : rows) EXPECT_EQ(PayloadOnTheWire(row.payload), row.wire);
}

TEST(QrmlRequests, EveryOtherByteGoesOutAsItIs)
{
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        if (std::string_view("\0\"&<>", 5).find(character) != std::string_view::npos) continue;
        EXPECT_EQ(PayloadOnTheWire({&character, 1}), std::string(1, character)) << byte;
    }
}

TEST(QrmlRequests, KeyGoesOutAsItIs)
{
    EXPECT_EQ(Qrml::QueryStatusRequest("B\xC4R.00.2"), "<request query='B\xC4R.00.2' id='1' get='status' />");
    EXPECT_EQ(Qrml::QueryResponseRequest(""), "<request query='' id='1' get='response' />");
}

} // namespace
