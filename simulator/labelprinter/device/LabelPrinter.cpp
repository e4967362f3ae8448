// SPDX-License-Identifier: MIT
#include "labelprinter/device/LabelPrinter.h"

#include "labelprinter/device/SetCommand.h"

#include <array>
#include <cstdio>

namespace {

constexpr const char* lineEnd = "\r\n";
constexpr const char* version = "VERSION = label printer simulator 1";
constexpr const char* refusal = "ERROR";
constexpr const char* consent = "OK";

/// In the order of LabelPrinterVerdict.
constexpr std::array verdictWords{"printing", "completed", "verified", "failed"};

std::string Flags(DWORD flags)
{
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08lX", flags);
    return digits;
}

} // namespace

DeviceState& LabelPrinter::State()
{
    _panel.Apply(_state);
    return _state;
}

DWORD LabelPrinter::BeginJob(DWORD jobId, std::wstring document)
{
    if (!State().connected) return ERROR_NOT_CONNECTED;
    if (_run) return ERROR_BUSY;
    _jobs.Begin(jobId, std::move(document));
    _run.emplace(jobId);
    return ERROR_SUCCESS;
}

SpoolerDeviceProgress LabelPrinter::WriteJob(std::string_view bytes)
{
    return Finish(_run->Write(State(), CurrentJob(), bytes));
}

SpoolerDeviceProgress LabelPrinter::EndJob()
{
    return Finish(_run->End(State(), CurrentJob()));
}

void LabelPrinter::CancelJob()
{
    CurrentJob().verdict = LabelPrinterVerdict::Failed;
    _run.reset();
}

/// The record of the job that is being printed; a new one if too many other jobs have pushed it out.
DeviceJob& LabelPrinter::CurrentJob()
{
    DeviceJob* const job = _jobs.Find(_run->JobId());
    return job ? *job : _jobs.Begin(_run->JobId(), {});
}

SpoolerDeviceProgress LabelPrinter::Finish(const SpoolerDeviceProgress& progress)
{
    if (progress.verdict != SpoolerDeviceVerdict::Pending) _run.reset();
    return progress;
}

std::string LabelPrinter::Reply(std::string_view payload)
{
    std::string reply;
    CommandReader reader;
    for (const char byte : payload) {
        if (const auto command = reader.Take(byte)) reply += ReplyTo(*command);
    }
    if (const auto command = reader.End()) reply += ReplyTo(*command);
    return reply;
}

std::string LabelPrinter::ReplyTo(const Command& command)
{
    if (command.word == "?ECHO") return command.arguments; // byte for byte, no line
    std::string line;
    if (command.word == "?VERSION") line = version;
    if (command.word == "?STATUS") line = "STATUS = " + Status().text;
    if (command.word == "?FLAGS") line = "FLAGS = " + Flags(Status().flags);
    if (command.word == "?SEVERITY") line = "SEVERITY = " + std::to_string(Status().severity);
    if (command.word == "?JOB") line = ReplyToJob(command.arguments);
    if (line.empty() && command.word.starts_with('?')) line = AnswerProperty(command, State());
    if (command.word == "SET" && ObeySet(command, State())) line = consent;
    return (line.empty() ? refusal : line) + lineEnd;
}

std::string LabelPrinter::ReplyToJob(const std::string& number)
{
    unsigned long jobId = 0;
    const DeviceJob* const job = ParseCount(number, jobId) ? _jobs.Find(jobId) : nullptr;
    if (!job) return {};
    return "JOB " + number + " = " + verdictWords.at(static_cast<size_t>(job->verdict)) + ", " +
           std::to_string(job->labelsPrinted) + " of " + std::to_string(job->labelsAsked) + " labels";
}
