// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OString.h"

#include <vector>

/// A file with a name and content of its own, gone at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::vector<BYTE>& content);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    OString Path() const { return _folder + "\\" + _name; }
    OString Folder() const { return _folder; }
    OString Name() const { return _name; }

private:
    OString _folder;
    OString _name;
};

/// Makes a folder the current one for a scope.
class WorkingFolder {
public:
    explicit WorkingFolder(const OString& folder);
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder();

private:
    OString _before;
};
