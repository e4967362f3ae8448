// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Mutex.h"

#include <map>
#include <memory>
#include <string>

/// The answers that were given out and not freed, by their handles. A handle that isn't one of them stands for an empty
/// answer. Any thread.
class Responses {
public:
    static Responses& Instance();

    void* Add(std::string answer);
    void Remove(void* response);
    /// Empty for an unknown handle.
    std::string Get(void* response);

private:
    Mutex _lock;
    std::map<void*, std::unique_ptr<std::string>> _answers GUARDED_BY(_lock);
};
