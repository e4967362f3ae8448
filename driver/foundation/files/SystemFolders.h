// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// The platform's system folder, such as C:\Windows\System32; empty if its path has 260 characters or more.
OString GetSystemFolder();

/// The platform's own folder, such as C:\Windows; empty if its path has 260 characters or more.
OString GetWindowsFolder();

/// The folder for temporary files, with a '\' at its end; empty if its path has 260 characters or more.
OString GetTemporaryFolder();
