// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// One text of a file's version resource, such as "FileVersion": by the neutral Unicode table (000004B0), otherwise by
/// the U.S. English one of code page 1252 (040904E4). Tables of other languages aren't looked at.
///
/// A `file` without ':' is loaded for a moment as a module, so that the platform's search finds it. Empty if the file,
/// its version resource or the text isn't there.
OString GetFileVersionString(const OString& file, const OString& name);
