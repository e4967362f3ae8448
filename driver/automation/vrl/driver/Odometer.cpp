// SPDX-License-Identifier: MIT
#include "vrl/driver/Odometer.h"

#include "foundation/OLockGuard.h"
#include "vrl/spooler/Spooler.h"

#include <type_traits>

namespace {

constexpr const wchar_t* keyName = L"Gantry";
constexpr const wchar_t* pagesName = L"Odometer Pages";
constexpr const wchar_t* distanceName = L"Odometer Distance";

template <class T>
bool ReadValue(HANDLE printer, const wchar_t* name, T* value)
{
    DWORD type = 0;
    DWORD needed = 0;
    return ::GetPrinterDataExW(printer, keyName, name, &type, reinterpret_cast<BYTE*>(value), sizeof *value, &needed) ==
           ERROR_SUCCESS;
}

template <class T>
bool WriteValue(HANDLE printer, const wchar_t* name, DWORD type, T value)
{
    return ::SetPrinterDataExW(printer, keyName, name, type, reinterpret_cast<BYTE*>(&value), sizeof value) ==
           ERROR_SUCCESS;
}

} // namespace

Odometer::Odometer(unsigned long pages, double distance) : _pages(pages), _distance(distance) {}

Odometer::Odometer(const Odometer& other)
{
    OLockGuard guard(other._lock);
    _pages = other._pages;
    _distance = other._distance;
}

Odometer& Odometer::operator=(const Odometer& other)
{
    OLockGuard guard(_lock);
    OLockGuard otherGuard(other._lock);
    _pages = other._pages;
    _distance = other._distance;
    return *this;
}

Odometer& Odometer::operator+=(const Odometer& other)
{
    OLockGuard guard(_lock);
    OLockGuard otherGuard(other._lock);
    _pages += other._pages;
    _distance += other._distance;
    return *this;
}

bool Odometer::operator==(const Odometer& other) const
{
    OLockGuard guard(_lock);
    OLockGuard otherGuard(other._lock);
    return _pages == other._pages && _distance == other._distance;
}

unsigned long Odometer::GetPages() const
{
    OLockGuard guard(_lock);
    return _pages;
}

double Odometer::GetDistance() const
{
    OLockGuard guard(_lock);
    return _distance;
}

void Odometer::Clear()
{
    OLockGuard guard(_lock);
    _pages = 0;
    _distance = 0.0;
}

void Odometer::AddPages(unsigned long pages, unsigned long paperLength)
{
    OLockGuard guard(_lock);
    _pages += pages;
    _distance += static_cast<double>(pages) * static_cast<double>(paperLength) / 10.0;
}

bool Odometer::ReadStored(HANDLE printer)
{
    OLockGuard guard(_lock);
    unsigned long pages = 0;
    double distance = 0.0;
    const bool pagesRead = ReadValue(printer, pagesName, &pages);
    const bool distanceRead = ReadValue(printer, distanceName, &distance);
    if (!pagesRead || !distanceRead) return false;
    _pages = pages;
    _distance = distance;
    return true;
}

bool Odometer::WriteStored(HANDLE printer) const
{
    OLockGuard guard(_lock);
    const bool pagesWritten = WriteValue(printer, pagesName, REG_DWORD, _pages);
    const bool distanceWritten = WriteValue(printer, distanceName, REG_BINARY, _distance);
    return pagesWritten && distanceWritten;
}
