// SPDX-License-Identifier: MIT
#include "spooler/config/Configuration.h"

#include "spooler/config/ConfigSections.h"
#include "spooler/config/ConfigWriter.h"
#include "spooler/config/InputFile.h"
#include "spooler/config/SavedFile.h"
#include "spooler/config/RecordingFile.h"
#include "spooler/world/ChangeScope.h"
#include "spooler/world/RecordedChanges.h"

#include <algorithm>
#include <map>
#include <new>
#include <set>

namespace {

void CheckNames(const Described& described, const World& world)
{
    std::vector<std::wstring> names;
    for (const auto& printer : world.Printers()) names.push_back(printer->name);
    const auto isKnown = [&](const std::wstring& name) {
        return std::ranges::any_of(names, [&](const auto& known) { return SameName(known, name); });
    };
    for (const ConfiguredPrinter& printer : described.printers) {
        if (isKnown(printer.record.name))
            throw ConfigError{printer.line, L"there is a printer \"" + printer.record.name + L"\" already"};
        names.push_back(printer.record.name);
    }
    for (const ConfiguredJob& job : described.jobs) {
        if (!isKnown(job.printerName)) throw ConfigError{job.line, L"there is no printer \"" + job.printerName + L"\""};
    }
}

/// The devices that the printer is to stand before.
std::vector<const SpoolerDevice*> DevicesOf(const PrinterRecord& printer, const Described& described, World& world)
{
    std::vector<const SpoolerDevice*> devices;
    for (const std::wstring& name : SplitPorts(printer.portName.value_or(L""))) {
        const auto isNamed = [&](const PortRecord& port) { return SameName(port.name, name); };
        const auto port = std::ranges::find_if(described.ports, isNamed);
        const PortRecord* const found = port == described.ports.end() ? world.FindPort(name) : &*port;
        if (found && found->device) devices.push_back(found->device);
    }
    return devices;
}

/// Tries the printer's settings on its devices, as nobody else knows whether they are good.
void TryDeviceSettings(const ConfiguredPrinter& printer, const Described& described, World& world)
{
    const PrinterRecord& record = printer.record;
    if (record.deviceSettings.empty()) return;
    const std::vector<const SpoolerDevice*> devices = DevicesOf(record, described, world);
    if (devices.empty()) throw ConfigError{printer.deviceLines.front(), L"the printer's port has no device"};
    for (const SpoolerDevice* const device : devices) {
        device->attach(record.name.c_str());
        size_t done = 0;
        const auto isTaken = [&](const DeviceSetting& setting) {
            return device->configure(record.name.c_str(), setting.name.c_str(), setting.value.c_str()) == ERROR_SUCCESS;
        };
        while (done < record.deviceSettings.size() && isTaken(record.deviceSettings[done])) ++done;
        device->detach(record.name.c_str());
        if (done < record.deviceSettings.size())
            throw ConfigError{printer.deviceLines[done], L"the device doesn't take \"" +
                                                             record.deviceSettings[done].name + L" = " +
                                                             record.deviceSettings[done].value + L"\""};
    }
}

void CheckJobNumbers(const Described& described, const World& world)
{
    std::map<std::wstring, std::set<DWORD>, NameLess> numbers;
    for (const auto& printer : world.Printers()) {
        for (const auto& job : printer->queue.Jobs()) numbers[printer->name].insert(job->id);
    }
    for (const ConfiguredJob& job : described.jobs) {
        const DWORD number = job.record.id;
        if (number != 0 && !numbers[job.printerName].insert(number).second)
            throw ConfigError{job.line, L"there is a job " + std::to_wstring(number) + L" already"};
    }
}

void EnterJob(World& world, ConfiguredJob job)
{
    const PrinterRecord& printer = *world.FindPrinter(job.printerName);
    JobRecord& record = job.record;
    const auto isOpen = [&](std::wstring_view key) { return !job.keys.contains(key); };
    if (isOpen(L"user")) record.userName = world.UserName();
    if (isOpen(L"machine")) record.machineName = L"\\\\" + world.MachineName();
    if (isOpen(L"notify")) record.notifyName = record.userName;
    if (isOpen(L"document")) record.document = L"";
    if (isOpen(L"data type")) record.datatype = printer.datatype;
    if (isOpen(L"print processor")) record.printProcessor = printer.printProcessor;
    if (isOpen(L"devmode")) record.devMode = printer.devMode;
    if (isOpen(L"submitted")) ::GetSystemTime(&record.submitted);
    ChangeScope(world, printer).AppendJob(std::move(record));
}

/// Jobs that bring their numbers keep them; the others get higher ones.
void EnterJobs(World& world, std::vector<ConfiguredJob> jobs)
{
    for (const ConfiguredJob& job : jobs) {
        if (job.record.id >= world.NextJobId()) world.SetNextJobId(job.record.id + 1);
    }
    for (ConfiguredJob& job : jobs) EnterJob(world, std::move(job));
}

void Enter(Described described, World& world)
{
    world.SetIdentity(described.userName ? described.userName->c_str() : nullptr,
                      described.machineName ? described.machineName->c_str() : nullptr);
    world.SetServerAccess(described.serverAccess);
    for (PortRecord& port : described.ports) world.PutPort(std::move(port));
    for (DriverRecord& driver : described.drivers) world.PutDriver(std::move(driver));
    for (ConfiguredPrinter& printer : described.printers) world.InsertPrinter(std::move(printer.record));
    EnterJobs(world, std::move(described.jobs));
    if (described.nextJobId) world.SetNextJobId(described.nextJobId);
}

std::wstring FolderOf(const std::wstring& path)
{
    const size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? L"" : path.substr(0, separator);
}

std::wstring Describe(const std::wstring& path, const ConfigError& error)
{
    const std::wstring place = error.line ? path + L"(" + std::to_wstring(error.line) + L")" : path;
    return place + L": " + error.message;
}

ConfigOutcome Unreadable(const std::wstring& path, DWORD error)
{
    return {error, path + L": the file can't be read, error " + std::to_wstring(error)};
}

/// Reads the file in `path` by way of `read`, and tells how it went.
template <typename Read>
ConfigOutcome Outcome(const std::wstring& path, Read read)
{
    try {
        return read();
    } catch (const ConfigError& malformed) {
        return {ERROR_BAD_CONFIGURATION, Describe(path, malformed)};
    } catch (const std::bad_alloc&) {
        return {ERROR_NOT_ENOUGH_MEMORY, Describe(path, {0, L"the file is too large"})};
    }
}

} // namespace

