// SPDX-License-Identifier: MIT
#include "labelprinter/monitor/DeviceAnswers.h"

#include "labelprinter/LabelPrinterControl.h"
#include "labelprinter/monitor/QrmlRequest.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace {

using Answer = std::optional<std::string>;

constexpr DWORD textSize = 1024;

bool IsSet(const wchar_t* printer, const wchar_t* property, std::wstring_view value)
{
    return ::LabelPrinterGet(printer, property) == value;
}

bool IsConnected(const wchar_t* printer)
{
    return IsSet(printer, L"connection", L"connected");
}

/// One word of an answer: a truth.
std::string Truth(bool value)
{
    return value ? "1" : "0";
}

// ---- states ----

std::string Monitoring(const wchar_t* printer)
{
    return Truth(IsSet(printer, L"monitored", L"yes") && IsConnected(printer));
}

std::string StatusText(const wchar_t* printer)
{
    char text[textSize] = {};
    ::LabelPrinterStatusText(printer, text, textSize);
    return text;
}

std::string StatusFlags(const wchar_t* printer)
{
    DWORD flags = 0;
    ::LabelPrinterStatus(printer, &flags, nullptr);
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08lX", flags);
    return digits;
}

std::string StatusSeverity(const wchar_t* printer)
{
    LONG severity = 0;
    ::LabelPrinterStatus(printer, nullptr, &severity);
    return std::to_string(severity);
}

struct StateRow {
    std::string_view name;
    std::string (*read)(const wchar_t* printer);
};

constexpr std::array states{
    StateRow{"Monitoring Supported", Monitoring    },
    StateRow{"Status",               StatusText    },
    StateRow{"Status Flags 2",       StatusFlags   },
    StateRow{"Status Severity",      StatusSeverity},
};

/// An unknown state has an empty value.
Answer AnswerState(const wchar_t* printer, const QrmlElement& element)
{
    for (const StateRow& row : states) {
        if (row.name == element.Attribute("name")) return row.read(printer);
    }
    return std::string();
}

// ---- jobs ----

/// In the order of LabelPrinterVerdict.
constexpr std::array verdictWords{"printing", "completed", "verified", "failed"};

/// The number goes out signed, and so it comes in.
bool ReadJobId(std::string_view text, DWORD& jobId)
{
    long long number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    jobId = static_cast<DWORD>(number);
    return failure == std::errc() && end == text.data() + text.size();
}

Answer AnswerJob(const wchar_t* printer, const QrmlElement& element)
{
    DWORD jobId = 0;
    if (!ReadJobId(element.Attribute("id"), jobId) || !IsConnected(printer)) return std::nullopt;
    const std::string start = "<job id=\"" + std::string(element.Attribute("id")) + "\" status=\"";
    LabelPrinterJobRecord job{};
    if (::LabelPrinterJob(printer, jobId, &job) != ERROR_SUCCESS) return start + "unknown\" />";
    return start + verdictWords.at(static_cast<size_t>(job.verdict)) + "\" labels=\"" +
           std::to_string(job.labelsPrinted) + "\" />";
}

// ---- the port ----

/// Nobody but the port itself is asked, so these are known of a device that isn't there.
Answer AnswerPort(const wchar_t* printer, const QrmlElement& element)
{
    const std::string_view name = element.Attribute("name");
    if (name == "bidirectional") return Truth(IsSet(printer, L"bidirectional", L"yes"));
    if (name == "disconnected") return Truth(!IsConnected(printer));
    return std::string();
}

// ---- queries ----

LONG ReadTimeout(const QrmlElement& request, std::string_view name)
{
    const std::string_view text = request.Attribute(name);
    LONG value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

Answer StartQuery(const wchar_t* printer, const QrmlElement& element)
{
    if (element.children.size() != 1 || element.children[0].name != "request") return std::nullopt;
    const QrmlElement& request = element.children[0];
    const std::string key(element.Attribute("id"));
    const LabelPrinterTimeouts timeouts{ReadTimeout(request, "sendTimeout"),
                                        ReadTimeout(request, "receiveStartTimeout"),
                                        ReadTimeout(request, "receiveIntervalTimeout")};
    const DWORD result = ::LabelPrinterStartQuery(printer, key.c_str(), request.text.data(),
                                                  static_cast<DWORD>(request.text.size()), &timeouts);
    return result == ERROR_SUCCESS ? Answer(std::string()) : std::nullopt;
}

Answer QueryStatus(const wchar_t* printer, const std::string& key)
{
    LONG status = 0;
    ::LabelPrinterQueryStatus(printer, key.c_str(), &status);
    return std::to_string(status);
}

Answer QueryResponse(const wchar_t* printer, const std::string& key)
{
    DWORD length = 0;
    if (::LabelPrinterQueryResponse(printer, key.c_str(), nullptr, 0, &length) != ERROR_SUCCESS) return std::nullopt;
    std::string response(length, '\0');
    ::LabelPrinterQueryResponse(printer, key.c_str(), response.data(), length, &length);
    return response;
}

Answer AnswerQuery(const wchar_t* printer, const QrmlElement& element)
{
    const std::string key(element.Attribute("query"));
    if (element.Attribute("get") == "status") return QueryStatus(printer, key);
    if (element.Attribute("get") == "response") return QueryResponse(printer, key);
    return std::nullopt;
}

// ---- whole requests ----

struct ElementRow {
    std::string_view name;
    Answer (*answer)(const wchar_t* printer, const QrmlElement& element);
};

constexpr std::array elementRows{
    ElementRow{"state",   AnswerState},
    ElementRow{"job",     AnswerJob  },
    ElementRow{"port",    AnswerPort },
    ElementRow{"query",   StartQuery },
    ElementRow{"request", AnswerQuery},
};

Answer AnswerElement(const wchar_t* printer, const QrmlElement& element)
{
    for (const ElementRow& row : elementRows) {
        if (row.name == element.name) return row.answer(printer, element);
    }
    return std::nullopt;
}

/// The bytes of a device go out as they are; everything else is a text with its terminator.
bool IsDeviceBytes(const QrmlElement& element)
{
    return element.name == "request" && element.Attribute("get") == "response";
}

} // namespace

Answer AnswerRequest(const wchar_t* printerName, std::string_view request)
{
    const auto elements = ParseQrml(request);
    if (!elements) return std::nullopt;
    std::string joined;
    for (const QrmlElement& element : *elements) {
        const Answer answer = AnswerElement(printerName, element);
        if (!answer) return std::nullopt;
        if (&element != &elements->front()) joined += ';';
        joined += *answer;
    }
    if (IsDeviceBytes(elements->front())) return joined;
    if (request.ends_with(';') && !request.ends_with("&#00;")) joined += ';';
    return joined += '\0';
}
