// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/DeviceLink.h"

#include <mutex>
#include <string>
#include <vector>

/// What the device of a test does: `scripted_device.dll` gives the spooler functions that end up in the one that lives.
/// By itself it takes all bytes at once and completes every job. One at a time. Any thread may come in.
class ScriptedDevice {
public:
    ScriptedDevice();
    ScriptedDevice(const ScriptedDevice&) = delete;
    ScriptedDevice& operator=(const ScriptedDevice&) = delete;
    ~ScriptedDevice();

    /// What the next writes and ends answer; a stall at the end goes on until there are other answers.
    void Answer(std::vector<SpoolerDeviceProgress> answers);

    void SetStatus(DWORD bits, DWORD result = ERROR_SUCCESS);
    void SetResults(DWORD begin, DWORD write = ERROR_SUCCESS);
    /// The setting that is no good.
    void Refuse(const std::wstring& word);

    /// The calls since they were last taken but those for the status, each as "write 10" or "begin Label job 1".
    std::vector<std::string> TakeCalls();
    /// Bytes that were taken, of all jobs.
    std::string Taken() const;

    // What the device is asked for.
    void Note(const std::string& call);
    DWORD Configure(const std::wstring& word);
    DWORD Status(DWORD* bits) const;
    DWORD Begin();
    DWORD Write(const void* bytes, DWORD count, SpoolerDeviceProgress* progress);
    DWORD End(SpoolerDeviceProgress* progress);

private:
    SpoolerDeviceProgress NextAnswer(SpoolerDeviceProgress usual);

    mutable std::mutex _lock;
    std::vector<std::string> _calls;
    std::vector<SpoolerDeviceProgress> _answers;
    std::wstring _refused;
    std::string _taken;
    DWORD _status = 0;
    DWORD _statusResult = ERROR_SUCCESS;
    DWORD _beginResult = ERROR_SUCCESS;
    DWORD _writeResult = ERROR_SUCCESS;
};

// Answers

/// That many bytes were taken, and the device is busy for a time.
SpoolerDeviceProgress Took(DWORD bytes, DWORD busyMs = 0);
/// Pages that have come out, of those that are known.
SpoolerDeviceProgress Printed(DWORD pages, DWORD known, DWORD busyMs = 0);
SpoolerDeviceProgress Stalled(DWORD jobStatus, const std::wstring& text);
SpoolerDeviceProgress Over(SpoolerDeviceVerdict verdict);
