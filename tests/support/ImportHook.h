// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

/// The addresses by which the test program calls one imported function, redirected for a scope.
class ImportSlots {
public:
    /// Ends the test program if it doesn't import `name`: such a hook would never be called.
    ImportSlots(const char* name, void* replacement);
    ImportSlots(const ImportSlots&) = delete;
    ImportSlots& operator=(const ImportSlots&) = delete;
    ~ImportSlots();

    void* Original() const noexcept { return _original; }

private:
    void SetAll(void* function) const;

    std::vector<void**> _slots;
    void* _original;
};

/// Puts a function of the test in the place of a platform function, for the whole test program and for a scope. The
/// code under test stays as it is: what is changed is where the program's import table leads.
///
///     const ImportHook<decltype(::Sleep)> hook("Sleep", [](DWORD ms) { slept.push_back(ms); });
template <typename Function>
class ImportHook {
public:
    ImportHook(const char* name, Function* replacement) : _slots(name, reinterpret_cast<void*>(replacement)) {}

    /// The platform's own function.
    Function* Original() const noexcept { return reinterpret_cast<Function*>(_slots.Original()); }

private:
    ImportSlots _slots;
};
