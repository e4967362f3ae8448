// SPDX-License-Identifier: MIT
#include "spooler/calls/AccessRights.h"

#include "spooler/SpoolerError.h"

namespace {

constexpr std::array<DWORD, 4> genericRights{GENERIC_READ, GENERIC_WRITE, GENERIC_EXECUTE, GENERIC_ALL};

} // namespace

DWORD AccessOfHandle(DWORD desired, DWORD granted, const ObjectRights& rights)
{
    if (desired == 0) desired = rights.usual;
    for (size_t index = 0; index < genericRights.size(); ++index) {
        if (desired & genericRights[index]) desired = (desired & ~genericRights[index]) | rights.generic[index];
    }
    const bool most = (desired & MAXIMUM_ALLOWED) != 0;
    desired &= ~static_cast<DWORD>(MAXIMUM_ALLOWED);
    Require((desired & ~granted) == 0, ERROR_ACCESS_DENIED);
    return most ? granted : desired;
}
