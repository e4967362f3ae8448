// SPDX-License-Identifier: MIT
/// What programs ask of the printer driver's interface module.

#include "labelprinter/interface/LabelDriver.h"
#include "spooler/Mutex.h"

#include <memory>
#include <new>

namespace {

/// The drivers that are open, by their handles.
struct OpenDrivers {
    Mutex lock;
    std::map<void*, std::unique_ptr<LabelDriver>> drivers GUARDED_BY(lock);
};

// Not made at its first use: that would take a thread index of the process at every load of the module, and none comes
// back when it is released.
OpenDrivers openDrivers;

/// Runs `body` with an open driver. Nothing happens for any other handle, or without memory.
template <class Body>
void WithDriver(void* handle, Body&& body) noexcept
try {
    const MutexLock guard(openDrivers.lock);
    const auto driver = openDrivers.drivers.find(handle);
    if (driver != openDrivers.drivers.end()) body(*driver->second);
} catch (const std::bad_alloc&) {
    // The caller hears of no failure.
}

} // namespace

extern "C" {

/// The handle is to be closed with VRL_Printer_Close; null on failure.
void* VRL_Printer_Open(HANDLE printer) noexcept
try {
    if (!printer) return nullptr;
    auto driver = std::make_unique<LabelDriver>(printer);
    void* const handle = driver.get();
    const MutexLock guard(openDrivers.lock);
    openDrivers.drivers.emplace(handle, std::move(driver));
    return handle;
} catch (const std::bad_alloc&) {
    return nullptr;
}

void VRL_Printer_Close(void* driver) noexcept
{
    const MutexLock guard(openDrivers.lock);
    openDrivers.drivers.erase(driver);
}

void VRL_Settings_Save(void* driver) noexcept
{
    WithDriver(driver, [](LabelDriver& open) { open.Save(); });
}

void VRL_Settings_Import(void* driver, const wchar_t* fileName, DWORD mask) noexcept
{
    WithDriver(driver, [=](LabelDriver& open) { open.Import(fileName, mask); });
}

void VRL_Settings_Export(void* driver, const wchar_t* fileName, DWORD mask) noexcept
{
    WithDriver(driver, [=](LabelDriver& open) { open.Export(fileName, mask); });
}

void VRL_Settings_Reset(void* driver, DWORD mask) noexcept
{
    WithDriver(driver, [=](LabelDriver& open) { open.Reset(mask); });
}

} // extern "C"
