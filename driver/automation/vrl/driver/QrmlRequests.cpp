// SPDX-License-Identifier: MIT
#include "vrl/driver/QrmlRequests.h"

#include <algorithm>
#include <array>

namespace {

struct Escape {
    unsigned char byte;
    std::string_view text;
};

/// Deliberate: the apostrophe, which ends an attribute, has no row.
constexpr std::array escapes{
    Escape{0,   "&#0;"  },
    Escape{'"', "&quot;"},
    Escape{'&', "&amp;" },
    Escape{'<', "&lt;"  },
    Escape{'>', "&gt;"  },
};

void AppendPayload(std::string& request, std::span<const unsigned char> payload)
{
    for (const unsigned char byte : payload) {
        const auto* const row = std::ranges::find(escapes, byte, &Escape::byte);
        if (row != escapes.end()) {
            request += row->text;
        } else {
            request += static_cast<char>(byte);
        }
    }
}

void AppendTimeout(std::string& request, std::string_view name, int32_t value)
{
    if (value <= 0) return;
    request.append(" ").append(name).append("='").append(std::to_string(value)).append("'");
}

std::string QueryRequest(std::string_view key, std::string_view what)
{
    std::string request = "<request query='";
    request.append(key).append("' id='1' get='").append(what).append("' />");
    return request;
}

} // namespace

std::string Qrml::JobStateRequest(uint32_t jobId)
{
    // Deliberate: the number goes out as a signed one.
    return "<job id='" + std::to_string(static_cast<int32_t>(jobId)) +
           "' action='get' jobIdentity='true' jobStatus='true' />&#00;";
}

std::string Qrml::QueryStartRequest(std::string_view key, std::span<const unsigned char> payload,
                                    const QueryTimeouts& timeouts)
{
    std::string request = "<query id='";
    request.append(key).append("' name='VRL Query'><request id='1' name='VRL Request'");
    AppendTimeout(request, "sendTimeout", timeouts.send);
    AppendTimeout(request, "receiveStartTimeout", timeouts.receiveStart);
    AppendTimeout(request, "receiveIntervalTimeout", timeouts.receiveInterval);
    request += ">";
    AppendPayload(request, payload);
    return request += "</request></query>";
}

std::string Qrml::QueryStatusRequest(std::string_view key)
{
    return QueryRequest(key, "status");
}

std::string Qrml::QueryResponseRequest(std::string_view key)
{
    return QueryRequest(key, "response");
}
