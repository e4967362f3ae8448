// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <array>

/// What the module knows of one automation class.
struct ClassEntry {
    const CLSID* classId;
    const wchar_t* script;    ///< name of the resource with the registration script
    const wchar_t* programId; ///< with the version, as that script registers it
    HRESULT (*create)(REFIID iid, void** object) noexcept;
};

/// All automation classes, creatable or not, in the order in which they are registered.
using ClassTable = std::array<ClassEntry, 18>;
extern const ClassTable classTable;

/// The row of a class; null if the table has no such class.
const ClassEntry* FindClass(const CLSID& classId) noexcept;
