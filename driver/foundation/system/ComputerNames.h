// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/text/OString.h"

#include <lmcons.h>
#include <lmjoin.h>

/// One of this machine's names, such as ComputerNameDnsFullyQualified; empty if it has none.
OString GetComputerName(COMPUTER_NAME_FORMAT format);

/// The name of the domain (NetSetupDomainName) or workgroup (NetSetupWorkgroupName) that this machine has joined; empty
/// if what it has joined is of another kind.
OString GetJoinedName(NETSETUP_JOIN_STATUS kind);
