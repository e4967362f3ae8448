// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// A path up to its last '\', which isn't part of the result; empty if there is none. '/' doesn't count.
OString GetFolderPart(const OString& path);

/// The part of a path after its last '\'; the whole path if there is none.
OString GetFilePart(const OString& path);
