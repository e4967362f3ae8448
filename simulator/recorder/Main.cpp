// SPDX-License-Identifier: MIT

/// recorder PRINTER [FILE] [--seconds N]: writes every batch of change notifications that the printer's spooler tells,
/// as docs/recording.md describes, until Ctrl+C or the end of the time. Needs nothing but Windows.

#include "recorder/PrinterWatch.h"
#include "recorder/RecorderArguments.h"
#include "recorder/RecordingWriter.h"
#include "recorder/TextOutput.h"
#include "recorder/Utf8.h"

namespace {

constexpr int failed = 1;
constexpr int misused = 2;

HANDLE stopEvent = nullptr; // set by Ctrl+C; lives as long as the process

BOOL WINAPI Stop(DWORD)
{
    ::SetEvent(stopEvent);
    return TRUE;
}

void Complain(const std::wstring& message)
{
    TextOutput(STD_ERROR_HANDLE).Write(ToUtf8(message + L"\n"));
}

DWORD Remaining(ULONGLONG end)
{
    const ULONGLONG now = ::GetTickCount64();
    return now < end ? static_cast<DWORD>(end - now) : 0;
}

void Record(const RecorderArguments& arguments)
{
    PrinterWatch watch(arguments.printer);
    TextOutput output(STD_OUTPUT_HANDLE);
    if (!arguments.file.empty() && !output.Create(arguments.file)) throw WatchError::Last(L"the file can't be made");
    const auto write = [&output](const std::string& text) {
        if (!output.Write(text)) throw WatchError::Last(L"the recording can't be written");
    };

    write(RecordingText(watch.Header()));
    const ULONGLONG end = ::GetTickCount64() + arguments.seconds.value_or(0) * 1000ULL;
    while (const auto batch = watch.Next(stopEvent, arguments.seconds ? Remaining(end) : INFINITE))
        write(RecordingText(*batch));
}

} // namespace

int wmain(int count, wchar_t** values)
{
    const auto arguments = ReadArguments({values + 1, static_cast<size_t>(count > 0 ? count - 1 : 0)});
    if (!arguments) {
        Complain(recorderUsage);
        return misused;
    }
    stopEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ::SetConsoleCtrlHandler(Stop, TRUE);
    try {
        Record(*arguments);
        return 0;
    } catch (const WatchError& error) {
        Complain(L"recorder: " + error.Text());
        return failed;
    }
}
