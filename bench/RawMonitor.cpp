// SPDX-License-Identifier: MIT
#include "bench/RawMonitor.h"

#include "foundation/OHandle.h"
#include "support/product/LabelPrinterSetup.h"

#include <stdexcept>
#include <utility>

namespace {

using SendFunction = DWORD(const wchar_t* printerName, const char* request, void** response);
using SizeFunction = LONG(void* response);
using DataFunction = void(void* response, void* buffer);
using FreeFunction = void(void* response);

template <class Function>
Function* Find(const OModuleHandle& module, const char* name)
{
    auto* const found = reinterpret_cast<void*>(::GetProcAddress(module.Get(), name));
    if (!found) throw std::runtime_error(std::string("the port monitor has no ") + name);
    return reinterpret_cast<Function*>(found);
}

void Require(bool ok)
{
    if (!ok) throw std::runtime_error("the port monitor doesn't answer");
}

} // namespace

RawMonitor::RawMonitor(std::wstring printerName)
    : _printerName(std::move(printerName)), _path(ProgramFolder() / L"kvnetmon.d64")
{
}

std::string RawMonitor::Ask(const char* request) const
{
    const OModuleHandle module(::LoadLibraryW(_path.c_str()));
    auto* const send = Find<SendFunction>(module, "SendQRMLRequest");
    auto* const size = Find<SizeFunction>(module, "HTTPResponse_Size");
    auto* const data = Find<DataFunction>(module, "HTTPResponse_Data");
    auto* const free = Find<FreeFunction>(module, "HTTPResponse_Free");
    void* response = nullptr;
    Require(send(_printerName.c_str(), request, &response) && response);
    std::string answer(static_cast<size_t>(size(response)), '\0');
    data(response, answer.data());
    free(response);
    return answer;
}

void RawMonitor::Post(const char* request) const
{
    const OModuleHandle module(::LoadLibraryW(_path.c_str()));
    Require(Find<SendFunction>(module, "SendQRMLRequest")(_printerName.c_str(), request, nullptr) != 0);
}
