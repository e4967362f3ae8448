// SPDX-License-Identifier: MIT
#include "foundation/files/PathParts.h"

OString GetFolderPart(const OString& path)
{
    const int separator = path.ReverseFind(L'\\');
    return separator < 0 ? OString() : path.Left(separator);
}

OString GetFilePart(const OString& path)
{
    return path.Mid(path.ReverseFind(L'\\') + 1);
}
