// SPDX-License-Identifier: MIT
#include "foundation/system/ComputerNames.h"

#include <lmapibuf.h>

#include <string>

#include "foundation/OHandle.h"

namespace {

using NetworkText = OHandle<::NetApiBufferFree, wchar_t*>;

} // namespace

OString GetComputerName(COMPUTER_NAME_FORMAT format)
{
    DWORD size = 0;
    if (::GetComputerNameExW(format, nullptr, &size) || ::GetLastError() != ERROR_MORE_DATA) return {};
    std::wstring name(size, L'\0');
    if (!::GetComputerNameExW(format, name.data(), &size)) return {};
    return name.c_str();
}

OString GetJoinedName(NETSETUP_JOIN_STATUS kind)
{
    NetworkText name;
    NETSETUP_JOIN_STATUS joined = NetSetupUnknownStatus;
    // Deliberate: whether the call succeeded isn't asked; a status that fits says enough.
    ::NetGetJoinInformation(nullptr, name.Receive(), &joined);
    return joined == kind && name ? OString(name.Get()) : OString();
}
