// SPDX-License-Identifier: MIT
#include "labelprinter/device/LabelPrinters.h"

SharedLabelPrinters& SharedLabelPrinters::Instance()
{
    static SharedLabelPrinters instance;
    return instance;
}

SharedLabelPrinters::SharedLabelPrinters()
{
    HMODULE self = nullptr;
    const auto* const inside = reinterpret_cast<const wchar_t*>(&SharedLabelPrinters::Instance);
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN, inside, &self);
}

void LabelPrinters::Reset()
{
    _printers.clear();
    _clockStopped = false;
}

LabelPrinter* LabelPrinters::Find(const std::wstring& name)
{
    const auto printer = _printers.find(name);
    return printer == _printers.end() ? nullptr : &printer->second;
}

ULONGLONG LabelPrinters::Now() const
{
    return _clockStopped ? _stoppedAt : ::GetTickCount64();
}

void LabelPrinters::StopClock()
{
    _stoppedAt = Now();
    _clockStopped = true;
}

void LabelPrinters::Advance(DWORD ms)
{
    if (_clockStopped) _stoppedAt += ms;
}

bool LabelPrinters::NameLess::operator()(const std::wstring& left, const std::wstring& right) const
{
    return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
}
