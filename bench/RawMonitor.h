// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// The port monitor beside this program as a C program would ask it: loaded for the one request and released again.
class RawMonitor {
public:
    explicit RawMonitor(std::wstring printerName);

    /// The answer to a request. Throws std::runtime_error if there is none.
    std::string Ask(const char* request) const;

    /// A request without an answer. Throws std::runtime_error if it fails.
    void Post(const char* request) const;

private:
    const std::wstring _printerName;
    const std::wstring _path;
};
