// SPDX-License-Identifier: MIT
#include "spooler/SpoolerControl.h"

void SpoolerReset() noexcept {}

DWORD SpoolerLoadConfig(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerConfigError(wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

void SpoolerSetIdentity(const wchar_t*, const wchar_t*) noexcept {}

DWORD SpoolerAddPrinter(const SpoolerPrinter&) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRemovePrinter(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerAddDriver(const SpoolerDriver&) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRemoveDriver(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerAddPort(const SpoolerPort&) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRemovePort(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetPrinterStatus(const wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetPrinterAttributes(const wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetGrantedAccess(const wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetPrinterDevMode(const wchar_t*, const DEVMODEW*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRenamePrinter(const wchar_t*, const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerPeekPrinter(const wchar_t*, void*, DWORD, DWORD*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetCapability(const wchar_t*, WORD, int, const void*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerClearCapability(const wchar_t*, WORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetData(const wchar_t*, const wchar_t*, const wchar_t*, DWORD, const void*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerPeekData(const wchar_t*, const wchar_t*, const wchar_t*, DWORD*, void*, DWORD, DWORD*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRemoveData(const wchar_t*, const wchar_t*, const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerAddJob(const wchar_t*, const SpoolerJob&, DWORD*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerRemoveJob(const wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetJobStatus(const wchar_t*, DWORD, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetJobText(const wchar_t*, DWORD, const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetJobPages(const wchar_t*, DWORD, DWORD, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetJobSize(const wchar_t*, DWORD, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerSetJobDevMode(const wchar_t*, DWORD, const DEVMODEW*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerPeekJob(const wchar_t*, DWORD, void*, DWORD, DWORD*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerJobBytes(const wchar_t*, DWORD, void*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerDeliverJob(const wchar_t*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerDeliveryCount(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerDeliveryAt(const wchar_t*, DWORD, SpoolerDelivery*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerDeliveryBytes(const wchar_t*, DWORD, void*, DWORD) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

void SpoolerInject(const SpoolerFailure&) noexcept {}

void SpoolerClearFailures() noexcept {}

DWORD SpoolerPendingFailures() noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerLogLength() noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerLogAt(DWORD, SpoolerCallRecord*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

void SpoolerClearLog() noexcept {}

DWORD SpoolerCalls(SpoolerCall, DWORD, const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

const wchar_t* SpoolerCallName(SpoolerCall) noexcept
{
    return L"";
}

DWORD SpoolerOpenHandles(const wchar_t*) noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerOpenNotifications() noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD SpoolerUnfreedNotifyBlocks() noexcept
{
    return ERROR_CALL_NOT_IMPLEMENTED;
}
