// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "support/driver/ModuleLoads.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

/// What the port monitor of a test does: `scripted_monitor.dll` hands each call to the one that lives. By itself it
/// answers every request with `answer`, and keeps a record of what it met. A test that wants something else puts its
/// own function in the place of a step; the plain step can be called from there.
/// One at a time. Any thread may come in.
class ScriptedMonitor : public ModuleLoads {
public:
    struct Request {
        std::wstring printer;
        std::string text;
        bool wantsAnswer;
    };

    ScriptedMonitor();
    ScriptedMonitor(const ScriptedMonitor&) = delete;
    ScriptedMonitor& operator=(const ScriptedMonitor&) = delete;
    ~ScriptedMonitor();

    static ScriptedMonitor* Current() noexcept;

    /// Puts a copy of the monitor at `path`; `without` is an export that the copy lacks.
    static void Install(const std::wstring& path, const char* without = nullptr);

    /// With all bytes that the monitor counts; the terminator is a part of it.
    void AnswerWith(std::string_view bytes) { answer = bytes; }

    std::string answer;
    DWORD result = 1;
    bool givesHandle = true;

    std::function<DWORD(const wchar_t* printer, const char* request, void** response)> sendRequest;
    std::function<LONG(void* response)> size;
    std::function<void(void* response, BYTE* buffer)> data;
    std::function<void(void* response)> free;

    DWORD PlainSendRequest(const wchar_t* printer, const char* request, void** response);
    LONG PlainSize(void* response);
    void PlainData(void* response, BYTE* buffer);
    void PlainFree(void* response);

    std::vector<Request> Requests() const;
    /// The text of the one request so far.
    std::string OnlyRequest() const;
    void ForgetRequests();

    /// Answers that were given out and not freed.
    size_t LivingResponses() const;
    int SizeCalls() const { return _sizeCalls; }
    int DataCalls() const { return _dataCalls; }

private:
    mutable std::mutex _lock;
    std::vector<Request> _requests;
    std::set<void*> _responses;
    std::size_t _nextResponse = 0x1000;
    std::atomic<int> _sizeCalls{0};
    std::atomic<int> _dataCalls{0};
};
