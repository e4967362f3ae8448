// SPDX-License-Identifier: MIT
#include "support/driver/ScriptedMonitor.h"

#include "support/driver/ModuleCopy.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>

namespace {

std::atomic<ScriptedMonitor*> current;

} // namespace

ScriptedMonitor::ScriptedMonitor()
    : sendRequest([this](const wchar_t* printer, const char* request, void** response) {
          return PlainSendRequest(printer, request, response);
      }),
      size([this](void* response) { return PlainSize(response); }),
      data([this](void* response, BYTE* buffer) { PlainData(response, buffer); }),
      free([this](void* response) { PlainFree(response); })
{
    current = this;
}

ScriptedMonitor::~ScriptedMonitor()
{
    current = nullptr;
}

ScriptedMonitor* ScriptedMonitor::Current() noexcept
{
    return current;
}

void ScriptedMonitor::Install(const std::wstring& path, const char* without)
{
    CopyModule(L"scripted_monitor.dll", path, without);
}

DWORD ScriptedMonitor::PlainSendRequest(const wchar_t* printer, const char* request, void** response)
{
    const std::lock_guard guard(_lock);
    _requests.push_back({printer, request, response != nullptr});
    if (response && givesHandle) {
        *response = reinterpret_cast<void*>(_nextResponse++);
        _responses.insert(*response);
    }
    return result;
}

LONG ScriptedMonitor::PlainSize(void* response)
{
    const std::lock_guard guard(_lock);
    EXPECT_TRUE(_responses.contains(response)) << "the size of an answer that isn't there";
    ++_sizeCalls;
    return static_cast<LONG>(answer.size());
}

void ScriptedMonitor::PlainData(void* response, BYTE* buffer)
{
    const std::lock_guard guard(_lock);
    EXPECT_TRUE(_responses.contains(response)) << "the bytes of an answer that isn't there";
    ++_dataCalls;
    std::memcpy(buffer, answer.data(), answer.size());
}

void ScriptedMonitor::PlainFree(void* response)
{
    const std::lock_guard guard(_lock);
    EXPECT_EQ(_responses.erase(response), 1u) << "an answer is freed that isn't there";
}

std::vector<ScriptedMonitor::Request> ScriptedMonitor::Requests() const
{
    const std::lock_guard guard(_lock);
    return _requests;
}

std::string ScriptedMonitor::OnlyRequest() const
{
    const std::lock_guard guard(_lock);
    EXPECT_EQ(_requests.size(), 1u);
    return _requests.empty() ? "" : _requests.front().text;
}

void ScriptedMonitor::ForgetRequests()
{
    const std::lock_guard guard(_lock);
    _requests.clear();
}

size_t ScriptedMonitor::LivingResponses() const
{
    const std::lock_guard guard(_lock);
    return _responses.size();
}

/// By this the module finds the test that it works for.
extern "C" __declspec(dllexport) ScriptedMonitor* CurrentScriptedMonitor()
{
    return ScriptedMonitor::Current();
}