ConfigOutcome LoadConfiguration(const std::wstring& path, World& world)
{
    return Outcome(path, [&]() -> ConfigOutcome {
        DWORD error = ERROR_SUCCESS;
        const Bytes text = ReadWholeFile(path, error);
        if (error) return Unreadable(path, error);
        Described described;
        described.folder = FolderOf(path);
        described.serverAccess = world.ServerAccess();
        const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size());
        for (const ConfigSection& section : ParseConfig(bytes)) ReadSection(section, described);
        CheckNames(described, world);
        for (const ConfiguredPrinter& printer : described.printers) TryDeviceSettings(printer, described, world);
        CheckJobNumbers(described, world);
        Enter(std::move(described), world);
        return {};
    });
}

DWORD SaveConfiguration(const std::wstring& path, World& world)
{
    return WriteSavedFile(path, ConfigurationText(world));
}

ConfigOutcome PlayRecording(const std::wstring& path, const PrinterRecord& printer, World& world)
{
    return Outcome(path, [&]() -> ConfigOutcome {
        DWORD error = ERROR_SUCCESS;
        const auto recording = ReadRecordingFile(path, error);
        if (error) return Unreadable(path, error);
        ChangeScope(world, printer).EditPrinter().recording = recording;
        world.Notifications().Play(printer.id, recording->recording, PlayingBegins(printer));
        return {};
    });
}
