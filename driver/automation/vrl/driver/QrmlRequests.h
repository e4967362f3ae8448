// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// The requests of QRML, the language in which a port monitor is asked for the state of a printer, a port or a job, and
/// handed a device query. Each is a fixed text but for one or two values, sent byte for byte as it stands here.
namespace Qrml {

// Two states at once: an answer holds both values, and only the second is read as one.
inline constexpr const char* statusTextRequest =
    "<state name='Monitoring Supported' action='get' />;<state name='Status' action='get' />&#00;";
inline constexpr const char* statusFlags2Request =
    "<state name='Monitoring Supported' action='get' />;<state name='Status Flags 2' action='get' />&#00;";
inline constexpr const char* statusSeverityRequest =
    "<state name='Monitoring Supported' action='get' />;<state name='Status Severity' action='get' />&#00;";

inline constexpr const char* portBidirectionalRequest = "<port action='get' name='bidirectional' />;";
inline constexpr const char* portDisconnectedRequest = "<port action='get' name='disconnected' />;";

std::string JobStateRequest(uint32_t jobId);

/// In the monitor's own unit; 0 and below leave the choice to it.
struct QueryTimeouts {
    int32_t send;
    int32_t receiveStart;
    int32_t receiveInterval;
};

/// Starts a device query with `payload` for the device under `key`.
std::string QueryStartRequest(std::string_view key, std::span<const unsigned char> payload,
                              const QueryTimeouts& timeouts);

std::string QueryStatusRequest(std::string_view key);
std::string QueryResponseRequest(std::string_view key);

} // namespace Qrml
