// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "support/ImportHook.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

/// What the test program writes to the debug trace while one lives, without file and line. One at a time.
class CapturedTrace {
public:
    CapturedTrace()
    {
        const std::lock_guard guard(lock);
        lines.clear();
        files.clear();
    }

    /// The lines that begin with `start`, in order.
    std::vector<std::string> Lines(const std::string& start = "") const
    {
        const std::lock_guard guard(lock);
        std::vector<std::string> found;
        std::ranges::copy_if(lines, std::back_inserter(found),
                             [&](const std::string& line) { return line.starts_with(start); });
        return found;
    }

    /// Whether a line was written by a source file of that name.
    bool HasFrom(const std::string& file) const
    {
        const std::lock_guard guard(lock);
        return std::ranges::any_of(files, [&](const std::string& one) { return one == file; });
    }

    bool Has(const std::string& line) const { return std::ranges::count(Lines(), line) != 0; }

private:
    static void WINAPI Take(LPCSTR text)
    {
        const std::string line(text);
        const size_t place = line.find("): ");
        const std::lock_guard guard(lock);
        lines.push_back(place == std::string::npos ? line : line.substr(place + 3));
        files.push_back(line.substr(0, line.find('(')));
    }

    static inline std::mutex lock;
    static inline std::vector<std::string> lines;
    static inline std::vector<std::string> files; // that wrote them
    const ImportHook<decltype(::OutputDebugStringA)> _hook{"OutputDebugStringA", Take};
};
