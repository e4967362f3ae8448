// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyRequest.h"

#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"

namespace {

constexpr DWORD optionsVersion = 2;

} // namespace

NotifyRequest::NotifyRequest(DWORD filter, DWORD category, const PRINTER_NOTIFY_OPTIONS* options)
    : _filter(filter), _coversPrinters(category != notifyCategory3D)
{
    Require(filter != 0 || options, ERROR_INVALID_PARAMETER);
    Require(category == 0 || category == notifyCategoryAll || category == notifyCategory3D, ERROR_INVALID_PARAMETER);
    if (!options) return;
    Require(options->Version == optionsVersion, ERROR_INVALID_PARAMETER);
    Require(options->pTypes || options->Count == 0, ERROR_INVALID_PARAMETER);
    for (DWORD index = 0; index < options->Count; ++index) AddFields(options->pTypes[index]);
}

const std::vector<WORD>& NotifyRequest::Fields(WORD type) const noexcept
{
    return type == PRINTER_NOTIFY_TYPE ? _printerFields : _jobFields;
}

void NotifyRequest::AddFields(const PRINTER_NOTIFY_OPTIONS_TYPE& type)
{
    Require(type.Type == PRINTER_NOTIFY_TYPE || type.Type == JOB_NOTIFY_TYPE, ERROR_INVALID_PARAMETER);
    Require(type.pFields || type.Count == 0, ERROR_INVALID_PARAMETER);
    std::vector<WORD>& fields = type.Type == PRINTER_NOTIFY_TYPE ? _printerFields : _jobFields;
    Require(fields.empty(), ERROR_INVALID_PARAMETER);
    fields.assign(type.pFields, type.pFields + type.Count);
}
