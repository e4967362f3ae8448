// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

/// The addresses by which a module calls one imported function, redirected for a scope.
class ImportSlots {
public:
    /// `module` is the handle of a loaded module; null is the test program. Ends the test program if the module doesn't
    /// import `name`: such a hook would never be called.
    ImportSlots(const char* name, void* replacement, void* module);
    ImportSlots(const ImportSlots&) = delete;
    ImportSlots& operator=(const ImportSlots&) = delete;
    ~ImportSlots();

    void* Original() const noexcept { return _original; }

private:
    void SetAll(void* function) const;

    std::vector<void**> _slots;
    void* _original;
};

/// Puts a function of the test in the place of a platform function, for the whole test program, or for another loaded
/// module, and for a scope. The code under test stays as it is: what is changed is where the import table leads.
///
///     const ImportHook<decltype(::Sleep)> hook("Sleep", [](DWORD ms) { slept.push_back(ms); });
template <typename Function>
class ImportHook {
public:
    ImportHook(const char* name, Function* replacement, void* module = nullptr)
        : _slots(name, reinterpret_cast<void*>(replacement), module)
    {
    }

    /// The platform's own function.
    Function* Original() const noexcept { return reinterpret_cast<Function*>(_slots.Original()); }

private:
    ImportSlots _slots;
};
