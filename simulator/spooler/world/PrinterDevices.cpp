// SPDX-License-Identifier: MIT
#include "spooler/world/PrinterDevices.h"

#include "spooler/world/World.h"

#include <algorithm>

namespace {

AttachedDevices DevicesOf(const PrinterRecord& printer, const std::vector<PortRecord>& ports)
{
    AttachedDevices wanted{printer.name, printer.portName, {}};
    for (const std::wstring& name : SplitPorts(printer.portName.value_or(L""))) {
        const auto port =
            std::ranges::find_if(ports, [&](const PortRecord& each) { return SameName(each.name, name); });
        if (port != ports.end() && port->device) wanted.ports.push_back({port->name, port->device});
    }
    return wanted;
}

/// Each once: several ports may have one device.
std::vector<const SpoolerDevice*> DevicesIn(const AttachedDevices& attached)
{
    std::vector<const SpoolerDevice*> devices;
    for (const auto& [port, device] : attached.ports) {
        if (std::ranges::find(devices, device) == devices.end()) devices.push_back(device);
    }
    return devices;
}

/// Those of `all` that are none of `others`.
std::vector<const SpoolerDevice*> Without(std::vector<const SpoolerDevice*> all,
                                          const std::vector<const SpoolerDevice*>& others)
{
    std::erase_if(all, [&](const auto* device) { return std::ranges::find(others, device) != others.end(); });
    return all;
}

} // namespace

void AttachDevices(PrinterRecord& printer, const std::vector<PortRecord>& ports)
{
    if (printer.attached.printerName != printer.name) DetachDevices(printer); // they know it by its name
    AttachedDevices wanted = DevicesOf(printer, ports);
    const auto before = DevicesIn(printer.attached);
    const auto now = DevicesIn(wanted);
    for (const SpoolerDevice* const device : Without(before, now)) device->detach(printer.name.c_str());
    for (const SpoolerDevice* const device : Without(now, before)) {
        device->attach(printer.name.c_str());
        for (const auto& [word, value] : printer.deviceSettings)
            device->configure(printer.name.c_str(), word.c_str(), value.c_str());
    }
    printer.attached = std::move(wanted);
}

void DetachDevices(PrinterRecord& printer)
{
    for (const SpoolerDevice* const device : DevicesIn(printer.attached))
        device->detach(printer.attached.printerName.c_str());
    printer.attached = {};
}

const SpoolerDevice* DeviceFor(const PrinterRecord& printer, const JobRecord& job)
{
    const std::vector<AttachedDevices::Port>& ports = printer.attached.ports;
    if (!job.portName) return ports.empty() ? nullptr : ports.front().device;
    const auto port = std::ranges::find_if(ports, [&](const auto& each) { return SameName(each.name, *job.portName); });
    return port == ports.end() ? nullptr : port->device;
}

DWORD DeviceStatusOf(const PrinterRecord& printer)
{
    DWORD all = 0;
    for (const auto& [port, device] : printer.attached.ports) {
        DWORD status = 0;
        const DWORD result = device->status(printer.attached.printerName.c_str(), &status);
        if (result == ERROR_NOT_CONNECTED) status |= PRINTER_STATUS_OFFLINE;
        if (result == ERROR_SUCCESS || result == ERROR_NOT_CONNECTED) all |= status;
    }
    return all;
}
