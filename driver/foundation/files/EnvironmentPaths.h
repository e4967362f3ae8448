// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// Replaces the values of USERPROFILE, ALLUSERSPROFILE, ProgramFiles, SystemRoot and SystemDrive, in this order and
/// wherever they occur in the path, by their names between '%'. 'a' to 'z' count as 'A' to 'Z'. A variable that isn't
/// set, is empty or has 260 characters or more is left out.
void CollapseEnvironmentPaths(OString& path);

/// Replaces names between '%' by the values of their variables, to any length. Unknown names stay, and so does
/// a path that the platform can't expand.
void ExpandEnvironmentPaths(OString& path);
