// SPDX-License-Identifier: MIT

// Attaches to the queue of a printer and prints each event of its jobs as it comes, until a job is final.
//
//     watch PRINTER              watches whatever is printed next
//     watch PRINTER FILE [NAME]  sends FILE first, as a job of that name
//
// The exit code is the job's verdict: 0 delivered, 1 cancelled, 2 for a call that failed.

#include "cpp/EventSink.h"

namespace {

using Microsoft::WRL::ComPtr;

constexpr int delivered = 0;
constexpr int cancelled = 1;
constexpr int callFailed = 2;

/// The events of a queue by their dispatch identifiers, which are the same for the events of a single job.
constexpr const char* eventNames[] = {
    "",
    "OnJobStarted",
    "OnJobPaused",
    "OnJobResumed",
    "OnJobCancelled",
    "OnJobSent",
    "OnJobPrinted",
    "OnJobCompleted",
    "OnJobError",
    "OnJobFinalized",
    "OnJobStatusChanged",
    "OnJobTotalPagesChanged",
    "OnJobPagesPrintedChanged",
    "OnJobPriorityChanged",
    "OnJobPositionChanged",
    "OnJobNew",
};

enum : DISPID { onJobCancelled = 4, onJobError = 8, onJobFinalized = 9, onJobStatusChanged = 10 };

/// Prints what it is told.
class QueuePrinter final : public EventSink<_IPrintQueueEvents> {
public:
    /// Set once a job is final.
    HANDLE Final() const noexcept { return _final; }

    int Verdict() const noexcept { return _verdict; }

private:
    ~QueuePrinter() override { ::CloseHandle(_final); }

    HRESULT OnEvent(DISPID event, std::span<const VARIANT> arguments) override
    {
        if (event < 1 || event >= static_cast<DISPID>(std::size(eventNames))) return DISP_E_MEMBERNOTFOUND;

        long jobId = 0;
        if (const auto job = ObjectIn<IPrintJob>(arguments.back())) job->get_JobId(&jobId);
        PrintTime();
        std::printf("job %ld  %-24s  %ls\n", jobId, eventNames[event], Details(event, arguments).c_str());
        std::fflush(stdout);

        if (event == onJobCancelled) _verdict = cancelled;
        if (event == onJobFinalized) ::SetEvent(_final);
        return S_OK;
    }

    /// What an event tells beside the job: a status, or an old and a new number.
    static std::wstring Details(DISPID event, std::span<const VARIANT> arguments)
    {
        if (event == onJobError) return TextOf(ObjectIn<IPrinterStatus>(arguments[0]).Get(), &IPrinterStatus::get_Text);
        if (event == onJobStatusChanged)
            return TextOf(ObjectIn<IPrintJobStatus>(arguments[0]).Get(), &IPrintJobStatus::get_Text);
        if (arguments.size() < 3) return {};
        return std::to_wstring(arguments[1].lVal) + L" -> " + std::to_wstring(arguments[0].lVal);
    }

    const HANDLE _final = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::atomic<int> _verdict{delivered};
};

int Failed(const char* what, HRESULT result)
{
    PrintFailure(what, result);
    return callFailed;
}

int Watch(const wchar_t* printerName, const wchar_t* fileName, const wchar_t* jobName)
{
    ComPtr<IPrinter> printer;
    HRESULT result = ::CoCreateInstance(__uuidof(Printer), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&printer));
    if (FAILED(result)) return Failed("Vorlane.Printer", result);
    result = printer->Initialize(_bstr_t(printerName));
    if (FAILED(result)) return Failed("Initialize", result);
    ComPtr<IPrintQueue> queue;
    result = printer->get_Queue(&queue);
    if (FAILED(result)) return Failed("Queue", result);

    ComPtr<QueuePrinter> sink;
    *sink.GetAddressOf() = new QueuePrinter;
    const Connection<_IPrintQueueEvents> connection(queue.Get(), sink.Get());
    if (FAILED(connection.Result())) return Failed("Advise", connection.Result());

    // A file that the spooler does not take whole gives S_FALSE, which is no failure.
    if (fileName) result = printer->SendFile(_bstr_t(fileName), _bstr_t(jobName));
    if (result != S_OK) return Failed("SendFile", result);
    ::WaitForSingleObject(sink->Final(), INFINITE);
    return sink->Verdict();
}

} // namespace

int wmain(int count, wchar_t** words)
{
    if (count < 2 || count > 4) {
        std::fputs("usage: watch PRINTER [FILE [NAME]]\n", stderr);
        return callFailed;
    }
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const int verdict = Watch(words[1], count > 2 ? words[2] : nullptr, count > 3 ? words[3] : L"");
    ::CoUninitialize();
    return verdict;
}
