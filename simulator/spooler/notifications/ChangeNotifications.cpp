// SPDX-License-Identifier: MIT
#include "spooler/notifications/ChangeNotifications.h"

#include "spooler/SpoolerError.h"

void ChangeNotifications::Open(DWORD filter, const void* options) const
{
    throw SpoolerError(filter == 0 && !options ? ERROR_INVALID_PARAMETER : ERROR_NOT_SUPPORTED);
}

void ChangeNotifications::Next(HANDLE) const
{
    throw SpoolerError(ERROR_INVALID_HANDLE);
}

void ChangeNotifications::Close(HANDLE) const
{
    throw SpoolerError(ERROR_INVALID_HANDLE);
}

void ChangeNotifications::Free(const void*) const
{
    throw SpoolerError(ERROR_INVALID_PARAMETER);
}
