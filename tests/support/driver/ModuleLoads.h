// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

/// Counts how often a module that a test speaks for came into the process, and left it. Any thread.
class ModuleLoads {
public:
    void OnLoad() { ++_loads; }
    void OnUnload() { ++_unloads; }

    int Loads() const { return _loads; }
    bool IsLoaded() const { return _loads != _unloads; }

private:
    std::atomic<int> _loads{0};
    std::atomic<int> _unloads{0};
};
