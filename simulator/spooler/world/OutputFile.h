// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// Writes a delivered document into the folder, which is made if it is missing, under a name made of the job's number
/// and the document's name that no file there has. Gives the path, or nothing if it could not be written.
std::optional<std::wstring> WriteOutputFile(const std::wstring& folder, DWORD jobId, std::wstring_view document,
                                            const Bytes& bytes);

/// Writes a document to that very path, over what is there. False if it could not be written.
bool WriteDocument(const std::wstring& path, const Bytes& bytes);
