// SPDX-License-Identifier: MIT
#include "spooler/calls/PrinterOpening.h"

#include "spooler/calls/AccessRights.h"
#include "spooler/calls/DocumentSpooling.h"
#include "spooler/records/NameRules.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <charconv>

namespace {

/// What the user may do with a printer: who may use it may read what it is, who may administer it has the limited right
/// too.
DWORD GrantedOn(const PrinterRecord& printer)
{
    DWORD granted = printer.grantedAccess;
    if (granted & PRINTER_ACCESS_USE) granted |= READ_CONTROL;
    if (granted & PRINTER_ACCESS_ADMINISTER) granted |= printerAccessManageLimited;
    return granted;
}

/// What the user may do with a job: who may use the printer may read it.
DWORD GrantedOn(const World& world, const PrinterRecord& printer, const JobRecord& job)
{
    if (world.MayAdministerJob(printer, job)) return JOB_ALL_ACCESS;
    return printer.grantedAccess & PRINTER_ACCESS_USE ? JOB_READ : 0;
}

/// Words after the comma of a printer's name that change nothing about which printer it is. Deliberate: unlike names
/// they have a case, one blank may stand before them, and anything may follow.
bool IsDecoration(std::wstring_view words)
{
    if (words.starts_with(L' ')) words.remove_prefix(1);
    return words.starts_with(L"LocalOnly") || words.starts_with(L"DrvConvert");
}

/// Number of the job that the words after the comma of "Printer, Job 7" name; 0 if they name none.
DWORD JobNumber(std::wstring_view postfix)
{
    constexpr std::wstring_view word = L"Job ";
    postfix.remove_prefix(std::min(postfix.find_first_not_of(L' '), postfix.size()));
    if (!SameName(postfix.substr(0, word.size()), word)) return 0;
    const std::string digits(postfix.begin() + word.size(), postfix.end());
    DWORD number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

} // namespace

const PrinterRecord* PrinterOpening::FindLocal(std::wstring_view nameOrShare) const noexcept
{
    if (const PrinterRecord* const printer = _world.FindPrinter(nameOrShare)) return printer;
    const auto& printers = _world.Printers();
    const auto shared = std::ranges::find_if(printers, [&](const auto& printer) {
        return printer->IsShared() && printer->shareName && SameName(*printer->shareName, nameOrShare);
    });
    return shared == printers.end() || nameOrShare.empty() ? nullptr : shared->get();
}

PrinterOpening::Target PrinterOpening::Resolve(std::wstring_view name) const
{
    if (const PrinterRecord* const printer = FindLocal(name)) return {printer, 0, {}};

    const size_t comma = name.find(L',');
    if (comma != std::wstring_view::npos) {
        Target target = Resolve(name.substr(0, comma));
        const std::wstring_view words = name.substr(comma + 1);
        if (IsDecoration(words)) return target;
        target.jobId = JobNumber(words);
        Require(target.printer && target.jobId, ERROR_INVALID_PRINTER_NAME);
        return target;
    }

    Require(name.starts_with(L"\\\\"), ERROR_INVALID_PRINTER_NAME);
    const size_t backslash = name.find(L'\\', 2);
    const std::wstring_view server = name.substr(0, backslash);
    Require(server.size() > 2 && _world.IsThisServer(server), ERROR_INVALID_PRINTER_NAME);
    if (backslash == std::wstring_view::npos) return {nullptr, 0, std::wstring(server)};

    const PrinterRecord* const printer = FindLocal(name.substr(backslash + 1));
    Require(printer, ERROR_INVALID_PRINTER_NAME);
    return {printer, 0, std::wstring(server)};
}

HANDLE PrinterOpening::Open(const wchar_t* name, const PRINTER_DEFAULTSW* defaults)
{
    const Target target = name ? Resolve(name) : Target{};
    const DWORD desired = defaults ? defaults->DesiredAccess : 0;

    OpenHandle handle;
    handle.serverPrefix = target.serverPrefix;
    if (!target.printer) {
        handle.access = AccessOfHandle(desired, _world.ServerAccess(), serverRights);
        return _world.Handles().Add(std::move(handle));
    }

    const PrinterRecord& printer = *target.printer;
    handle.kind = OpenHandle::Kind::Printer;
    handle.printerId = printer.id;
    if (defaults) {
        handle.datatype = CopyText(defaults->pDatatype);
        handle.devMode = CopyDevMode(defaults->pDevMode);
        Require(!handle.datatype || IsDatatype(*handle.datatype) || handle.datatype == printer.datatype,
                ERROR_INVALID_DATATYPE);
    }
    if (target.jobId) {
        const JobRecord* const job = printer.queue.Find(target.jobId);
        Require(job, ERROR_INVALID_PRINTER_NAME);
        handle.kind = OpenHandle::Kind::Job;
        handle.jobId = target.jobId;
        handle.access = AccessOfHandle(desired, GrantedOn(_world, printer, *job), jobRights);
    } else {
        handle.access = AccessOfHandle(desired, GrantedOn(printer), printerRights);
    }
    return _world.Handles().Add(std::move(handle));
}

void PrinterOpening::Close(HANDLE handle)
{
    const OpenHandle& open = _world.HandleOf(handle);
    if (open.document && _world.FindPrinter(open.printerId)) DocumentSpooling(_world).EndDoc(handle);
    _world.Handles().Remove(handle);
    _world.Notifications().ClosePlace(handle);
}
