// SPDX-License-Identifier: MIT
#include "ScriptedDevice.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace {

std::atomic<ScriptedDevice*> current;
int jobHandle; // the device has one job at a time

std::string Narrow(std::wstring_view text)
{
    return std::string(text.begin(), text.end());
}

DWORD Attach(const wchar_t* printerName)
{
    if (current) current.load()->Note("attach " + Narrow(printerName));
    return ERROR_SUCCESS;
}

DWORD Detach(const wchar_t* printerName)
{
    if (current) current.load()->Note("detach " + Narrow(printerName));
    return ERROR_SUCCESS;
}

DWORD Configure(const wchar_t* printerName, const wchar_t* name, const wchar_t* value)
{
    current.load()->Note("configure " + Narrow(printerName) + " " + Narrow(name) + "=" + Narrow(value));
    return current.load()->Configure(name);
}

DWORD Status(const wchar_t*, DWORD* printerStatus)
{
    return current.load()->Status(printerStatus);
}

DWORD BeginJob(const SpoolerDeviceJob* job, void** handle)
{
    current.load()->Note("begin " + Narrow(job->printerName) + " " + Narrow(job->portName) + " job " +
                         std::to_string(job->jobId) + " " + Narrow(job->document));
    *handle = &jobHandle;
    return current.load()->Begin();
}

DWORD WriteJob(void* handle, const void* bytes, DWORD count, SpoolerDeviceProgress* progress)
{
    EXPECT_EQ(handle, &jobHandle);
    current.load()->Note("write " + std::to_string(count));
    return current.load()->Write(bytes, count, progress);
}

DWORD EndJob(void* handle, SpoolerDeviceProgress* progress)
{
    EXPECT_EQ(handle, &jobHandle);
    current.load()->Note("end");
    return current.load()->End(progress);
}

DWORD CancelJob(void* handle)
{
    EXPECT_EQ(handle, &jobHandle);
    if (current) current.load()->Note("cancel");
    return ERROR_SUCCESS;
}

constexpr SpoolerDevice functions{
    sizeof(SpoolerDevice), Attach, Detach, Configure, Status, BeginJob, WriteJob, EndJob, CancelJob,
};

} // namespace

ScriptedDevice::ScriptedDevice()
{
    current = this;
}

ScriptedDevice::~ScriptedDevice()
{
    current = nullptr;
}

void ScriptedDevice::Answer(std::vector<SpoolerDeviceProgress> answers)
{
    const std::lock_guard guard(_lock);
    _answers = std::move(answers);
}

void ScriptedDevice::SetStatus(DWORD bits, DWORD result)
{
    const std::lock_guard guard(_lock);
    _status = bits;
    _statusResult = result;
}

void ScriptedDevice::SetResults(DWORD begin, DWORD write)
{
    const std::lock_guard guard(_lock);
    _beginResult = begin;
    _writeResult = write;
}

void ScriptedDevice::Refuse(const std::wstring& word)
{
    const std::lock_guard guard(_lock);
    _refused = word;
}

std::vector<std::string> ScriptedDevice::TakeCalls()
{
    const std::lock_guard guard(_lock);
    return std::exchange(_calls, {});
}

std::string ScriptedDevice::Taken() const
{
    const std::lock_guard guard(_lock);
    return _taken;
}

void ScriptedDevice::Note(const std::string& call)
{
    const std::lock_guard guard(_lock);
    _calls.push_back(call);
}

DWORD ScriptedDevice::Configure(const std::wstring& word)
{
    const std::lock_guard guard(_lock);
    return word == _refused ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
}

DWORD ScriptedDevice::Status(DWORD* bits) const
{
    const std::lock_guard guard(_lock);
    *bits = _status;
    return _statusResult;
}

DWORD ScriptedDevice::Begin()
{
    const std::lock_guard guard(_lock);
    return _beginResult;
}

DWORD ScriptedDevice::Write(const void* bytes, DWORD count, SpoolerDeviceProgress* progress)
{
    const std::lock_guard guard(_lock);
    *progress = NextAnswer(Took(count));
    _taken.append(static_cast<const char*>(bytes), std::min(progress->taken, count));
    return _writeResult;
}

DWORD ScriptedDevice::End(SpoolerDeviceProgress* progress)
{
    const std::lock_guard guard(_lock);
    *progress = NextAnswer(Over(SpoolerDeviceVerdict::Completed));
    return _writeResult;
}

SpoolerDeviceProgress ScriptedDevice::NextAnswer(SpoolerDeviceProgress usual)
{
    if (_answers.empty()) return usual;
    const SpoolerDeviceProgress answer = _answers.front();
    if (_answers.size() > 1 || answer.busyMs != spoolerDeviceStalled) _answers.erase(_answers.begin());
    return answer;
}

SpoolerDeviceProgress Took(DWORD bytes, DWORD busyMs)
{
    SpoolerDeviceProgress progress{};
    progress.taken = bytes;
    progress.busyMs = busyMs;
    return progress;
}

SpoolerDeviceProgress Printed(DWORD pages, DWORD known, DWORD busyMs)
{
    SpoolerDeviceProgress progress{};
    progress.pagesPrinted = pages;
    progress.pagesKnown = known;
    progress.busyMs = busyMs;
    return progress;
}

SpoolerDeviceProgress Stalled(DWORD jobStatus, const std::wstring& text)
{
    SpoolerDeviceProgress progress{};
    progress.busyMs = spoolerDeviceStalled;
    progress.jobStatus = jobStatus;
    text.copy(progress.statusText, MAX_PATH - 1);
    return progress;
}

SpoolerDeviceProgress Over(SpoolerDeviceVerdict verdict)
{
    SpoolerDeviceProgress progress{};
    progress.verdict = verdict;
    return progress;
}

/// By this the module finds the functions.
extern "C" __declspec(dllexport) const SpoolerDevice* ScriptedDeviceFunctions()
{
    return &functions;
}
