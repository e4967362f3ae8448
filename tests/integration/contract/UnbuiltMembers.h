// SPDX-License-Identifier: MIT
#pragma once

/// The members that answer E_NOTIMPL because nobody has written them yet. Who writes one takes it off the list.
inline constexpr const char* unbuiltMembers[] = {
    "PrintJobs.get__NewEnum",
    "PrintJobs.get_Item",
    "PrintJobs.get_Count",
    "PrintJobs.Create",
    "PrintJobs.Add",
    "PrintJobs.Remove",
    "PrintJobs.RemoveAll",
    "PrintJobs.Find",
};
